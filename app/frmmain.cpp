#include "app/frmmain.h"

#include "app/commandaction.h"
#include "app/images.h"
#include "app/program.h"
#include "platform/controls/sstree.h"
#include "platform/os/helptopic.h"
#include "platform/os/helpviewer.h"
#include "platform/os/twips.h"
#include "platform/store/storewatch.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTime>
#include <QTimer>
#include <QToolBar>

#include <optional>
#include <variant>

namespace {

using app::Command;

/// One toolbar button: its command, tool tip, image key and handler; a
/// button without a command is a separator.
struct ToolButton {
    std::optional<Command> command;
    const char *tip = "";
    const char *image = "";
    void (frmMain::*handler)() = nullptr;
};

const ToolButton kToolButtons[] = {
    {Command::ToolNew, "New Script", "New", &frmMain::mnuFileNew_Click},
    {Command::ToolOpen, "Open Script in Editor", "OpenScript", &frmMain::mnuFileOpen_Click},
    {Command::ToolSave, "Save Script", "Save", &frmMain::mnuFileSave_Click},
    {Command::ToolDelete, "Delete Agent", "Delete", &frmMain::mnuFileDelete_Click},
    {},
    {Command::ToolProperties, "Folder Properties", "Properties", &frmMain::mnuFolderProperties_Click},
    {Command::ToolAgentProperties, "Agent Properties", "ScriptProperties",
     &frmMain::mnuFileAgentProperties_Click},
    {Command::ToolLog, "Agent Log", "Question", &frmMain::mnuFileAgentLog_Click},
    {},
    {Command::ToolSend, "Send Script", "Send", &frmMain::mnuFileSend_Click},
    {Command::ToolInstalled, "Installed Agents", "Grid", &frmMain::mnuFileInstalledAgents_Click},
    {},
    {Command::ToolCut, "Cut", "Cut", &frmMain::mnuEditCut_Click},
    {Command::ToolCopy, "Copy", "Copy", &frmMain::mnuEditCopy_Click},
    {Command::ToolPaste, "Paste", "Paste", &frmMain::mnuEditPaste_Click},
    {},
    {Command::ToolDateTime, "Insert Date/Time", "TimeDate", &frmMain::mnuEditTimeDate_Click},
    {},
    {Command::ToolViewFolder, "View Folder List", "Folder", &frmMain::mnuViewFolderTree_Click},
    {Command::ToolViewPreview, "View Script Preview", "Script", &frmMain::mnuViewPreview_Click},
    {},
    {Command::ToolFavorite, "Go to Favorite Folder", "Favorite", &frmMain::GoToFavorite},
};

/// A menu's layout: its commands, and its separators by their names.
using MenuItem = std::variant<Command, const char *>;

} // namespace

frmMain::frmMain(app::Program &program) : m_program(program)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Sorrelin"));
    setWindowIcon(app::images::appIcon());
    createActions();
    createMenus();
    createToolBar();
    createTabs();
    createStatusBar();
    connectTree();
    // Twips of the form's definition: 7440 by 5052 client area.
    resize(os::px(7440), os::px(5052) + 50);
    qApp->installEventFilter(this);
    new os::HelpTopic(this, 3);
    new os::HelpKey(this); // F1 opens the help of the window or control
}

frmMain::~frmMain()
{
    qApp->removeEventFilter(this);
}

ui::Prompter &frmMain::prompter()
{
    return m_program.prompter;
}

QAction *frmMain::action(Command command) const
{
    QAction *a = m_commands[static_cast<std::size_t>(command)].action;
    Q_ASSERT_X(a, "frmMain::action", "a command that createActions didn't make");
    return a;
}

void frmMain::run(Command command)
{
    const CommandSlot &slot = m_commands[static_cast<std::size_t>(command)];
    Q_ASSERT_X(slot.handler, "frmMain::run", "a command without a handler");
    if (slot.handler)
        (this->*slot.handler)();
}

void frmMain::setCommandEnabled(Command command, bool on)
{
    app::CommandAction *a = m_commands[static_cast<std::size_t>(command)].action;
    Q_ASSERT_X(a, "frmMain::setCommandEnabled", "a command that createActions didn't make");
    a->setCommandEnabled(on);
}

app::CommandAction *frmMain::addCommand(Command command, const QString &text, void (frmMain::*handler)())
{
    CommandSlot &slot = m_commands[static_cast<std::size_t>(command)];
    Q_ASSERT_X(!slot.action, "frmMain::addCommand", "a command made twice");
    slot.action = new app::CommandAction(text, this);
    slot.action->setObjectName(app::commandName(command));
    slot.handler = handler;
    return slot.action;
}

