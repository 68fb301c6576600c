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
    void setLog();
    void unknownAgent_data();
    void unknownAgent();
    void writesReplaceTheOldOnes();
    void badWriteChangesNothing_data();
    void badWriteChangesNothing();

private:
    QByteArray logOf(const QString &agent) const
    {
        return m_db
            ->scalar(QStringLiteral(
                         "SELECT f.value FROM bindings b JOIN messages m ON m.entry_id = b.state_message"
                         " JOIN fields f ON f.message = m.id AND f.tag = '0x780C001E' WHERE b.name = ?"),
                     {agent})
            .toByteArray();
    }
    QJsonObject hello() const
    {
        return store::dumpStore(*m_db)[QStringLiteral("stores")][0][QStringLiteral("folders")][0]
                                      [QStringLiteral("messages")][0]
                                          .toObject();
    }

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

void TestServiceWrites::setLog()
{
    const QByteArray before = logOf(QStringLiteral("Router"));
    QByteArray log("first line\r\nsecond line \xE4\xF6\xFC\xFF\r\n");
    store::setAgentLog(*m_db, kAutoReply, log);
    QCOMPARE(logOf(QStringLiteral("Auto Reply")), log);
    // A second write replaces the first.
    log = "again\r\n";
    store::setAgentLog(*m_db, kAutoReply, log);
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
    QTest::newRow("an agent without a binding")
        << QStringLiteral("\\Mailbox - Tess Tester\\Orphans\\Lost Binding");
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

void TestServiceWrites::writesReplaceTheOldOnes()
{
    store::setMap(*m_db, kHello,
                  {row(QStringLiteral("10"), QStringLiteral("Send"), {QStringLiteral("Manager")}),
                   row(QStringLiteral("20"), QStringLiteral("Wait"), {})});
    store::setInstance(*m_db, kHello, 7, QStringLiteral("Running"), 2);
    store::setVotes(*m_db, kHello,
                    {vote(QStringLiteral("Bob"), QStringLiteral("Approve")),
                     vote(QStringLiteral("Carol"), QStringLiteral("  "))});
    const QJsonArray map{
        row(QStringLiteral("5"), QStringLiteral("Consolidate"), {QStringLiteral("Approve")})};
    const QJsonArray votes{vote(QStringLiteral("Erin"), QStringLiteral("approve"))};
    const QString helloId =
        m_db->scalar(QStringLiteral("SELECT entry_id FROM messages WHERE subject = 'Hello'")).toString();
    store::setMap(*m_db, helloId, map);
    store::setInstance(*m_db, kHello, 8, QStringLiteral("Completed"), 5);
    store::setVotes(*m_db, kHello, votes);
    const QJsonObject m = hello();
    QCOMPARE(m[QStringLiteral("map")].toArray(), map);
    QCOMPARE(m[QStringLiteral("instance")].toObject(),
             (QJsonObject{{QStringLiteral("rui"), 8},
                          {QStringLiteral("status"), QStringLiteral("Completed")},
                          {QStringLiteral("row"), 5}}));
    QCOMPARE(m[QStringLiteral("votes")].toArray(), votes);
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT COUNT(*) FROM instances")).toInt(), 1);
}

void TestServiceWrites::badWriteChangesNothing_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QJsonArray>("rows");
    QTest::newRow("a map row that is no object")
        << "map" << kHello
        << QJsonArray{row(QStringLiteral("10"), QStringLiteral("Send"), {}), QStringLiteral("20")};
    QTest::newRow("a map argument that is a number")
        << "map" << kHello
        << QJsonArray{QJsonObject{{QStringLiteral("activity"), QStringLiteral("10")},
                                  {QStringLiteral("args"), QJsonArray{1}}}};
    QTest::newRow("a vote that is no object")
        << "votes" << kHello << QJsonArray{vote(QStringLiteral("Carol"), QStringLiteral("Reject")), 42};
    const QString nowhere = QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\No such subject");
    QTest::newRow("a map of no message") << "map" << nowhere << QJsonArray();
    QTest::newRow("an instance of no message") << "instance" << nowhere << QJsonArray();
}

void TestServiceWrites::badWriteChangesNothing()
{
    QFETCH(QString, what);
    QFETCH(QString, message);
    QFETCH(QJsonArray, rows);
    store::setMap(*m_db, kHello,
                  {row(QStringLiteral("10"), QStringLiteral("Send"), {QStringLiteral("Manager")})});
    store::setVotes(*m_db, kHello, {vote(QStringLiteral("Bob"), QStringLiteral("Approve"))});
    const QJsonObject before = store::dumpStore(*m_db);
    try {
        if (what == QLatin1String("map"))
            store::setMap(*m_db, message, rows);
        else if (what == QLatin1String("votes"))
            store::setVotes(*m_db, message, rows);
        else
            store::setInstance(*m_db, message, 1, QStringLiteral("Running"), 0);
        QFAIL("a bad write went through");
    } catch (const com::ComError &e) {
        if (message == kHello) {
            QCOMPARE(e.number(), com::err::InvalidParameter);
            QVERIFY2(e.description().startsWith(what + QLatin1Char('[')), qPrintable(e.description()));
        }
    }
    QCOMPARE(store::dumpStore(*m_db), before);
}

QTEST_GUILESS_MAIN(TestServiceWrites)
#include "test_servicewrites.moc"
