#include "platform/mapi/session.h"
#include "platform/routing/routing.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <QtTest>

class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void map();
    void mapOfAMessageWithoutOne();
    void processInstance();
    void tracking();

private:
    mapi::Message message(const QString &folderName, const QString &subject, bool hidden);
    testsupport::TestHome m_home;
    ui::ScriptedPrompter m_prompter;
    mapi::Session m_session{m_prompter};
};

void TestRouting::initTestCase()
{
    const QString path = m_home.file(QStringLiteral("demo.db"));
    store::loadFixture(testsupport::sourceDir() + QStringLiteral("/share/demo.json"), path);
    m_session.LogonStore(path);
}

mapi::Message TestRouting::message(const QString &folderName, const QString &subject, bool hidden)
{
    const qint64 row =
        m_session.MAPIOBJECT()
            ->db
            ->scalar(QStringLiteral("SELECT m.id FROM messages m JOIN folders f ON f.id = m.folder"
                                    " WHERE f.name = ? AND m.subject = ? AND m.hidden = ?"),
                     {folderName, subject, hidden ? 1 : 0})
            .toLongLong();
    return mapi::loadMessage(m_session.MAPIOBJECT(), row);
}

void TestRouting::map()
{
    routing::Map map;
    map.attach(message(QStringLiteral("Expense Approvals"), QStringLiteral("Routing Map Message"), true));
    map.Open(0);
    QCOMPARE(map.RowCount(), 5);
    const routing::MapRow row = map.Row(3);
    QCOMPARE(row.ActivityID(), QStringLiteral("40"));
    QCOMPARE(row.Action(), QStringLiteral("Send"));
    int count = 0;
    QStringList args;
    row.GetArgs(count, args);
    QCOMPARE(count, 8);
    QCOMPARE(args.last(), QStringLiteral("Extra"));
    map.Row(4).GetArgs(count, args);
    QCOMPARE(count, 0);
    QVERIFY_THROWS_EXCEPTION(com::ComError, map.Row(5));
}

void TestRouting::mapOfAMessageWithoutOne()
{
    routing::Map map;
    map.Open(0); // nothing attached: an empty map
    QCOMPARE(map.RowCount(), 0);
    map.attach(message(QStringLiteral("Expense Approvals"), QStringLiteral("Team lunch receipts"), false));
    map.Open(0);
    QCOMPARE(map.RowCount(), 0);
}

void TestRouting::processInstance()
{
    routing::ProcessInstance instance;
    instance.attach(message(QStringLiteral("Expense Approvals"), QStringLiteral("Trip to Lyon"), false));
    instance.Open();
    QCOMPARE(instance.RUI(), 1001);
    QCOMPARE(instance.Status(), QStringLiteral("Running"));
    QCOMPARE(instance.CurrentRow(), 2);
    instance.attach(
        message(QStringLiteral("Expense Approvals"), QStringLiteral("Team lunch receipts"), false));
    QVERIFY_THROWS_EXCEPTION(com::ComError, instance.Open());
    // The numbers read last stay.
    QCOMPARE(instance.RUI(), 1001);
}

void TestRouting::tracking()
{
    routing::Tracking tracking;
    tracking.attach(message(QStringLiteral("Expense Approvals"), QStringLiteral("Trip to Lyon"), false));
    QCOMPARE(tracking.RecordCount(), 4);
    QCOMPARE(tracking.Record(1).Name, QStringLiteral("Carol Clerk"));
    QCOMPARE(tracking.Record(1).Status, QStringLiteral("Approve"));
    QCOMPARE(tracking.Record(3).Status, QStringLiteral("  "));
    QCOMPARE(tracking.Record(4).Status, QStringLiteral("approve"));
    QVERIFY_THROWS_EXCEPTION(com::ComError, tracking.Record(0));
    tracking.attach(
        message(QStringLiteral("Expense Approvals"), QStringLiteral("Team lunch receipts"), false));
    QCOMPARE(tracking.RecordCount(), 0);
}

QTEST_GUILESS_MAIN(TestRouting)
#include "test_routing.moc"