void frmMain::createActions()
{
    // An entry of the menus. Those made without a handler are the entries
    // whose windows the program doesn't have: they stand where they belong
    // and take part in the enabling, and choosing one does nothing.
    const auto make = [this](Command command, const char *caption, const char *shortcut,
                             void (frmMain::*handler)()) {
        QAction *a = addCommand(command, QString::fromLatin1(caption), handler);
        if (shortcut)
            a->setShortcut(QKeySequence(QString::fromLatin1(shortcut)));
        if (handler)
            connect(a, &QAction::triggered, this, handler);
        return a;
    };
    make(Command::FileNew, "&New Script...", "Ctrl+N", &frmMain::mnuFileNew_Click);
    make(Command::FileOpen, "&Open Script", "Ctrl+O", &frmMain::mnuFileOpen_Click);
    make(Command::FileOpenFolder, "Open &Folder", "F3", &frmMain::mnuFileOpenFolder_Click);
    make(Command::FileSave, "&Save Script", "Ctrl+S", &frmMain::mnuFileSave_Click);
    make(Command::FileSaveAs, "Save Script &As...", nullptr, &frmMain::mnuFileSaveAs_Click);
    // Del deletes an agent from the tree only (its key-up there), never a
    // character of the pane: the entry shows the key without owning it.
    make(Command::FileDelete, "Dele&te Agent\tDel", nullptr, &frmMain::mnuFileDelete_Click);
    make(Command::FileAgentLog, "Agent &Log", "F2", &frmMain::mnuFileAgentLog_Click);
    make(Command::FileAgentProperties, "Agent P&roperties", "F8", &frmMain::mnuFileAgentProperties_Click);
    make(Command::FolderProperties, "Folder Propert&ies", "F4", &frmMain::mnuFolderProperties_Click);
    make(Command::FileRouteMap, "Route &Map", "F11", &frmMain::mnuFileRouteMap_Click);
    make(Command::FileProcInst, "Process Instan&ces...", "F12", &frmMain::mnuFileProcInst_Click);
    make(Command::FileExport, "&Export Agent List...", nullptr, &frmMain::mnuFileExport_Click);
    make(Command::FileInstalledAgents, "I&nstalled Agents", nullptr, &frmMain::mnuFileInstalledAgents_Click);
    make(Command::FileSend, "Sen&d...", nullptr, &frmMain::mnuFileSend_Click);
    make(Command::FileExit, "E&xit", nullptr, &frmMain::mnuFileExit_Click);

    make(Command::EditUndo, "&Undo", "Ctrl+Z", &frmMain::mnuEditUndo_Click);
    make(Command::EditCut, "Cu&t", "Ctrl+X", &frmMain::mnuEditCut_Click);
    make(Command::EditCopy, "&Copy", "Ctrl+C", &frmMain::mnuEditCopy_Click);
    make(Command::EditPaste, "&Paste", "Ctrl+V", &frmMain::mnuEditPaste_Click);
    make(Command::EditSelectAll, "Select &All", "Ctrl+A", &frmMain::mnuEditSelectAll_Click);
    make(Command::EditTimeDate, "Time/&Date", "Ctrl+T", &frmMain::mnuEditTimeDate_Click)->setVisible(false);
    make(Command::EditFind, "&Find...", nullptr, nullptr)->setVisible(false);
    make(Command::EditReplace, "&Replace...", nullptr, nullptr)->setVisible(false);

    // The view entries carry check marks that their commands set; a click
    // on one must not flip the mark before the command looks at it.
    const auto toggle = [this](Command command, const char *caption, void (frmMain::*handler)()) {
        QAction *a = addCommand(command, QString::fromLatin1(caption), handler);
        a->setCheckable(true);
        a->setChecked(true);
        connect(a, &QAction::triggered, this, [this, a, handler](bool checked) {
            a->setChecked(!checked);
            (this->*handler)();
        });
    };
    toggle(Command::ViewFolderTree, "&Folder Tree", &frmMain::mnuViewFolderTree_Click);
    toggle(Command::ViewPreview, "Script Pre&view", &frmMain::mnuViewPreview_Click);
    toggle(Command::ViewToolbar, "&Toolbar", &frmMain::mnuViewToolbar_Click);
    toggle(Command::ViewStatusBar, "Status &Bar", &frmMain::mnuViewStatusBar_Click);
    make(Command::ViewSetFont, "Set &Font...", nullptr, &frmMain::mnuViewSetFont);
    make(Command::ViewDecrease, "&Decrease Font Size ", "F6", &frmMain::mnuViewDecrease_Click);
    make(Command::ViewIncrease, "&Increase Font Size", "F7", &frmMain::mnuViewIncrease_Click);
    make(Command::ViewFavorite, "Set Fa&vorite Folder", "F9", &frmMain::mnuViewFavorite_Click);
    make(Command::ViewRefresh, "&Refresh Folder List", "F5", &frmMain::mnuViewRefresh_Click);
    make(Command::ViewOptions, "&Options...", nullptr, &frmMain::mnuViewOptions_Click);

    make(Command::HelpContents, "&Contents", nullptr, &frmMain::mnuHelpContents_Click);
    make(Command::HelpSearch, "&Search For Help On...", nullptr, &frmMain::mnuHelpSearch_Click);
    make(Command::HelpTechSupport, "&Technical Support", nullptr, &frmMain::mnuHelpTechSupport_Click);
    make(Command::HelpAbout, "&About Sorrelin", nullptr, &frmMain::mnuHelpAbout_Click);
}

