// What the event service writes for an administrator's tests: logs, maps,
// process instances and votes, each all or nothing.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/servicewrites.h"
#include "tests/support/testenv.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

#include <memory>

namespace {

const QString kAutoReply = QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Auto Reply");
const QString kHello = QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Hello");

QJsonObject row(const QString &activity, const QString &action, const QStringList &args)
{
    return {{QStringLiteral("activity"), activity},
            {QStringLiteral("action"), action},
            {QStringLiteral("flags"), QStringLiteral("0")},
            {QStringLiteral("args"), QJsonArray::fromStringList(args)}};
}

QJsonObject vote(const QString &name, const QString &status)
{
    return {{QStringLiteral("name"), name},
            {QStringLiteral("status"), status},
            {QStringLiteral("at"), QStringLiteral("2026-11-23 10:00:00")}};
}

} // namespace

class TestServiceWrites : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void setLog_data();
    void setLog();
    void unknownAgent_data();
    void unknownAgent();
    void agentWithoutBindingHasNoLog();
    void mapReplacesTheOldOne();
    void badMapKeepsTheOldOne_data();
    void badMapKeepsTheOldOne();
    void instanceIsSetOrChanged();
    void votesReplaceTheOldOnes();
    void badVotesKeepTheOldOnes();
    void unknownMessage();

private:
    QString idOf(const QString &cls, const QString &subject) const
    {
        return m_db
            ->scalar(QStringLiteral("SELECT entry_id FROM messages WHERE class = ? AND subject = ?"),
                     {cls, subject})
            .toString();
    }
    QByteArray logOf(const QString &agent) const
    {
        return m_db
            ->scalar(QStringLiteral(
                         "SELECT f.value FROM bindings b JOIN messages m ON m.entry_id = b.state_message"
                         " JOIN fields f ON f.message = m.id AND f.tag = '0x780C001E' WHERE b.name = ?"),
                     {agent})
            .toByteArray();
    }
    QJsonObject inbox() const
    {
        return store::dumpStore(*m_db)[QStringLiteral("stores")][0][QStringLiteral("folders")][0].toObject();
    }
    QJsonObject hello() const { return inbox()[QStringLiteral("messages")][0].toObject(); }

    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<store::Database> m_db;
};

void TestServiceWrites::init()
{
    m_home = std::make_unique<testsupport::TestHome>();
    const QString path = m_home->file(QStringLiteral("store.db"));
    store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
    m_db = store::Database::open(path);
}

void TestServiceWrites::cleanup()
{
    m_db.reset();
    m_home.reset();
}

void TestServiceWrites::setLog_data()
{
    QTest::addColumn<bool>("byPath");
    QTest::newRow("by path") << true;
    QTest::newRow("by entry id") << false;
}

void TestServiceWrites::setLog()
{
    QFETCH(bool, byPath);
    const QString agent =
        byPath ? kAutoReply
               : idOf(QStringLiteral("IPC.Microsoft.EventBinding"), QStringLiteral("Auto Reply"));
    QVERIFY(!agent.isEmpty());
    const QByteArray before = logOf(QStringLiteral("Router"));
    QByteArray log("first line\r\nsecond line \xE4\xF6\xFC\xFF\r\n");
    store::setAgentLog(*m_db, agent, log);
    QCOMPARE(logOf(QStringLiteral("Auto Reply")), log);
    // A second write replaces the first.
    log = "again\r\n";
    store::setAgentLog(*m_db, agent, log);
    QCOMPARE(logOf(QStringLiteral("Auto Reply")), log);
    // Other agents keep theirs.
    QCOMPARE(logOf(QStringLiteral("Router")), before);
}

void TestServiceWrites::unknownAgent_data()
{
    QTest::addColumn<QString>("agent");
    QTest::newRow("no such agent") << QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Nobody");
    QTest::newRow("a folder, not an agent") << QStringLiteral("\\Mailbox - Tess Tester\\Inbox");
    QTest::newRow("an ordinary message") << kHello;
}

void TestServiceWrites::unknownAgent()
{
    QFETCH(QString, agent);
    const QJsonObject before = store::dumpStore(*m_db);
    try {
        store::setAgentLog(*m_db, agent, "log");
        QFAIL("a log was written for an agent that isn't there");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), com::err::NotFound);
        QVERIFY2(e.description().contains(QLatin1Char('"') + agent + QLatin1Char('"')),
                 qPrintable(e.description()));
    }
    QCOMPARE(store::dumpStore(*m_db), before);
}

void TestServiceWrites::agentWithoutBindingHasNoLog()
{
    const QJsonObject before = store::dumpStore(*m_db);
    QVERIFY_THROWS_EXCEPTION(
        com::ComError,
        store::setAgentLog(*m_db, QStringLiteral("\\Mailbox - Tess Tester\\Orphans\\Lost Binding"), "log"));
    QCOMPARE(store::dumpStore(*m_db), before);
}

