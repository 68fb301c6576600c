// Start-up: the session, the splash window, Outlook's namespace and the
// main window, in that order.
#include "app/eventlog.h"
#include "app/frmmain.h"
#include "app/frmsplash.h"
#include "app/program.h"
#include "app/storeloss.h"
#include "platform/com/routine.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/os/applog.h"
#include "platform/outlook/application.h"
#include "platform/registry/registry.h"
#include "platform/ui/prompter.h"

#include <QApplication>
#include <QCoreApplication>
#include <QScreen>

namespace app {

namespace {

void stopMessage(Program &program, const QString &text)
{
    program.prompter.msgBox(text, ui::Buttons::OK, ui::Icon::Stop, 1, QString());
}

/// Logs Outlook's namespace on to the session's profile: first without the
/// profile dialog, then with it.
bool LogonOutlook(Program &program)
{
    com::ResumeNext routine;
    routine.step([&] { program.gobjOutlook = std::make_unique<outlook::Application>(program.prompter); });
    if (routine.failed() || !program.gobjOutlook) {
        stopMessage(program, QStringLiteral("Could not create Outlook Application object!"));
        return false;
    }
    routine.step([&] { program.gobjNameSpace = program.gobjOutlook->GetNamespace(QStringLiteral("MAPI")); });
    if (!program.gobjNameSpace)
        return false;
    const QString profile = routine.value<QString>([&] { return program.gobjSession->Name(); });
    routine.clear();
    routine.step([&] { program.gobjNameSpace->Logon(profile, QString(), false, false); });
    if (!routine.failed())
        return true;
    routine.clear();
    routine.step([&] { program.gobjNameSpace->Logon(profile, QString(), true, false); });
    return !routine.failed();
}

/// A settings file that was damaged and has been replaced, or that can't be
/// used: the user hears of it before anything else, and the log keeps it.
void reportSettingsFile(Program &program)
{
    const QString note = registry::Registry::systemNote();
    if (note.isEmpty())
        return;
    logEvent(program, note, os::kLogWarning);
    program.prompter.msgBox(note, ui::Buttons::OK, ui::Icon::Exclamation, 1, QString());
}

} // namespace

Program::Program(ui::Prompter &p) : prompter(p) {}

// A main window closed but not yet deleted (its deletion waits for the event
// loop) still refers to the program: it goes first.
Program::~Program()
{
    delete gfrmMain.data();
}

QString appPath()
{
    return QCoreApplication::applicationDirPath();
}

bool Main(Program &program)
{
    reportSettingsFile(program);
    com::ResumeNext routine;
    routine.step([&] {
        program.gobjSession = std::make_unique<mapi::Session>(program.prompter);
        program.gobjSession->Logon();
    });
    if (routine.failed()) {
        if (routine.number() != com::err::UserCancel) {
            // The message of the logon, with the store's file and the cause
            // beneath it and in the application log.
            const QString cause = routine.error()->description();
            logEvent(program, QStringLiteral("Could not log on to the MAPI profile. ") + cause,
                     os::kLogError);
            program.prompter.msgBoxDetail(
                QStringLiteral("Unrecoverable Error - Could not logon to MAPI profile!"), cause,
                ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        }
        return false;
    }

    // The splash is on the screen before the slow steps begin.
    auto splash = std::make_unique<frmSplash>();
    splash->show();
    splash->repaint();
    QCoreApplication::processEvents();

    if (!LogonOutlook(program)) {
        stopMessage(program, QStringLiteral("Could not logon to Outlook namespace!"));
        return false;
    }

    auto *form = new frmMain(program); // deletes itself when closed
    form->setAttribute(Qt::WA_DeleteOnClose);
    program.gfrmMain = form;
    watchStoreLoss(program, form);
    if (!form->Form_Load()) {
        delete form;
        return false;
    }
    splash.reset();
    // The window opens centred on the screen, or maximized as it was left
    // (a move would take that state away).
    if (const QScreen *screen = form->screen(); screen && !form->isMaximized())
        form->move(screen->availableGeometry().center() - form->rect().center());
    form->show();
    return true;
}

} // namespace app