void frmMain::createMenus()
{
    const auto menu = [this](const char *name, const char *caption) {
        QMenu *m = menuBar()->addMenu(QString::fromLatin1(caption));
        m->setObjectName(QString::fromLatin1(name) + QStringLiteral("Menu"));
        m->menuAction()->setObjectName(QString::fromLatin1(name));
        return m;
    };
    // Each separator is named as a numbered bar; the hidden ones stand
    // around the hidden entries.
    const auto fill = [this](QMenu *m, std::initializer_list<MenuItem> items) {
        for (const MenuItem &item : items) {
            if (const Command *command = std::get_if<Command>(&item)) {
                m->addAction(action(*command));
                continue;
            }
            QAction *bar = m->addSeparator();
            bar->setObjectName(QString::fromLatin1(std::get<const char *>(item)));
            if (bar->objectName() == QLatin1String("mnuFileBar7"))
                mnuFileBar7 = bar;
            if (bar->objectName() == QLatin1String("mnuEditBar2") ||
                bar->objectName() == QLatin1String("mnuEditBar3"))
                bar->setVisible(false);
        }
    };
    mnuFile = menu("mnuFile", "&File");
    fill(mnuFile, {Command::FileNew,
                   Command::FileOpen,
                   Command::FileOpenFolder,
                   "mnuFileBar1",
                   Command::FileSave,
                   Command::FileSaveAs,
                   "mnuFileBar2",
                   Command::FileDelete,
                   "mnuFileBar3",
                   Command::FileAgentLog,
                   Command::FileAgentProperties,
                   Command::FolderProperties,
                   "mnuFileBar4",
                   Command::FileRouteMap,
                   Command::FileProcInst,
                   "mnuFileBar5",
                   Command::FileExport,
                   Command::FileInstalledAgents,
                   "mnuFileBar6",
                   Command::FileSend,
                   "mnuFileBar7",
                   Command::FileExit});
    mnuEdit = menu("mnuEdit", "&Edit");
    fill(mnuEdit, {Command::EditUndo, "mnuEditBar1", Command::EditCut, Command::EditCopy, Command::EditPaste,
                   Command::EditSelectAll, "mnuEditBar2", Command::EditTimeDate, "mnuEditBar3",
                   Command::EditFind, Command::EditReplace});
    connect(mnuEdit, &QMenu::aboutToShow, this, &frmMain::mnuEdit_Click);
    mnuView = menu("mnuView", "&View");
    fill(mnuView,
         {Command::ViewFolderTree, Command::ViewPreview, Command::ViewToolbar, Command::ViewStatusBar,
          "mnuViewBar2", Command::ViewSetFont, Command::ViewDecrease, Command::ViewIncrease, "mnuViewBar3",
          Command::ViewFavorite, Command::ViewRefresh, Command::ViewOptions});
    mnuHelp = menu("mnuHelp", "&Help");
    fill(mnuHelp, {Command::HelpContents, Command::HelpSearch, Command::HelpTechSupport, "mnuHelpBar1",
                   Command::HelpAbout});
}

