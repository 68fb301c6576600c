// What a click on a node of the folder tree means: the current object, the
// commands it allows and the pane's text; the favourite; the tree's events.
#include "app/basregistry.h"
#include "app/frmmain.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "navigation/pendingedit.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/session.h"
#include "platform/outlook/application.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QToolBar>

using controls::SSTree;

namespace {

const QString kSettingsKey = QStringLiteral("Software\\Kelverd\\Sorrelin\\5.5\\General");

/// The commands that depend on the kind of the selected node, in the order
/// of the enabling table, with the kinds for which each is on.
struct NodeCommand {
    app::Command command;
    bool (*on)(int image);
};

bool agent(int image)
{
    return image >= navigation::kImageScriptAgent;
}
bool routing(int image)
{
    return image == navigation::kImageRoutingAgent;
}
bool folderWithRights(int image)
{
    return image == navigation::kImageFolder || image == navigation::kImageFolderWithAgents;
}
bool folderOrStore(int image)
{
    return folderWithRights(image) || image == navigation::kImageNoRights || image == navigation::kImageStore;
}
bool notRoot(int image)
{
    return agent(image) || folderOrStore(image);
}

const NodeCommand kNodeCommands[] = {
    {app::Command::FileNew, folderWithRights},
    {app::Command::ToolNew, folderWithRights},
    {app::Command::FileOpen, agent},
    {app::Command::ToolOpen, agent},
    {app::Command::FileSave, agent},
    {app::Command::ToolSave, agent},
    {app::Command::FileSaveAs, agent},
    {app::Command::FileDelete, agent},
    {app::Command::ToolDelete, agent},
    {app::Command::FileSend, agent},
    {app::Command::ToolSend, agent},
    {app::Command::FileAgentProperties, agent},
    {app::Command::ToolAgentProperties, agent},
    {app::Command::FileAgentLog, agent},
    {app::Command::ToolLog, agent},
    {app::Command::ToolDateTime, agent},
    {app::Command::EditFind, agent},
    {app::Command::EditReplace, agent},
    {app::Command::FileRouteMap, routing},
    {app::Command::FileProcInst, routing},
    {app::Command::FileOpenFolder, folderOrStore},
    {app::Command::FolderProperties, notRoot},
    {app::Command::ToolProperties, notRoot},
};

const QString kFavoritesText = QStringLiteral("Cannot view agents under Favorites.\r\n"
                                              "Navigate to the source folder to view agents.");

} // namespace

bool navigation::settlePendingEdit(frmMain &main)
{
    // Leaving the pane saves its edit; a command that replaces the pane's
    // text while the pane keeps the focus saves it first in the same way.
    const bool inPane = main.focusWidget() == main.txtPreview;
    if (inPane && main.blnDirty)
        main.mnuFileSave_Click();
    return !(inPane && main.blnDirty);
}

void frmMain::setNodeCommands(int image)
{
    for (const NodeCommand &c : kNodeCommands)
        setCommandEnabled(c.command, c.on(image));
    txtPreview->setLocked(!agent(image));
}

void frmMain::setPaneNotice(const QString &text)
{
    txtPreview->setText(text);
    blnDirty = false;
}

void frmMain::treOutl_NodeClick(QTreeWidgetItem *node)
{
    if (!node)
        return;
    const QString tag = SSTree::tag(node);
    const QString key = SSTree::key(node);
    const QString text = SSTree::text(node);
    const int image = SSTree::image(node);
    if (!tag.isEmpty())
        strStoreID = tag;
    strEntryID = key == QLatin1String("root") ? QString() : key;

    const bool hasEntry = !strEntryID.isEmpty();
    setCommandEnabled(app::Command::FolderProperties, hasEntry);
    setCommandEnabled(app::Command::FileOpenFolder, hasEntry);
    setCommandEnabled(app::Command::ToolProperties, hasEntry);

    action(app::Command::FolderProperties)->setText(QStringLiteral("Propert&ies for ") + text);
    action(app::Command::ToolProperties)->setToolTip(QStringLiteral("Properties for ") + text);
    setCaption(text);

    if (agent(image)) {
        GetScript();
        setNodeCommands(image);
        return;
    }

    const bool underFavorites = navigation::isUnderFavorites(SSTree::fullPath(node), currentUser());
    switch (image) {
    case navigation::kImageFolderWithAgents:
        setPaneNotice(underFavorites ? kFavoritesText : QStringLiteral("Select an agent below this node."));
        break;
    case navigation::kImageFolder:
        setPaneNotice(QStringLiteral("No agents installed."));
        break;
    case navigation::kImageNoRights:
        setPaneNotice(underFavorites ? kFavoritesText
                                     : QStringLiteral("You do not have permissions in this folder."));
        break;
    case navigation::kImageStore:
        setPaneNotice(QStringLiteral("Cannot install agents in this folder."));
        break;
    case navigation::kImageRoot: {
        QString help = QStringLiteral("* on numeric keypad expands all nodes below selection.\r\n"
                                      "- collapses selected node.\r\n"
                                      "+ expands selected node.");
        if (!action(app::Command::ViewFolderTree)->isChecked())
            help += QStringLiteral("\r\n\r\nSelect View Folder Tree command to view folders.");
        setPaneNotice(help);
        break;
    }
    default:
        break;
    }
    setNodeCommands(image);
}

