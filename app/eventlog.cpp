#include "app/eventlog.h"

#include "app/program.h"
#include "platform/os/applog.h"
#include "platform/ui/prompter.h"

#include <QDir>

namespace app {

void logEvent(Program &program, const QString &text, int type)
{
    os::ApplicationLog log;
    if (log.LogEvent(text, type) || program.blnLogFailureShown)
        return;
    program.blnLogFailureShown = true;
    program.prompter.msgBoxDetail(
        QStringLiteral("The application log could not be written."),
        QStringLiteral("%1\rSorrelin goes on without it.").arg(QDir::toNativeSeparators(log.path())),
        ui::Buttons::OK, ui::Icon::Exclamation, 1, QString());
}

} // namespace app
