// The routing objects over a message: where its route map comes from, and
// the process instance states one object reads folder by folder.
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
          "map": [ { "activity": "99", "action": "Own", "flags": "", "args": [ "x" ] } ] },
        { "subject": "Team lunch", "received": "2026-03-05 12:00:00" } ] },
    { "name": "Archive",
      "messages": [ { "subject": "Old trip", "instance": { "rui": 900, "status": "Closed", "row": 9 } } ] } ] } ] })";

const QString kFolder = QStringLiteral("\\Mailbox - Tess Tester\\Approvals");

} // namespace

class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanupTestCase() { m_kit.reset(); }
    void mapOnAMessage_data();
    void mapOnAMessage();
    void instanceObjectAcrossFolders();

private:
    mapi::Message mapMessage()
    {
        return m_kit->hidden(kFolder, QStringLiteral("Routing Map Message"), QStringLiteral("IPM.Note"));
    }
    std::unique_ptr<StoreKit> m_kit;
};

void TestRouting::mapOnAMessage_data()
{
    QTest::addColumn<QString>("attached"); // empty: nothing attached
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("openError");
    QTest::addColumn<QStringList>("lastArgs"); // of the last row
    QTest::newRow("the folder's map message")
        << "Routing Map Message" << 3 << 0 << QStringList{"a", "b", "c", "d", "e", "f", "g", "h"};
    QTest::newRow("a work item's own map") << "Trip to Lyon" << 1 << 0 << QStringList{"x"};
    QTest::newRow("a message with no map") << "Team lunch" << 0 << 0 << QStringList();
    QTest::newRow("the agent's binding message") << "Router" << 2 << 0 << QStringList();
    QTest::newRow("nothing attached") << "" << 0 << int(com::err::InvalidParameter) << QStringList();
}

void TestRouting::mapOnAMessage()
{
    QFETCH(QString, attached);
    QFETCH(int, rows);
    QFETCH(int, openError);
    QFETCH(QStringList, lastArgs);
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
    if (rows > 0) {
        int count = -1;
        QStringList read{QStringLiteral("left over")};
        map.Row(rows - 1).GetArgs(count, read);
        QCOMPARE(count, lastArgs.size());
        QCOMPARE(read, lastArgs);
    }
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

QTEST_GUILESS_MAIN(TestRouting)
#include "test_routing.moc"
