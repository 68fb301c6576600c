// Times opening a large store and walking every folder the way the folder
// tree classifies it: rights, event source, hidden message count.
//   bench_walk [STORE.db]    (without a store, one of 20,000 folders and
//                             5,000 agents is generated in a temporary folder)
#include "bench/benchstore.h"
#include "navigation/folderclass.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

int walk(const mapi::Folder &parent, events::Events &events, int &withAgents)
{
    int count = 0;
    for (const mapi::Folder &folder : parent.Folders()) {
        ++count;
        if (navigation::classifyFolder(folder, events) == 7)
            ++withAgents;
        count += walk(folder, events, withAgents);
    }
    return count;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = bench::benchStore(argc, argv, dir);
    std::vector<double> opens, walks;
    int folders = 0, withAgents = 0;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer t;
        t.start();
        ui::ScriptedPrompter prompter;
        mapi::Session session(prompter);
        session.LogonStore(path);
        events::Events events;
        events.SetSession(session.MAPIOBJECT());
        opens.push_back(t.nsecsElapsed() / 1e6);
        t.restart();
        folders = withAgents = 0;
        for (const mapi::InfoStore &store : session.InfoStores())
            folders += walk(store.RootFolder(), events, withAgents);
        walks.push_back(t.nsecsElapsed() / 1e6);
    }
    std::printf("%d folders, %d holding agents\nopen: median %.1f ms\nwalk: median %.1f ms (5 runs)\n",
                folders, withAgents, median(opens), median(walks));
    return 0;
}
