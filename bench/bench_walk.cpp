// Times opening a large store, reading what the folder tree needs from it
// (folders, rights, hidden message counts, binding messages), and the whole
// tree walk with the agents, each the median of 5 runs, beside one plain SQL
// pass over the same rows.
//   bench_walk [STORE.db | --folders N --agents M]
#include "bench/benchstore.h"
#include "navigation/treewalk.h"
#include "platform/events/events.h"
#include "platform/mapi/folderscan.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

double msSince(const QElapsedTimer &t)
{
    return static_cast<double>(t.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = bench::benchStore(argc, argv, dir);
    std::vector<double> opens, scans, walks;
    qsizetype rows = 0, nodes = 0;
    double sql = 0;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer t;
        t.start();
        ui::ScriptedPrompter prompter;
        mapi::Session session(prompter);
        session.LogonStore(path);
        events::Events events;
        events.SetSession(session.MAPIOBJECT());
        opens.push_back(msSince(t));

        t.restart();
        rows = mapi::FolderScan(session.MAPIOBJECT()).rowsRead();
        scans.push_back(msSince(t));

        t.restart();
        nodes = navigation::walkTree(session, events, true).nodes.size();
        walks.push_back(msSince(t));
        if (run == 0)
            sql = bench::sqlPassMs(*session.MAPIOBJECT()->db, session.CurrentUser());
    }
    std::printf("%lld rows read; %lld tree nodes with the agents\n", static_cast<long long>(rows),
                static_cast<long long>(nodes));
    std::printf("open:           median %7.1f ms\n", median(opens));
    std::printf("SQL pass:       median %7.1f ms\n", sql);
    std::printf("store read:     median %7.1f ms\n", median(scans));
    std::printf("tree walk:      median %7.1f ms (5 runs each)\n", median(walks));
    return 0;
}
