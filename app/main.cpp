// The desktop program: no arguments, no command line; everything it needs
// comes from the profile and the settings.
#include "app/application.h"
#include "app/frmmain.h"
#include "app/program.h"
#include "platform/ui/qtprompter.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    app::Application application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sorrelin"));
    QApplication::setOrganizationName(QStringLiteral("Kelverd"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::QtPrompter prompter;
    app::Program program(prompter);
    if (!app::Main(program))
        return 0;
    QObject::connect(program.gfrmMain.data(), &QObject::destroyed, &application,
                     [] { QApplication::quit(); });
    return QApplication::exec();
}
