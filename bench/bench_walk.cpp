// Times opening a large store and walking every folder the way the folder
// tree classifies it (rights, event source, hidden message counts), and the
// whole tree walk with the agents, each the median of 5 runs.
//   bench_walk [STORE.db]    (without a store, one of 20,000 folders and
//                             5,000 agents is generated in a temporary folder)
#include "bench/benchstore.h"
#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "navigation/treewalk.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

struct Counts {
    int folders = 0;
    int withAgents = 0;
};

void classifyAll(const mapi::Folder &parent, events::Events &events, Counts &counts)
{
    for (const mapi::Folder &folder : parent.Folders()) {
        ++counts.folders;
        if (navigation::classifyFolder(folder, events) == navigation::kImageFolderWithAgents)
            ++counts.withAgents;
        classifyAll(folder, events, counts);
    }
}

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
    std::vector<double> opens, classifies, walks;
    Counts counts;
    qsizetype nodes = 0;
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
        counts = Counts{};
        for (const mapi::InfoStore &store : session.InfoStores())
            classifyAll(store.RootFolder(), events, counts);
        classifies.push_back(msSince(t));

        t.restart();
        nodes = navigation::walkTree(session, events, true).size();
        walks.push_back(msSince(t));
    }
    std::printf("%d folders, %d holding agents; %lld tree nodes with the agents\n", counts.folders,
                counts.withAgents, static_cast<long long>(nodes));
    std::printf("open:           median %7.1f ms\n", median(opens));
    std::printf("classify walk:  median %7.1f ms\n", median(classifies));
    std::printf("tree walk:      median %7.1f ms (5 runs each)\n", median(walks));
    return 0;
}
