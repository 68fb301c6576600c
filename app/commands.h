#pragma once

#include <QLatin1String>

#include <cstddef>
#include <iterator>

namespace app {

/// Every menu entry and toolbar button of the main window. The program names
/// a command by this enumeration only, so a misspelt command doesn't compile;
/// `commandName` gives the object name that the menus, the toolbar and the
/// driver know it by.
enum class Command {
    FileNew,
    FileOpen,
    FileOpenFolder,
    FileSave,
    FileSaveAs,
    FileDelete,
    FileAgentLog,
    FileAgentProperties,
    FolderProperties,
    FileRouteMap,
    FileProcInst,
    FileExport,
    FileInstalledAgents,
    FileSend,
    FileExit,
    EditUndo,
    EditCut,
    EditCopy,
    EditPaste,
    EditSelectAll,
    EditTimeDate,
    EditFind,
    EditReplace,
    ViewFolderTree,
    ViewPreview,
    ViewToolbar,
    ViewStatusBar,
    ViewSetFont,
    ViewDecrease,
    ViewIncrease,
    ViewFavorite,
    ViewRefresh,
    ViewOptions,
    HelpContents,
    HelpSearch,
    HelpTechSupport,
    HelpAbout,
    ToolNew,
    ToolOpen,
    ToolSave,
    ToolDelete,
    ToolProperties,
    ToolAgentProperties,
    ToolLog,
    ToolSend,
    ToolInstalled,
    ToolCut,
    ToolCopy,
    ToolPaste,
    ToolDateTime,
    ToolViewFolder,
    ToolViewPreview,
    ToolFavorite,
};

struct CommandName {
    Command command;
    const char *name;
};

/// The object names, in the order of the enumeration.
inline constexpr CommandName kCommandNames[] = {
    {Command::FileNew, "mnuFileNew"},
    {Command::FileOpen, "mnuFileOpen"},
    {Command::FileOpenFolder, "mnuFileOpenFolder"},
    {Command::FileSave, "mnuFileSave"},
    {Command::FileSaveAs, "mnuFileSaveAs"},
    {Command::FileDelete, "mnuFileDelete"},
    {Command::FileAgentLog, "mnuFileAgentLog"},
    {Command::FileAgentProperties, "mnuFileAgentProperties"},
    {Command::FolderProperties, "mnuFolderProperties"},
    {Command::FileRouteMap, "mnuFileRouteMap"},
    {Command::FileProcInst, "mnuFileProcInst"},
    {Command::FileExport, "mnuFileExport"},
    {Command::FileInstalledAgents, "mnuFileInstalledAgents"},
    {Command::FileSend, "mnuFileSend"},
    {Command::FileExit, "mnuFileExit"},
    {Command::EditUndo, "mnuEditUndo"},
    {Command::EditCut, "mnuEditCut"},
    {Command::EditCopy, "mnuEditCopy"},
    {Command::EditPaste, "mnuEditPaste"},
    {Command::EditSelectAll, "mnuEditSelectAll"},
    {Command::EditTimeDate, "mnuEditTimeDate"},
    {Command::EditFind, "mnuEditFind"},
    {Command::EditReplace, "mnuEditReplace"},
    {Command::ViewFolderTree, "mnuViewFolderTree"},
    {Command::ViewPreview, "mnuViewPreview"},
    {Command::ViewToolbar, "mnuViewToolbar"},
    {Command::ViewStatusBar, "mnuViewStatusBar"},
    {Command::ViewSetFont, "mnuViewSetFont"},
    {Command::ViewDecrease, "mnuViewDecrease"},
    {Command::ViewIncrease, "mnuViewIncrease"},
    {Command::ViewFavorite, "mnuViewFavorite"},
    {Command::ViewRefresh, "mnuViewRefresh"},
    {Command::ViewOptions, "mnuViewOptions"},
    {Command::HelpContents, "mnuHelpContents"},
    {Command::HelpSearch, "mnuHelpSearch"},
    {Command::HelpTechSupport, "mnuHelpTechSupport"},
    {Command::HelpAbout, "mnuHelpAbout"},
    {Command::ToolNew, "tbToolBar.New"},
    {Command::ToolOpen, "tbToolBar.Open"},
    {Command::ToolSave, "tbToolBar.Save"},
    {Command::ToolDelete, "tbToolBar.Delete"},
    {Command::ToolProperties, "tbToolBar.Properties"},
    {Command::ToolAgentProperties, "tbToolBar.Agent Properties"},
    {Command::ToolLog, "tbToolBar.Log"},
    {Command::ToolSend, "tbToolBar.Send"},
    {Command::ToolInstalled, "tbToolBar.Installed"},
    {Command::ToolCut, "tbToolBar.Cut"},
    {Command::ToolCopy, "tbToolBar.Copy"},
    {Command::ToolPaste, "tbToolBar.Paste"},
    {Command::ToolDateTime, "tbToolBar.DateTime"},
    {Command::ToolViewFolder, "tbToolBar.ViewFolder"},
    {Command::ToolViewPreview, "tbToolBar.ViewPreview"},
    {Command::ToolFavorite, "tbToolBar.Favorite"},
};

inline constexpr std::size_t kCommandCount = std::size(kCommandNames);

constexpr bool commandNamesInOrder()
{
    for (std::size_t i = 0; i < kCommandCount; ++i)
        if (static_cast<std::size_t>(kCommandNames[i].command) != i)
            return false;
    return static_cast<std::size_t>(Command::ToolFavorite) + 1 == kCommandCount;
}
static_assert(commandNamesInOrder(), "kCommandNames follows the order of Command");

inline QLatin1String commandName(Command command)
{
    return QLatin1String(kCommandNames[static_cast<std::size_t>(command)].name);
}

} // namespace app
