#pragma once

#include "agents/changeguard.h"
#include "app/commands.h"
#include "platform/ui/prompter.h"

#include <QMainWindow>
#include <QPointer>

#include <array>
#include <memory>

class QAction;
namespace app {
class CommandAction;
}
class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QLabel;
class QMenu;
class QTabWidget;
class QToolBar;
class QTreeWidgetItem;
class frmFolder;

namespace app {
struct Program;
}
namespace controls {
class SSDBGrid;
class SSTree;
} // namespace controls
namespace mapi {
class Folder;
}
namespace scripts {
class ScriptPane;
}
namespace store {
class StoreWatch;
}

/// The main window: the folder tree and script pane on the "Administration"
/// tab, the install form on the "Installation" tab, and every command of the
/// menus and toolbar. Its handlers live in the folder of the subsystem that
/// owns them; this header groups them the same way.
class frmMain : public QMainWindow {
    Q_OBJECT

public:
    explicit frmMain(app::Program &program);
    ~frmMain() override;

    // The current object: the node clicked last (key and store), and whether
    // the pane holds an edit that no save has dealt with yet.
    QString strEntryID;
    QString strStoreID;
    bool blnDirty = false;
    /// The help's contents page; empty when the program has no help.
    QString helpFile;

    // ---- Application core (app/) ----
    /// Runs the load steps; false when the program can't go on.
    bool Form_Load();
    void Form_QueryUnload();
    void SaveRegSettings();
    void StatBar(const QString &strText, bool blnWait = false);
    /// The title bar: `text`, the program's name, and whether the store
    /// may only be read.
    void setCaption(const QString &text);
    QString statusText() const;
    /// The status bar's notice that another program changed the store
    /// since the tree was read; empty when there is none.
    QString storeNotice() const;
    /// A write waits for another program's lock on the store (true), or has
    /// stopped waiting (false): the hourglass and words in the status bar.
    void storeBusy(bool waiting);
    void Form_Resize();
    void PositionForm(QWidget *form);
    void mnuViewFolderTree_Click();
    void mnuViewPreview_Click();
    void mnuViewToolbar_Click();
    void mnuViewStatusBar_Click();
    void mnuFileExit_Click();
    /// Runs a command's handler, as choosing its entry or button does.
    void run(app::Command command);
    bool Form_KeyDown(int keyCode, int shift);
    void SSTab1_Click();

    // ---- Folder navigation (navigation/) ----
    void RefreshFolders();
    /// The tree is about to be read afresh from the store: the notice goes,
    /// and only what other programs write from now on brings it back.
    void storeRead();
    /// Another window of this program wrote the agent from `before` to
    /// `after` with no colleague's change between: when the pane loaded the
    /// same change, it now holds the one written, so that its next save
    /// doesn't ask about the user's own write.
    void agentWritten(const agents::LoadedChange &before, const agents::LoadedChange &after);
    void mnuViewRefresh_Click();
    /// The session's user, or the empty text when the session can't tell.
    QString currentUser() const;
    QString StripCurrentUser(const QString &fullPath) const;
    void treOutl_NodeClick(QTreeWidgetItem *node);
    void GotoNode(const QString &strID);
    void mnuViewFavorite_Click();
    void GoToFavorite();
    void mnuFileOpenFolder_Click();
    void mnuFolderProperties_Click();
    void treOutl_DblClick();
    void treOutl_KeyDown(int keyCode, int shift, bool &swallow);
    void treOutl_KeyUp(int keyCode, int shift);
    void treOutl_MouseUp(int button, const QPoint &globalPos);
    void treOutl_GotFocus();
    void treOutl_LostFocus();
    /// Removes a node of the tree as the delete command does; the tree asks
    /// before it removes one unless the deleting flag is set.
    bool treOutl_BeforeNodeDelete(QTreeWidgetItem *node);

    // ---- Agents (agents/) ----
    void cmdScript_Click();
    void chkRouting_Click();
    void chkScheduled_Click();
    void cmdSchedule_Click();
    void cmdFolder_Click();
    void cmdInstall_Click();
    /// Installs one agent in the folder of these identifiers; true when it
    /// failed. `targetPath` names the folder in the log line.
    bool InstallScript(const QString &strFilePath, const QString &strAgentName, const QString &entryId,
                       const QString &storeId, const QString &targetPath);
    void mnuFileAgentProperties_Click();
    void mnuFileDelete_Click();

