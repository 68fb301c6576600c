// The routing objects over a message: its route map, its process instance
// state and its vote tracking records.
#include "platform/routing/routing.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

const QByteArray kFixture = R"({
  "user": "Tess Tester",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [ { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
    { "name": "Approvals",
      "agents": [ { "name": "Router", "handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "mask": 15,
                    "fields": { "RouteType": "Parallel" },
                    "map": [ { "activity": "1", "action": "Start", "flags": "4", "args": [ "go" ] },
                             { "activity": "2", "action": "Stop", "flags": "8", "args": [] } ] } ],
      "hidden": [ { "subject": "Routing Map Message", "class": "IPM.Note", "fields": { "RouteType": "Serial" },
                    "map": [
        { "activity": "10", "action": "Send", "flags": "0", "args": [ "Manager", "Approve" ] },
        { "activity": "20", "action": "Wait", "flags": "1", "args": [] },
        { "activity": "30", "action": "Consolidate", "flags": "2",
          "args": [ "a", "b", "c", "d", "e", "f", "g", "h" ] } ] } ],
      "messages": [
        { "subject": "Trip to Lyon", "received": "2026-03-01 10:00:00",
          "instance": { "rui": 1001, "status": "Running", "row": 2 },
          "map": [ { "activity": "99", "action": "Own", "flags": "", "args": [ "x" ] } ],
          "votes": [ { "name": "Carol Clerk", "status": "Approve", "at": "2026-03-02 09:00:00" },
                     { "name": "Dan Dispatch", "status": "Reject", "at": "2026-03-02 10:00:00" },
                     { "name": "Eve Editor", "status": "  ", "at": "" },
                     { "name": "Fay Finance", "status": "approve", "at": "2026-03-03 11:00:00" } ] },
        { "subject": "Team lunch", "received": "2026-03-05 12:00:00" },
        { "subject": "Second trip", "received": "2026-03-06 12:00:00",
          "instance": { "rui": 1002, "status": "Done", "row": 3 } } ] },
    { "name": "Archive",
      "messages": [ { "subject": "Old trip", "instance": { "rui": 900, "status": "Closed", "row": 9 } } ] } ] } ] })";

const QString kFolder = QStringLiteral("\\Mailbox - Tess Tester\\Approvals");

} // namespace

class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanupTestCase() { m_kit.reset(); }
    void mapRows_data();
    void mapRows();
    void mapOnAMessage_data();
    void mapOnAMessage();
    void processInstances();
    void instanceObjectAcrossFolders();
    void trackingRecords_data();
    void trackingRecords();

private:
    mapi::Message mapMessage()
    {
        return m_kit->hidden(kFolder, QStringLiteral("Routing Map Message"), QStringLiteral("IPM.Note"));
    }
    std::unique_ptr<StoreKit> m_kit;
};

void TestRouting::mapRows_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("activity");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QStringList>("args");
    QTest::newRow("row 0") << 0 << "10"
                           << "Send"
                           << "0" << QStringList{"Manager", "Approve"};
    QTest::newRow("no arguments") << 1 << "20"
                                  << "Wait"
                                  << "1" << QStringList{};
    QTest::newRow("eight arguments") << 2 << "30"
                                     << "Consolidate"
                                     << "2" << QStringList{"a", "b", "c", "d", "e", "f", "g", "h"};
}

void TestRouting::mapRows()
{
    QFETCH(int, index);
    QFETCH(QString, activity);
    QFETCH(QString, action);
    QFETCH(QString, flags);
    QFETCH(QStringList, args);
    routing::Map map;
    map.attach(mapMessage());
    map.Open(0);
    QCOMPARE(map.RowCount(), 3);
    const routing::MapRow row = map.Row(index);
    QCOMPARE(row.ActivityID(), activity);
    QCOMPARE(row.Action(), action);
    QCOMPARE(row.Flags(), flags);
    int count = -1;
    QStringList read{QStringLiteral("left over")};
    row.GetArgs(count, read);
    QCOMPARE(count, args.size());
    QCOMPARE(read, args);
}

