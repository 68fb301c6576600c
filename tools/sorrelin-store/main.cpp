// sorrelin-store: the store administrator's command line.
#include "tools/sorrelin-store/commands.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return storetool::run(QCoreApplication::arguments().mid(1), storetool::Output{out, err});
}
