#pragma once

#include <QPointer>
#include <QString>
#include <QVariant>

#include <memory>

namespace mapi {
class Session;
}
namespace events {
class Events;
}
namespace outlook {
class Application;
class NameSpace;
} // namespace outlook
namespace ui {
class Prompter;
}

class frmMain;

namespace app {

/// The program-wide objects and settings: made once at start-up and held
/// until the main window closes.
struct Program {
    explicit Program(ui::Prompter &prompter);
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Everything that asks the user goes through here.
    ui::Prompter &prompter;

    std::unique_ptr<mapi::Session> gobjSession;
    std::unique_ptr<outlook::Application> gobjOutlook;
    std::unique_ptr<outlook::NameSpace> gobjNameSpace;
    std::unique_ptr<events::Events> gobjEvents;
    QPointer<frmMain> gfrmMain;

    // In-memory copies of the settings.
    QString gstrRefreshOnStartup;
    QString gstrSaveChangesMode;
    QString gstrDefaultEditor;
    QString gstrOtherPath;
    QString gstrLocationPath;
    QVariant gvarPrintDialogs;

    /// Set just before the delete command removes an agent's node.
    bool blnNodeDeleting = false;
    /// Set once the user has been told that the application log can't be written.
    bool blnLogFailureShown = false;
    /// Set once the user has been told, in the act at hand, that the store is gone.
    bool blnStoreLossShown = false;
};

/// Start-up: logs on, shows the splash, loads and shows the main window.
/// Returns false when the program must end at once (the user cancelled the
/// logon, or a failure was shown). The caller then runs the event loop until
/// the main window has closed.
bool Main(Program &program);

/// The program's own folder (where the help file and share/ are found).
QString appPath();

} // namespace app