void TestRouting::mapOnAMessage_data()
{
    QTest::addColumn<QString>("attached"); // empty: nothing attached
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("openError");
    QTest::newRow("the folder's map message") << "Routing Map Message" << 3 << 0;
    QTest::newRow("a work item's own map") << "Trip to Lyon" << 1 << 0;
    QTest::newRow("a message with no map") << "Team lunch" << 0 << 0;
    QTest::newRow("the agent's binding message") << "Router" << 2 << 0;
    QTest::newRow("nothing attached") << "" << 0 << int(com::err::InvalidParameter);
}

void TestRouting::mapOnAMessage()
{
    QFETCH(QString, attached);
    QFETCH(int, rows);
    QFETCH(int, openError);
    routing::Map map;
    if (attached == QLatin1String("Routing Map Message"))
        map.attach(mapMessage());
    else if (attached == QLatin1String("Router"))
        map.attach(m_kit->hidden(kFolder, attached));
    else if (!attached.isEmpty())
        map.attach(m_kit->message(kFolder, attached));
    QCOMPARE(map.RowCount(), 0); // nothing before Open
    QCOMPARE(errorOf([&] { map.Open(0); }), openError);
    QCOMPARE(map.RowCount(), rows);
}

void TestRouting::processInstances()
{
    // One object for a whole listing, newest first, as the list reads them.
    mapi::MessageList messages = m_kit->folder(kFolder).Messages();
    messages.Sort(2, mapi::PR_MESSAGE_DELIVERY_TIME);
    routing::ProcessInstance instance;
    QStringList rows;
    for (const mapi::Message &m : messages) {
        instance.attach(m);
        const int32_t error = errorOf([&] { instance.Open(); });
        rows << QStringLiteral("%1|%2|%3|%4|%5")
                    .arg(m.Subject())
                    .arg(error == 0 ? QStringLiteral("ok")
                                    : QString::number(static_cast<uint32_t>(error), 16))
                    .arg(instance.RUI())
                    .arg(instance.Status())
                    .arg(instance.CurrentRow());
    }
    // The message that is no instance raises; its status is empty and the
    // numbers are those read last.
    QCOMPARE(rows, (QStringList{"Second trip|ok|1002|Done|3", "Team lunch|8004010f|1002||3",
                                "Trip to Lyon|ok|1001|Running|2"}));
}

void TestRouting::instanceObjectAcrossFolders()
{
    // One object reads each folder's states when it first opens a message
    // there, and a write since then shows at its next open in a new folder.
    routing::ProcessInstance instance;
    const auto open = [&](const QString &folder, const QString &subject) {
        instance.attach(m_kit->message(folder, subject));
        instance.Open();
        return QStringLiteral("%1 %2 %3")
            .arg(instance.RUI())
            .arg(instance.Status())
            .arg(instance.CurrentRow());
    };
    const QString archive = QStringLiteral("\\Mailbox - Tess Tester\\Archive");
    QCOMPARE(open(kFolder, QStringLiteral("Trip to Lyon")), QStringLiteral("1001 Running 2"));
    QCOMPARE(open(archive, QStringLiteral("Old trip")), QStringLiteral("900 Closed 9"));
    m_kit->db().run(QStringLiteral("UPDATE instances SET status = 'Waiting' WHERE rui = 1001"));
    QCOMPARE(open(kFolder, QStringLiteral("Trip to Lyon")), QStringLiteral("1001 Waiting 2"));
    m_kit->db().run(QStringLiteral("UPDATE instances SET status = 'Running' WHERE rui = 1001"));
}

void TestRouting::trackingRecords_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("time");
    QTest::newRow("1") << 1 << "Carol Clerk"
                       << "Approve"
                       << "2026-03-02 09:00:00";
    QTest::newRow("blanks come as they are") << 3 << "Eve Editor"
                                             << "  "
                                             << "";
    QTest::newRow("small letters come as they are") << 4 << "Fay Finance"
                                                    << "approve"
                                                    << "2026-03-03 11:00:00";
}

void TestRouting::trackingRecords()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    QFETCH(QString, status);
    QFETCH(QString, time);
    routing::Tracking tracking;
    tracking.attach(m_kit->message(kFolder, QStringLiteral("Trip to Lyon")));
    QCOMPARE(tracking.RecordCount(), 4);
    const routing::TrackingRecord r = tracking.Record(index);
    QCOMPARE(r.Name, name);
    QCOMPARE(r.Status, status);
    QCOMPARE(r.Time, time);
}

QTEST_GUILESS_MAIN(TestRouting)
#include "test_routing.moc"
