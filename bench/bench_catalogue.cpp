// Times the installed-agents list (the walk over every agent and its shown
// window) and the export of the agent list to a file, on a large store;
// prints the peak memory, the machine and its load average, which on a
// shared machine say as much as the times.
//   bench_catalogue [STORE.db | --folders N --agents M]
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/mapi/profiles.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <QSysInfo>
#include <QThread>

#include <cstdio>
#include <cstdlib>

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(argc, argv);
    const QString path = bench::benchStore(argc, argv, dir);
    ui::ScriptedPrompter prompter;
    app::Program program(prompter);
    frmMain *started = bench::startOnBenchStore(prompter, program, path);
    if (!started)
        return 1;
    frmMain &main = *started;

    // The list: from the command to its window on the screen, which is then
    // closed as a user would.
    QElapsedTimer t;
    bench::ShowWatch watch(QStringLiteral("frmScripts"), t);
    app.installEventFilter(&watch);
    t.start();
    main.mnuFileInstalledAgents_Click();
    app.removeEventFilter(&watch);

    const QString csv = dir.filePath(QStringLiteral("agents.csv"));
    prompter.enqueue(QStringLiteral("Yes"));
    prompter.enqueue(QStringLiteral("file:") + csv);
    t.restart();
    main.mnuFileExport_Click();
    const double exported = t.nsecsElapsed() / 1e6;

    std::printf(
        "agents listed: %d\ninstalled agents, walk and window: %.0f ms\nexport: %.0f ms (%lld bytes)\n"
        "peak memory: %ld MB\n",
        watch.rows, watch.elapsed, exported, static_cast<long long>(QFileInfo(csv).size()),
        bench::peakMemoryMB());
    double load[3] = {0, 0, 0};
    getloadavg(load, 3);
    std::printf("machine: %s, %d cores; load average %.2f %.2f %.2f\n",
                qPrintable(QSysInfo::prettyProductName()), QThread::idealThreadCount(), load[0], load[1],
                load[2]);
    main.close();
    return 0;
}