void frmMain::createToolBar()
{
    tbToolBar = addToolBar(QStringLiteral("Toolbar"));
    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    tbToolBar->setMovable(false);
    tbToolBar->setIconSize(QSize(16, 16));
    tbToolBar->toggleViewAction()->setVisible(false);
    int separator = 0;
    for (const ToolButton &b : kToolButtons) {
        if (!b.command) {
            tbToolBar->addSeparator()->setObjectName(
                QStringLiteral("tbToolBar.separator%1").arg(++separator));
            continue;
        }
        const Command command = *b.command;
        // The button's text is its key, the name after "tbToolBar.".
        app::CommandAction *a = addCommand(command, app::commandName(command).sliced(10), b.handler);
        a->setIcon(app::images::toolbarImage(QString::fromLatin1(b.image)));
        a->setToolTip(QString::fromLatin1(b.tip));
        a->setImageKey(QString::fromLatin1(b.image));
        if (command == Command::ToolViewFolder || command == Command::ToolViewPreview) {
            a->setCheckable(true);
            a->setChecked(true);
        }
        tbToolBar->addAction(a);
        connect(a, &QAction::triggered, this, [this, command] { run(command); });
    }
}

void frmMain::createTabs()
{
    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    m_adminPage = new QWidget(SSTab1);
    m_adminPage->setObjectName(QStringLiteral("SSTab1.Administration"));
    treOutl = new controls::SSTree(m_adminPage);
    treOutl->setObjectName(QStringLiteral("treOutl"));
    treOutl->setImageList(app::images::treeImageList());
    txtPreview = new scripts::ScriptPane(m_adminPage);
    txtPreview->setObjectName(QStringLiteral("txtPreview"));
    SSTab1->addTab(m_adminPage, QStringLiteral("Administration"));
    auto *installPage = new QWidget(SSTab1);
    installPage->setObjectName(QStringLiteral("SSTab1.Installation"));
    createInstallTab(installPage);
    SSTab1->addTab(installPage, QStringLiteral("Installation"));
    setCentralWidget(SSTab1);
    m_adminPage->installEventFilter(this);
    connect(SSTab1, &QTabWidget::currentChanged, this, &frmMain::SSTab1_Click);

    connect(txtPreview, &scripts::ScriptPane::Change, this, &frmMain::txtPreview_Change);
    connect(txtPreview, &scripts::ScriptPane::GotFocus, this, &frmMain::txtPreview_GotFocus);
    connect(txtPreview, &scripts::ScriptPane::LostFocus, this, &frmMain::txtPreview_LostFocus);
    connect(txtPreview, &scripts::ScriptPane::KeyUp, this, &frmMain::txtPreview_KeyUp);
    connect(txtPreview, &scripts::ScriptPane::MouseUp, this, &frmMain::UpdateStatus);
    connect(txtPreview, &scripts::ScriptPane::LeftOut, this, &frmMain::UpdateStatus);
}

void frmMain::createStatusBar()
{
    auto *bar = new QStatusBar(this);
    bar->setObjectName(QStringLiteral("sbStatusBar"));
    setStatusBar(bar);
    m_panelText = new QLabel(QStringLiteral("Ready"), bar);
    m_panelText->setObjectName(QStringLiteral("sbStatusBar.Panel1"));
    auto *date = new QLabel(bar);
    date->setObjectName(QStringLiteral("sbStatusBar.Panel2"));
    auto *time = new QLabel(bar);
    time->setObjectName(QStringLiteral("sbStatusBar.Panel3"));
    // Another program's change to the store, in a panel of its own so that
    // the first panel's words stay what the commands make them.
    m_panelNotice = new QLabel(bar);
    m_panelNotice->setObjectName(QStringLiteral("sbStatusBar.Notice"));
    m_panelNotice->hide();
    bar->addWidget(m_panelText, 1);
    bar->addPermanentWidget(m_panelNotice);
    bar->addPermanentWidget(date);
    bar->addPermanentWidget(time);
    // The date and time panels keep themselves current.
    const auto tick = [date, time] {
        const QLocale locale;
        date->setText(locale.toString(QDate::currentDate(), QLocale::ShortFormat));
        time->setText(locale.toString(QTime::currentTime(), QLocale::ShortFormat));
    };
    tick();
    auto *clock = new QTimer(bar);
    connect(clock, &QTimer::timeout, bar, tick);
    clock->start(1000);
}

void frmMain::connectTree()
{
    connect(treOutl, &controls::SSTree::NodeClick, this, &frmMain::treOutl_NodeClick);
    connect(treOutl, &controls::SSTree::DblClick, this, &frmMain::treOutl_DblClick);
    connect(treOutl, &controls::SSTree::KeyDown, this, &frmMain::treOutl_KeyDown);
    connect(treOutl, &controls::SSTree::KeyUp, this, &frmMain::treOutl_KeyUp);
    connect(treOutl, &controls::SSTree::MouseUp, this, &frmMain::treOutl_MouseUp);
    connect(treOutl, &controls::SSTree::GotFocus, this, &frmMain::treOutl_GotFocus);
    connect(treOutl, &controls::SSTree::LostFocus, this, &frmMain::treOutl_LostFocus);
}
