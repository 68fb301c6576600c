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

using namespace Qt::StringLiterals;

namespace {

const QString kInbox = u"\\Mailbox - Tess Tester\\Inbox\\"_s;
const QString kHello = kInbox + u"Hello"_s;

QJsonObject row(const QString &activity, const QString &action, const QStringList &args)
{
    return {{u"activity"_s, activity},
            {u"action"_s, action},
            {u"flags"_s, u"0"_s},
            {u"args"_s, QJsonArray::fromStringList(args)}};
}

QJsonObject vote(const QString &name, const QString &status)
{
    return {{u"name"_s, name}, {u"status"_s, status}, {u"at"_s, u"2026-11-23 10:00:00"_s}};
}

} // namespace

class TestServiceWrites : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<testsupport::TestHome>();
        const QString path = m_home->file(u"store.db"_s);
        store::loadFixture(testsupport::fixture(u"agents.json"_s), path);
        m_db = store::Database::open(path);
        store::setMap(*m_db, kHello, {row(u"10"_s, u"Send"_s, {u"Manager"_s}), row(u"20"_s, u"Wait"_s, {})});
        store::setInstance(*m_db, kHello, 7, u"Running"_s, 2);
        store::setVotes(*m_db, kHello, {vote(u"Bob"_s, u"Approve"_s), vote(u"Carol"_s, u"  "_s)});
    }
    void cleanup()
    {
        m_db.reset();
        m_home.reset();
    }

    void writesReplaceTheOldOnes()
    {
        const QByteArray routerLog = logOf(u"Router"_s);
        store::setAgentLog(*m_db, kInbox + u"Auto Reply"_s, "first line\r\n");
        const QByteArray log("second line \xE4\xF6\xFC\xFF\r\n");
        store::setAgentLog(*m_db, kInbox + u"Auto Reply"_s, log);
        const QJsonArray map{row(u"5"_s, u"Consolidate"_s, {u"Approve"_s})};
        const QJsonArray votes{vote(u"Erin"_s, u"approve"_s)};
        // A message is found by its entry identifier as well as by its path.
        store::setMap(
            *m_db, m_db->scalar(u"SELECT entry_id FROM messages WHERE subject = 'Hello'"_s).toString(), map);
        store::setInstance(*m_db, kHello, 8, u"Completed"_s, 5);
        store::setVotes(*m_db, kHello, votes);
        QCOMPARE(logOf(u"Auto Reply"_s), log);
        // Other agents keep theirs.
        QCOMPARE(logOf(u"Router"_s), routerLog);
        const QJsonObject m =
            store::dumpStore(*m_db)[u"stores"_s][0][u"folders"_s][0][u"messages"_s][0].toObject();
        QCOMPARE(m[u"map"_s].toArray(), map);
        QCOMPARE(m[u"instance"_s].toObject(),
                 (QJsonObject{{u"rui"_s, 8}, {u"status"_s, u"Completed"_s}, {u"row"_s, 5}}));
        QCOMPARE(m[u"votes"_s].toArray(), votes);
        QCOMPARE(m_db->scalar(u"SELECT COUNT(*) FROM instances"_s).toInt(), 1);
    }

    void refusedWriteChangesNothing_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QJsonArray>("rows");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("says");
        const int notFound = com::err::NotFound;
        const int invalid = com::err::InvalidParameter;
        for (const QString &target :
             {kInbox + u"Nobody"_s, kHello, u"\\Mailbox - Tess Tester\\Orphans\\Lost Binding"_s})
            QTest::addRow("log of %s", qPrintable(target))
                << "log" << target << QJsonArray() << notFound << '"' + target + '"';
        QTest::newRow("a map row that is no object")
            << "map" << kHello << QJsonArray{row(u"10"_s, u"Send"_s, {}), u"20"_s} << invalid << "map[1]";
        QTest::newRow("a map argument that is a number")
            << "map" << kHello
            << QJsonArray{QJsonObject{{u"activity"_s, u"10"_s}, {u"args"_s, QJsonArray{1}}}} << invalid
            << "map[0]";
        QTest::newRow("a vote that is no object")
            << "votes" << kHello << QJsonArray{vote(u"Carol"_s, u"Reject"_s), 42} << invalid << "votes[1]";
        const QString nowhere = kInbox + u"No such subject"_s;
        QTest::newRow("a map of no message")
            << "map" << nowhere << QJsonArray() << notFound << '"' + nowhere + '"';
    }
    void refusedWriteChangesNothing()
    {
        QFETCH(QString, what);
        QFETCH(QString, target);
        QFETCH(QJsonArray, rows);
        QFETCH(int, number);
        QFETCH(QString, says);
        const QJsonObject before = store::dumpStore(*m_db);
        try {
            if (what == "log"_L1)
                store::setAgentLog(*m_db, target, "log");
            else if (what == "map"_L1)
                store::setMap(*m_db, target, rows);
            else
                store::setVotes(*m_db, target, rows);
            QFAIL("a bad write went through");
        } catch (const com::ComError &e) {
            QCOMPARE(e.number(), number);
            QVERIFY2(e.description().contains(says), qPrintable(e.description()));
        }
        QCOMPARE(store::dumpStore(*m_db), before);
    }

private:
    QByteArray logOf(const QString &agent) const
    {
        return m_db
            ->scalar(u"SELECT f.value FROM bindings b JOIN messages m ON m.entry_id = b.state_message"
                     " JOIN fields f ON f.message = m.id AND f.tag = '0x780C001E' WHERE b.name = ?"_s,
                     {agent})
            .toByteArray();
    }
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<store::Database> m_db;
};

QTEST_GUILESS_MAIN(TestServiceWrites)
#include "test_servicewrites.moc"