void TestServiceWrites::mapReplacesTheOldOne()
{
    const QJsonArray first{
        row(QStringLiteral("10"), QStringLiteral("Send"), {QStringLiteral("Manager")}),
        row(QStringLiteral("20"), QStringLiteral("Wait"), {QStringLiteral("Manager"), QStringLiteral("48")}),
        row(QStringLiteral("30"), QStringLiteral("Terminate"), {})};
    store::setMap(*m_db, kHello, first);
    QCOMPARE(hello()[QStringLiteral("map")].toArray(), first);
    const QJsonArray second{
        row(QStringLiteral("5"), QStringLiteral("Consolidate"), {QStringLiteral("Approve")})};
    store::setMap(*m_db, idOf(QStringLiteral("IPM.Note"), QStringLiteral("Hello")), second);
    QCOMPARE(hello()[QStringLiteral("map")].toArray(), second);
}

void TestServiceWrites::badMapKeepsTheOldOne_data()
{
    QTest::addColumn<QJsonArray>("rows");
    QTest::newRow("a row that is no object")
        << QJsonArray{row(QStringLiteral("10"), QStringLiteral("Send"), {}), QStringLiteral("20 Wait")};
    QTest::newRow("an argument that is a number") << QJsonArray{QJsonObject{
        {QStringLiteral("activity"), QStringLiteral("10")}, {QStringLiteral("args"), QJsonArray{1}}}};
}

void TestServiceWrites::badMapKeepsTheOldOne()
{
    QFETCH(QJsonArray, rows);
    const QJsonArray good{row(QStringLiteral("10"), QStringLiteral("Send"), {QStringLiteral("Manager")})};
    store::setMap(*m_db, kHello, good);
    try {
        store::setMap(*m_db, kHello, rows);
        QFAIL("a bad map was written");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), com::err::InvalidParameter);
        QVERIFY2(e.description().startsWith(QStringLiteral("map[")), qPrintable(e.description()));
    }
    QCOMPARE(hello()[QStringLiteral("map")].toArray(), good);
}

void TestServiceWrites::instanceIsSetOrChanged()
{
    store::setInstance(*m_db, kHello, 7, QStringLiteral("Running"), 2);
    QCOMPARE(hello()[QStringLiteral("instance")].toObject(),
             (QJsonObject{{QStringLiteral("rui"), 7},
                          {QStringLiteral("status"), QStringLiteral("Running")},
                          {QStringLiteral("row"), 2}}));
    store::setInstance(*m_db, kHello, 8, QStringLiteral("Completed"), 5);
    QCOMPARE(hello()[QStringLiteral("instance")].toObject(),
             (QJsonObject{{QStringLiteral("rui"), 8},
                          {QStringLiteral("status"), QStringLiteral("Completed")},
                          {QStringLiteral("row"), 5}}));
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT COUNT(*) FROM instances")).toInt(), 1);
}

void TestServiceWrites::votesReplaceTheOldOnes()
{
    const QJsonArray first{vote(QStringLiteral("Bob"), QStringLiteral("Approve")),
                           vote(QStringLiteral("Carol"), QStringLiteral("  ")),
                           vote(QStringLiteral("Dan"), QStringLiteral("Reject"))};
    store::setVotes(*m_db, kHello, first);
    QCOMPARE(hello()[QStringLiteral("votes")].toArray(), first);
    const QJsonArray second{vote(QStringLiteral("Erin"), QStringLiteral("approve"))};
    store::setVotes(*m_db, kHello, second);
    QCOMPARE(hello()[QStringLiteral("votes")].toArray(), second);
}

void TestServiceWrites::badVotesKeepTheOldOnes()
{
    const QJsonArray good{vote(QStringLiteral("Bob"), QStringLiteral("Approve"))};
    store::setVotes(*m_db, kHello, good);
    QVERIFY_THROWS_EXCEPTION(
        com::ComError,
        store::setVotes(*m_db, kHello,
                        QJsonArray{vote(QStringLiteral("Carol"), QStringLiteral("Reject")), 42}));
    QCOMPARE(hello()[QStringLiteral("votes")].toArray(), good);
}

void TestServiceWrites::unknownMessage()
{
    const QString nowhere = QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\No such subject");
    QVERIFY_THROWS_EXCEPTION(com::ComError, store::setMap(*m_db, nowhere, {}));
    QVERIFY_THROWS_EXCEPTION(com::ComError,
                             store::setInstance(*m_db, nowhere, 1, QStringLiteral("Running"), 0));
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT COUNT(*) FROM instances")).toInt(), 0);
}

QTEST_GUILESS_MAIN(TestServiceWrites)
#include "test_servicewrites.moc"
