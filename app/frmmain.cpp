#include "app/frmmain.h"

#include "app/icons.h"
#include "app/program.h"
#include "platform/controls/sstree.h"
#include "platform/os/helpviewer.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTabWidget>
#include <QTime>
#include <QTimer>
#include <QToolBar>

namespace {

/// One menu entry: name, caption, shortcut, and whether it is a separator.
struct MenuEntry {
    const char *name;
    const char *caption;
    const char *shortcut = nullptr;
};

/// One toolbar button: key, tool tip, image key; an empty key is a separator.
struct ToolButton {
    const char *key;
    const char *tip;
    const char *image;
};

const ToolButton kToolButtons[] = {
    {"New", "New Script", "New"},
    {"Open", "Open Script in Editor", "OpenScript"},
    {"Save", "Save Script", "Save"},
    {"Delete", "Delete Agent", "Delete"},
    {"", "", ""},
    {"Properties", "Folder Properties", "Properties"},
    {"Agent Properties", "Agent Properties", "ScriptProperties"},
    {"Log", "Agent Log", "Question"},
    {"", "", ""},
    {"Send", "Send Script", "Send"},
    {"Installed", "Installed Agents", "Grid"},
    {"", "", ""},
    {"Cut", "Cut", "Cut"},
    {"Copy", "Copy", "Copy"},
    {"Paste", "Paste", "Paste"},
    {"", "", ""},
    {"DateTime", "Insert Date/Time", "TimeDate"},
    {"", "", ""},
    {"ViewFolder", "View Folder List", "Folder"},
    {"ViewPreview", "View Script Preview", "Script"},
    {"", "", ""},
    {"Favorite", "Go to Favorite Folder", "Favorite"},
};

/// Separators are named as numbered bars ("mnuFileBar7"); "mnuViewStatusBar"
/// is an entry.
bool isSeparatorName(const QString &name)
{
    static const QRegularExpression bar(QStringLiteral("Bar\\d+$"));
    return bar.match(name).hasMatch();
}

} // namespace

frmMain::frmMain(app::Program &program) : m_program(program)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Sorrelin"));
    setWindowIcon(app::icons::appIcon());
    createActions();
    createMenus();
    createToolBar();
    createTabs();
    createStatusBar();
    connectTree();
    // Twips of the form's definition: 7440 by 5052 client area.
    resize(7440 / 15, 5052 / 15 + 50);
    qApp->installEventFilter(this);
    setProperty("helpContext", 3);
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

QAction *frmMain::action(const QString &name) const
{
    return findChild<QAction *>(name);
}

void frmMain::setEnabled(const QString &name, bool on)
{
    if (QAction *a = action(name)) {
        a->setEnabled(on);
        // A hidden entry reads as disabled; keep what the program set.
        a->setProperty("vbEnabled", on);
    }
}

