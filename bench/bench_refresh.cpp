// Times the program's start to the shown main window, and a refresh of the
// folder tree, on a large store; beside it one plain SQL pass over the rows
// the refresh reads, through the store's own connection, and the ratio of
// the two; prints the peak memory.
// The machine's load average before and after shows how far the figures
// can be trusted; the processor time of the refreshes and of the SQL passes,
// which a loaded machine sways less than the wall clock, is printed beside.
//   bench_refresh [STORE.db | --folders N --agents M]
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/profiles.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

/// The processor time this process has used, in milliseconds.
double processorMs()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(argc, argv);
    const QString path = bench::benchStore(argc, argv, dir);
    mapi::writeProfile(mapi::Profile{QStringLiteral("Bench"), QStringLiteral("Alice Admin"), path});
    ui::ScriptedPrompter prompter;
    prompter.setDefaultProfile(QStringLiteral("Bench"));

    const double loadBefore = bench::loadAverage();
    QElapsedTimer t;
    t.start();
    app::Program program(prompter);
    if (!app::Main(program))
        return 1;
    QCoreApplication::processEvents();
    const double start = t.nsecsElapsed() / 1e6;
    const long startMemory = bench::peakMemoryMB();
    std::vector<double> refreshes;
    const double refreshesCpu = processorMs();
    for (int run = 0; run < 5; ++run) {
        t.restart();
        program.gfrmMain->RefreshFolders();
        QCoreApplication::processEvents();
        refreshes.push_back(t.nsecsElapsed() / 1e6);
    }
    const double refreshCpu = (processorMs() - refreshesCpu) / 5;
    std::sort(refreshes.begin(), refreshes.end());
    const mapi::StatePtr state = program.gobjSession->MAPIOBJECT();
    const double sqlCpu = processorMs();
    const double sql = bench::sqlPassMs(*state->db, state->user);
    const double passCpu = (processorMs() - sqlCpu) / 5; // it makes five passes
    std::printf("tree nodes: %d\nstart to shown window: %.0f ms\nrefresh: median %.0f ms (5 runs)\n"
                "one SQL pass over the same rows: median %.1f ms (5 runs); refresh / SQL pass: %.1f\n"
                "processor time: refresh %.0f ms, SQL pass %.0f ms (means of 5); ratio %.2f\n"
                "peak memory: %ld MB after the start, %ld MB after the refreshes\n"
                "load average: %.2f before, %.2f after\n",
                program.gfrmMain->treOutl->count(), start, refreshes.at(2), sql, refreshes.at(2) / sql,
                refreshCpu, passCpu, refreshCpu / passCpu, startMemory, bench::peakMemoryMB(), loadBefore,
                bench::loadAverage());
    program.gfrmMain->close();
    return 0;
}
