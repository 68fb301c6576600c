#include "app/storeloss.h"

#include "app/application.h"
#include "app/program.h"
#include "platform/com/routine.h"
#include "platform/mapi/session.h"
#include "platform/ui/prompter.h"

namespace app {

void watchStoreLoss(Program &program, QObject *context)
{
    program.gobjSession->SetLossObserver([&program](const com::ComError &error) {
        if (program.blnStoreLossShown)
            return;
        program.blnStoreLossShown = true;
        program.prompter.msgBox(error.description(), ui::Buttons::OK, ui::Icon::Stop, 1, QString());
    });
    auto *application = qobject_cast<Application *>(QCoreApplication::instance());
    if (!application)
        return;
    QObject::connect(application, &Application::actBegins, context, [&program] {
        program.blnStoreLossShown = false;
        if (program.gobjSession)
            program.gobjSession->RetryLostStore();
    });
    application->showEscaped = [&program](const com::ComError &error) {
        program.prompter.msgBox(com::errorText(error, com::ErrorForm::Plain), ui::Buttons::OK, ui::Icon::Stop,
                                1, QString());
    };
    QObject::connect(context, &QObject::destroyed, application,
                     [application] { application->showEscaped = nullptr; });
}

} // namespace app
