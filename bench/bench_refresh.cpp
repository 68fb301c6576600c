// Times the program's start to the shown main window, and a refresh of the
// folder tree, on a large store; prints the peak memory.
//   bench_refresh [STORE.db]
#include "app/frmmain.h"
#include "platform/controls/sstree.h"
#include "app/program.h"
#include "platform/mapi/profiles.h"
#include "platform/store/generate.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    for (const char *var : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
        qputenv(var, QFile::encodeName(dir.path()));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (path.isEmpty()) {
        path = dir.filePath(QStringLiteral("bench.db"));
        store::GenerateOptions o;
        o.stores = 4;
        o.folders = 20000;
        o.agents = 5000;
        o.hidden = 2000;
        o.messages = 20000;
        store::generateStore(o, path);
    }
    mapi::writeProfile(mapi::Profile{QStringLiteral("Bench"), QStringLiteral("Alice Admin"), path});
    ui::ScriptedPrompter prompter;
    prompter.setDefaultProfile(QStringLiteral("Bench"));

    QElapsedTimer t;
    t.start();
    app::Program program(prompter);
    if (!app::Main(program))
        return 1;
    QCoreApplication::processEvents();
    const double start = t.nsecsElapsed() / 1e6;
    std::vector<double> refreshes;
    for (int run = 0; run < 5; ++run) {
        t.restart();
        program.gfrmMain->RefreshFolders();
        QCoreApplication::processEvents();
        refreshes.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(refreshes.begin(), refreshes.end());
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("tree nodes: %d\nstart to shown window: %.0f ms\nrefresh: median %.0f ms (5 runs)\npeak memory: %ld MB\n",
                program.gfrmMain->treOutl->count(), start, refreshes.at(2), usage.ru_maxrss / 1024);
    program.gfrmMain->close();
    return 0;
}