void frmMain::GotoNode(const QString &strID)
{
    if (strID.isEmpty() || !navigation::settlePendingEdit(*this))
        return;
    if (QTreeWidgetItem *node = treOutl->node(strID))
        treOutl->select(node);
    if (QTreeWidgetItem *selected = treOutl->selectedItem()) {
        treOutl->scrollToItem(selected);
        treOutl_NodeClick(selected);
    }
    if (!action(app::Command::ViewFolderTree)->isChecked())
        mnuViewFolderTree_Click();
    treOutl->setFocus();
}

void frmMain::mnuViewFavorite_Click()
{
    if (treOutl->selectedItems().isEmpty()) {
        prompter().msgBox(QStringLiteral("Select a folder to mark as favorite."), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
        return;
    }
    if (!strEntryID.isEmpty() || !strStoreID.isEmpty())
        basRegistry::SetKeyValue(registry::HKEY_CURRENT_USER, kSettingsKey, QStringLiteral("FavoriteID"),
                                 strEntryID, registry::REG_SZ);
}

void frmMain::GoToFavorite()
{
    const QString favorite =
        basRegistry::QueryValue(registry::HKEY_CURRENT_USER, kSettingsKey, QStringLiteral("FavoriteID"))
            .toString();
    if (favorite.isEmpty()) {
        prompter().msgBox(QStringLiteral("No favorite folder has been set.\rSelect a folder and press F9\r"
                                         "to set a favorite folder."),
                          ui::Buttons::OK, ui::Icon::Information, 1, QString());
        return;
    }
    QTreeWidgetItem *node = treOutl->node(favorite);
    if (!node) {
        prompter().msgBox(
            QStringLiteral("The folder or agent marked as favorite is not available in this session."),
            ui::Buttons::OK, ui::Icon::Information, 1, QString());
        return;
    }
    if (!navigation::settlePendingEdit(*this))
        return;
    treOutl->select(node);
    treOutl->scrollToItem(node);
    treOutl_NodeClick(node);
    if (!action(app::Command::ViewFolderTree)->isChecked())
        mnuViewFolderTree_Click();
    treOutl->setFocus();
}

void frmMain::mnuFileOpenFolder_Click()
{
    if (strEntryID.isEmpty() && strStoreID.isEmpty())
        return;
    com::ResumeNext routine;
    routine.step([&] {
        outlook::MAPIFolder folder = m_program.gobjNameSpace->GetFolderFromID(strEntryID, strStoreID);
        QCoreApplication::processEvents();
        folder.Display();
        QCoreApplication::processEvents();
    });
}

void frmMain::mnuFolderProperties_Click()
{
    if (strEntryID.isEmpty() && strStoreID.isEmpty())
        return;
    com::ResumeNext routine;
    QString entry = strEntryID;
    QString store = strStoreID;
    QTreeWidgetItem *selected = treOutl->selectedItem();
    if (selected && SSTree::image(selected) >= navigation::kImageScriptAgent && selected->parent()) {
        entry = SSTree::key(selected->parent());
        store = SSTree::tag(selected->parent());
    }
    routine.step([&] {
        outlook::MAPIFolder folder = m_program.gobjNameSpace->GetFolderFromID(entry, store);
        QCoreApplication::processEvents();
        folder.Display();
        m_program.gobjOutlook->ActiveExplorer()->CommandBars().FindControl(QVariant(), 2502).Execute();
    });
}

void frmMain::treOutl_DblClick()
{
    QTreeWidgetItem *selected = treOutl->selectedItem();
    if (!selected)
        return;
    if (SSTree::image(selected) >= navigation::kImageScriptAgent) {
        run(app::Command::ToolOpen);
        return;
    }
    if (!strEntryID.isEmpty() || !strStoreID.isEmpty()) {
        selected->setExpanded(true);
        mnuFileOpenFolder_Click();
    }
}

void frmMain::treOutl_KeyDown(int keyCode, int shift, bool &swallow)
{
    if (keyCode == 86 && (shift & 2))
        swallow = true;
}

void frmMain::treOutl_KeyUp(int keyCode, int shift)
{
    // F5 reaches the refresh through the menu's own shortcut, which takes the
    // key first; doing it again on the key's release would refresh twice.
    // F11 and F12 are the tree's own here (the window keeps their shortcuts
    // from the menu while the tree has the focus): F11 shows the map on the
    // agent's binding message, where the menu's looks for the folder's map.
    Q_UNUSED(shift);
    QTreeWidgetItem *selected = treOutl->selectedItem();
    const bool routingAgent = selected && SSTree::image(selected) == navigation::kImageRoutingAgent &&
                              (!strEntryID.isEmpty() || !strStoreID.isEmpty());
    if (keyCode == 122 && routingAgent)
        DisplayMap(strEntryID, strStoreID, StripCurrentUser(SSTree::fullPath(selected->parent())));
    else if (keyCode == 123 && routingAgent)
        DisplayProcInst();
    else if (keyCode == 46) // Delete
        mnuFileDelete_Click();
}

void frmMain::treOutl_MouseUp(int button, const QPoint &globalPos)
{
    if (button != 2)
        return;
    // The File menu without "Exit" is the tree's context menu.
    QAction *exit = action(app::Command::FileExit);
    mnuFileBar7->setVisible(false);
    exit->setVisible(false);
    mnuFile->exec(globalPos);
    mnuFileBar7->setVisible(true);
    exit->setVisible(true);
}

void frmMain::treOutl_GotFocus()
{
    m_keyPreview = true;
}

void frmMain::treOutl_LostFocus()
{
    m_keyPreview = false;
}

bool frmMain::treOutl_BeforeNodeDelete(QTreeWidgetItem *node)
{
    Q_UNUSED(node);
    // With the deleting flag set the tree removes the node without asking.
    return m_program.blnNodeDeleting;
}