void frmMain::createActions()
{
    // An entry of the menus. Those made without a command are the entries
    // whose windows (editors, lists, routing views, options, help) the
    // program doesn't have yet: they stand where they belong and take part
    // in the enabling, and choosing one does nothing.
    const auto entry = [this](const char *name, const char *caption, const char *shortcut) {
        auto *a = new QAction(QString::fromLatin1(caption), this);
        a->setObjectName(QString::fromLatin1(name));
        if (shortcut)
            a->setShortcut(QKeySequence(QString::fromLatin1(shortcut)));
        return a;
    };
    const auto make = [this, &entry](const char *name, const char *caption, const char *shortcut,
                                     auto handler) {
        QAction *a = entry(name, caption, shortcut);
        connect(a, &QAction::triggered, this, handler);
        return a;
    };
    make("mnuFileNew", "&New Script...", "Ctrl+N", &frmMain::mnuFileNew_Click);
    make("mnuFileOpen", "&Open Script", "Ctrl+O", &frmMain::mnuFileOpen_Click);
    make("mnuFileOpenFolder", "Open &Folder", "F3", &frmMain::mnuFileOpenFolder_Click);
    make("mnuFileSave", "&Save Script", "Ctrl+S", &frmMain::mnuFileSave_Click);
    make("mnuFileSaveAs", "Save Script &As...", nullptr, &frmMain::mnuFileSaveAs_Click);
    // Del deletes an agent from the tree only (its key-up there), never a
    // character of the pane: the entry shows the key without owning it.
    make("mnuFileDelete", "Dele&te Agent\tDel", nullptr, &frmMain::mnuFileDelete_Click);
    make("mnuFileAgentLog", "Agent &Log", "F2", &frmMain::mnuFileAgentLog_Click);
    make("mnuFileAgentProperties", "Agent P&roperties", "F8", &frmMain::mnuFileAgentProperties_Click);
    make("mnuFolderProperties", "Folder Propert&ies", "F4", &frmMain::mnuFolderProperties_Click);
    make("mnuFileRouteMap", "Route &Map", "F11", &frmMain::mnuFileRouteMap_Click);
    make("mnuFileProcInst", "Process Instan&ces...", "F12", &frmMain::mnuFileProcInst_Click);
    make("mnuFileExport", "&Export Agent List...", nullptr, &frmMain::mnuFileExport_Click);
    make("mnuFileInstalledAgents", "I&nstalled Agents", nullptr, &frmMain::mnuFileInstalledAgents_Click);
    make("mnuFileSend", "Sen&d...", nullptr, &frmMain::mnuFileSend_Click);
    make("mnuFileExit", "E&xit", nullptr, &frmMain::mnuFileExit_Click);

    make("mnuEditUndo", "&Undo", "Ctrl+Z", &frmMain::mnuEditUndo_Click);
    make("mnuEditCut", "Cu&t", "Ctrl+X", &frmMain::mnuEditCut_Click);
    make("mnuEditCopy", "&Copy", "Ctrl+C", &frmMain::mnuEditCopy_Click);
    make("mnuEditPaste", "&Paste", "Ctrl+V", &frmMain::mnuEditPaste_Click);
    make("mnuEditSelectAll", "Select &All", "Ctrl+A", &frmMain::mnuEditSelectAll_Click);
    make("mnuEditTimeDate", "Time/&Date", "Ctrl+T", &frmMain::mnuEditTimeDate_Click)->setVisible(false);
    entry("mnuEditFind", "&Find...", nullptr)->setVisible(false);
    entry("mnuEditReplace", "&Replace...", nullptr)->setVisible(false);

    // The view entries carry check marks that their commands set; a click
    // on one must not flip the mark before the command looks at it.
    const auto toggle = [this, &entry](const char *name, const char *caption, void (frmMain::*handler)()) {
        QAction *a = entry(name, caption, nullptr);
        a->setCheckable(true);
        connect(a, &QAction::triggered, this, [this, a, handler](bool checked) {
            a->setChecked(!checked);
            (this->*handler)();
        });
    };
    toggle("mnuViewFolderTree", "&Folder Tree", &frmMain::mnuViewFolderTree_Click);
    toggle("mnuViewPreview", "Script Pre&view", &frmMain::mnuViewPreview_Click);
    toggle("mnuViewToolbar", "&Toolbar", &frmMain::mnuViewToolbar_Click);
    toggle("mnuViewStatusBar", "Status &Bar", &frmMain::mnuViewStatusBar_Click);
    for (const char *name : {"mnuViewFolderTree", "mnuViewPreview", "mnuViewToolbar", "mnuViewStatusBar"})
        action(QString::fromLatin1(name))->setChecked(true);
    make("mnuViewSetFont", "Set &Font...", nullptr, &frmMain::mnuViewSetFont);
    make("mnuViewDecrease", "&Decrease Font Size ", "F6", &frmMain::mnuViewDecrease_Click);
    make("mnuViewIncrease", "&Increase Font Size", "F7", &frmMain::mnuViewIncrease_Click);
    make("mnuViewFavorite", "Set Fa&vorite Folder", "F9", &frmMain::mnuViewFavorite_Click);
    make("mnuViewRefresh", "&Refresh Folder List", "F5", &frmMain::mnuViewRefresh_Click);
    make("mnuViewOptions", "&Options...", nullptr, &frmMain::mnuViewOptions_Click);

    make("mnuHelpContents", "&Contents", nullptr, &frmMain::mnuHelpContents_Click);
    make("mnuHelpSearch", "&Search For Help On...", nullptr, &frmMain::mnuHelpSearch_Click);
    make("mnuHelpTechSupport", "&Technical Support", nullptr, &frmMain::mnuHelpTechSupport_Click);
    make("mnuHelpAbout", "&About Sorrelin", nullptr, &frmMain::mnuHelpAbout_Click);
}