    // ---- Scripts (scripts/) ----
    void mnuFileNew_Click();
    void mnuFileSaveAs_Click();
    bool GetScript();
    void mnuFileSave_Click();
    /// The save of the pane under the save-changes setting; true when the
    /// edit has been dealt with (written, declined or discarded, or there
    /// was none), false when it couldn't be saved.
    bool SaveScript();
    void txtPreview_Change();
    void txtPreview_GotFocus();
    void txtPreview_LostFocus();
    void txtPreview_KeyUp(int keyCode, int shift);
    void UpdateStatus();
    void mnuEdit_Click();
    void mnuEditUndo_Click();
    void mnuEditCut_Click();
    void mnuEditCopy_Click();
    void mnuEditPaste_Click();
    void mnuEditSelectAll_Click();
    void mnuEditTimeDate_Click();
    void mnuViewDecrease_Click();
    void mnuViewIncrease_Click();
    void mnuViewSetFont();
    void mnuFileOpen_Click();

    // ---- Agent catalogue (catalogue/) ----
    void mnuFileInstalledAgents_Click();
    void mnuFileExport_Click();
    void mnuFileAgentLog_Click();
    void DisplayLog();

    // ---- Routing (routing/) ----
    void mnuFileRouteMap_Click();
    /// Shows the map on the message of these identifiers, `strCaption` above
    /// its rows.
    void DisplayMap(const QString &strID, const QString &strStore, const QString &strCaption);
    void mnuFileProcInst_Click();
    void DisplayProcInst();
    // ---- Auxiliary dialogs and mail (dialogs/) ----
    void mnuViewOptions_Click();
    void mnuHelpAbout_Click();
    void mnuFileSend_Click();
    void mnuHelpTechSupport_Click();
    void mnuHelpContents_Click();
    void mnuHelpSearch_Click();

    controls::SSTree *treOutl = nullptr;
    // The "Installation" tab.
    QLineEdit *txtAgentName = nullptr;
    QLineEdit *txtSource = nullptr;
    QPushButton *cmdScript = nullptr;
    QPushButton *cmdFolder = nullptr;
    controls::SSDBGrid *SSDBTarget = nullptr;
    QCheckBox *chkMultiple = nullptr;
    QGroupBox *fraWhen = nullptr;
    QCheckBox *chkScheduled = nullptr;
    QCheckBox *chkNew = nullptr;
    QCheckBox *chkUpdate = nullptr;
    QCheckBox *chkDelete = nullptr;
    QPushButton *cmdSchedule = nullptr;
    QCheckBox *chkRouting = nullptr;
    QPushButton *cmdInstall = nullptr;
    scripts::ScriptPane *txtPreview = nullptr;
    QPointer<frmFolder> folderForm;

    /// The one common dialog of the program; its properties stay as the
    /// last use left them.
    ui::CommonDialogState CommonDialog1;

    /// A menu entry or toolbar button.
    QAction *action(app::Command command) const;
    /// Enables or disables a command; a hidden entry keeps what was set.
    void setCommandEnabled(app::Command command, bool on);

    app::Program &program() { return m_program; }
    ui::Prompter &prompter();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createActions();
    void createMenus();
    void createToolBar();
    void createStatusBar();
    void createTabs();
    void createInstallTab(QWidget *page);
    void connectTree();
    /// Shows or hides the tree or the pane; the last of the two stays.
    void toggleView(app::Command entryCommand, app::Command buttonCommand, QWidget *view,
                    app::Command otherEntry);
    void setNodeCommands(int image);
    void setPaneNotice(const QString &text);
    /// Another program has written to the store: the status bar says so.
    void storeChanged();
    /// Makes a command's action and keeps it, with its handler, in the
    /// command table.
    app::CommandAction *addCommand(app::Command command, const QString &text, void (frmMain::*handler)());

    app::Program &m_program;
    QToolBar *tbToolBar = nullptr;
    QTabWidget *SSTab1 = nullptr;
    QWidget *m_adminPage = nullptr;
    QLabel *m_panelText = nullptr;
    QLabel *m_panelNotice = nullptr;
    /// Tells when another program writes to the store the tree shows.
    std::unique_ptr<store::StoreWatch> m_storeWatch;
    QString m_textBeforeWait;
    QMenu *mnuFile = nullptr;
    QMenu *mnuEdit = nullptr;
    QMenu *mnuView = nullptr;
    QMenu *mnuHelp = nullptr;
    /// The separator above "Exit", hidden with it in the tree's context menu.
    QAction *mnuFileBar7 = nullptr;
    struct CommandSlot {
        app::CommandAction *action = nullptr;
        void (frmMain::*handler)() = nullptr;
    };
    /// Every command's action and handler, by `app::Command`.
    std::array<CommandSlot, app::kCommandCount> m_commands{};
    bool m_keyPreview = false;
    bool m_unloaded = false;
    /// The change of the agent whose script the pane shows, as loaded.
    agents::LoadedChange m_loadedScript;
};
