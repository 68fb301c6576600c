// Times the process instance list of a routing folder of 10,000 messages,
// from the command to its shown window: every message read with its
// instance state, newest first. Two in three messages are instances with a
// map of their own and votes; the rest are ordinary mail.
//   bench_routing
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/folder.h"
#include "platform/mapi/profiles.h"
#include "platform/mapi/session.h"
#include "platform/mapi/tags.h"
#include "platform/routing/processinstance.h"
#include "platform/store/fixture.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kMessages = 10000;
constexpr int kRuns = 5;

/// One routing folder with `count` messages, a day's minutes apart.
QJsonObject routingFixture(int count)
{
    const QDateTime first(QDate(2026, 1, 1), QTime(8, 0));
    QJsonArray messages;
    for (int i = 0; i < count; ++i) {
        QJsonObject m{
            {QStringLiteral("subject"), QStringLiteral("Expense report %1").arg(i)},
            {QStringLiteral("from"), QStringLiteral("Bob Builder")},
            {QStringLiteral("received"),
             first.addSecs(60LL * ((i * 7919) % count)).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))}};
        if (i % 3 != 0) {
            m.insert(QStringLiteral("instance"),
                     QJsonObject{{QStringLiteral("rui"), 1000 + i},
                                 {QStringLiteral("status"), QStringLiteral("Running")},
                                 {QStringLiteral("row"), i % 5}});
            m.insert(
                QStringLiteral("map"),
                QJsonArray{QJsonObject{{QStringLiteral("activity"), QStringLiteral("10")},
                                       {QStringLiteral("action"), QStringLiteral("Send")},
                                       {QStringLiteral("flags"), QStringLiteral("0")},
                                       {QStringLiteral("args"), QJsonArray{QStringLiteral("Manager")}}}});
            m.insert(QStringLiteral("votes"),
                     QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("Carol Clerk")},
                                            {QStringLiteral("status"), QStringLiteral("Approve")},
                                            {QStringLiteral("at"), QStringLiteral("2026-01-02 09:00:00")}}});
        }
        messages.append(m);
    }
    const QJsonObject agent{
        {QStringLiteral("name"), QStringLiteral("Router")},
        {QStringLiteral("handler"), QStringLiteral("{69E64151-B371-11D0-BCD9-00AA00C1AB1C}")}};
    const QJsonObject folder{{QStringLiteral("name"), QStringLiteral("Approvals")},
                             {QStringLiteral("agents"), QJsonArray{agent}},
                             {QStringLiteral("messages"), messages}};
    return {{QStringLiteral("user"), QStringLiteral("Alice Admin")},
            {QStringLiteral("hosts"),
             QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("EXCH01")}}}},
            {QStringLiteral("stores"),
             QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("Mailbox - Alice Admin")},
                                    {QStringLiteral("host"), QStringLiteral("EXCH01")},
                                    {QStringLiteral("folders"), QJsonArray{folder}}}}}};
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(argc, argv);
    const QString path = dir.filePath(QStringLiteral("routing.db"));
    QElapsedTimer t;
    t.start();
    store::loadFixture(routingFixture(kMessages), path);
    const double made = t.nsecsElapsed() / 1e6;
    ui::ScriptedPrompter prompter;
    app::Program program(prompter);
    frmMain *started = bench::startOnBenchStore(prompter, program, path);
    if (!started)
        return 1;
    frmMain &main = *started;
    QList<QTreeWidgetItem *> found;
    for (int i = 1; i <= main.treOutl->count() && found.isEmpty(); ++i)
        if (main.treOutl->nodeText(main.treOutl->idAt(i)) == QLatin1String("Router"))
            found << main.treOutl->nodeAt(i);
    if (found.isEmpty())
        return 1;
    main.treOutl->setCurrentItem(found.first());
    main.treOutl_NodeClick(found.first());

    std::vector<double> times;
    int rows = 0;
    for (int run = 0; run < kRuns; ++run) {
        bench::ShowWatch watch(QStringLiteral("frmMessages"), t);
        app.installEventFilter(&watch);
        t.restart();
        main.mnuFileProcInst_Click();
        app.removeEventFilter(&watch);
        times.push_back(watch.elapsed);
        rows = watch.rows;
    }
    std::sort(times.begin(), times.end());

    // The reads alone, as the list makes them, without the grid.
    std::vector<double> reads;
    const mapi::Folder folder = program.gobjSession->GetFolder(
        controls::SSTree::key(found.first()->parent()), controls::SSTree::tag(found.first()->parent()));
    for (int run = 0; run < kRuns; ++run) {
        t.restart();
        mapi::MessageList messages = folder.Messages();
        messages.Sort(2, mapi::PR_MESSAGE_DELIVERY_TIME);
        routing::ProcessInstance instance;
        qint64 sum = 0;
        for (const mapi::Message &m : messages) {
            instance.attach(m);
            try {
                instance.Open();
            } catch (const com::ComError &) {
            }
            sum += m.Subject().size() + m.Fields(mapi::PR_SENDER_NAME).Value().toByteArray().size() +
                   m.TimeReceived().date().day() + instance.RUI() + m.ID().size();
        }
        reads.push_back(t.nsecsElapsed() / 1e6);
        if (sum == 0)
            return 1;
    }
    std::sort(reads.begin(), reads.end());
    std::printf("store of %d messages made in %.0f ms\nprocess instances listed: %d\n"
                "list, from the command to the shown window: median %.0f ms (min %.0f, max %.0f, %d runs)\n"
                "of which the store's reads: median %.0f ms\npeak memory: %ld MB\n",
                kMessages, made, rows, times[kRuns / 2], times.front(), times.back(), kRuns, reads[kRuns / 2],
                bench::peakMemoryMB());
    main.close();
    return 0;
}