void frmMain::createMenus()
{
    const auto menu = [this](const char *name, const char *caption) {
        QMenu *m = menuBar()->addMenu(QString::fromLatin1(caption));
        m->setObjectName(QString::fromLatin1(name) + QStringLiteral("Menu"));
        m->menuAction()->setObjectName(QString::fromLatin1(name));
        return m;
    };
    const auto fill = [this](QMenu *m, std::initializer_list<const char *> names) {
        for (const char *name : names) {
            const QString n = QString::fromLatin1(name);
            if (isSeparatorName(n)) {
                QAction *sep = m->addSeparator();
                sep->setObjectName(n);
            } else {
                m->addAction(action(n));
            }
        }
    };
    mnuFile = menu("mnuFile", "&File");
    fill(mnuFile, {"mnuFileNew",
                   "mnuFileOpen",
                   "mnuFileOpenFolder",
                   "mnuFileBar1",
                   "mnuFileSave",
                   "mnuFileSaveAs",
                   "mnuFileBar2",
                   "mnuFileDelete",
                   "mnuFileBar3",
                   "mnuFileAgentLog",
                   "mnuFileAgentProperties",
                   "mnuFolderProperties",
                   "mnuFileBar4",
                   "mnuFileRouteMap",
                   "mnuFileProcInst",
                   "mnuFileBar5",
                   "mnuFileExport",
                   "mnuFileInstalledAgents",
                   "mnuFileBar6",
                   "mnuFileSend",
                   "mnuFileBar7",
                   "mnuFileExit"});
    mnuEdit = menu("mnuEdit", "&Edit");
    fill(mnuEdit,
         {"mnuEditUndo", "mnuEditBar1", "mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditSelectAll",
          "mnuEditBar2", "mnuEditTimeDate", "mnuEditBar3", "mnuEditFind", "mnuEditReplace"});
    for (const char *hidden : {"mnuEditBar2", "mnuEditBar3"})
        action(QString::fromLatin1(hidden))->setVisible(false);
    connect(mnuEdit, &QMenu::aboutToShow, this, &frmMain::mnuEdit_Click);
    mnuView = menu("mnuView", "&View");
    fill(mnuView, {"mnuViewFolderTree", "mnuViewPreview", "mnuViewToolbar", "mnuViewStatusBar", "mnuViewBar2",
                   "mnuViewSetFont", "mnuViewDecrease", "mnuViewIncrease", "mnuViewBar3", "mnuViewFavorite",
                   "mnuViewRefresh", "mnuViewOptions"});
    mnuHelp = menu("mnuHelp", "&Help");
    fill(mnuHelp, {"mnuHelpContents", "mnuHelpSearch", "mnuHelpTechSupport", "mnuHelpBar1", "mnuHelpAbout"});
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
        const QString key = QString::fromLatin1(b.key);
        if (key.isEmpty()) {
            tbToolBar->addSeparator()->setObjectName(
                QStringLiteral("tbToolBar.separator%1").arg(++separator));
            continue;
        }
        QAction *a = tbToolBar->addAction(app::icons::toolbarImage(QString::fromLatin1(b.image)), key);
        a->setObjectName(QStringLiteral("tbToolBar.") + key);
        a->setToolTip(QString::fromLatin1(b.tip));
        a->setProperty("imageKey", QString::fromLatin1(b.image));
        if (key == QLatin1String("ViewFolder") || key == QLatin1String("ViewPreview")) {
            a->setCheckable(true);
            a->setChecked(true);
        }
        connect(a, &QAction::triggered, this, [this, key] { tbToolBar_ButtonClick(key); });
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
    treOutl->setImageList(app::icons::treeImageList());
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
    bar->addWidget(m_panelText, 1);
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
