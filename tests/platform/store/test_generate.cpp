// Generated stores: the same options give the same store, the sizes asked
// for, and a tree that looks like a real one.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/generate.h"
#include "tests/support/testenv.h"

#include <QtTest>

#include <memory>

class TestGenerate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }
    void sizes_data();
    void sizes();
    void agentsAreWhole();

private:
    QString generate(const store::GenerateOptions &o, const QString &name) const
    {
        const QString path = m_home->file(name);
        store::generateStore(o, path);
        return path;
    }

    static store::GenerateOptions small(unsigned seed)
    {
        store::GenerateOptions o;
        o.stores = 3;
        o.folders = 600;
        o.agents = 150;
        o.hidden = 40;
        o.messages = 120;
        o.seed = seed;
        return o;
    }

    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestGenerate::sizes_data()
{
    QTest::addColumn<int>("stores");
    QTest::addColumn<int>("folders");
    QTest::addColumn<int>("agents");
    QTest::addColumn<int>("hidden");
    QTest::addColumn<int>("messages");
    QTest::newRow("folders not divisible by stores") << 4 << 101 << 7 << 0 << 0;
    QTest::newRow("more agents than folders") << 2 << 10 << 40 << 15 << 25;
}

void TestGenerate::sizes()
{
    QFETCH(int, stores);
    QFETCH(int, folders);
    QFETCH(int, agents);
    QFETCH(int, hidden);
    QFETCH(int, messages);
    store::GenerateOptions o;
    o.stores = stores;
    o.folders = folders;
    o.agents = agents;
    o.hidden = hidden;
    o.messages = messages;
    const auto db = store::Database::open(generate(o, QStringLiteral("s.db")));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM stores")).toInt(), stores);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE parent IS NULL")).toInt(), stores);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE parent IS NOT NULL")).toInt(),
             folders);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings")).toInt(), agents);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM messages WHERE hidden = 0")).toInt(), messages);
    // Every agent has two hidden messages; the rest are the other hidden ones.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM messages WHERE hidden = 1")).toInt(),
             2 * agents + hidden);
}

void TestGenerate::agentsAreWhole()
{
    store::GenerateOptions o = small(3);
    o.agents = 400;
    const auto db = store::Database::open(generate(o, QStringLiteral("g.db")));
    // Each binding names its binding message and its state message, in the
    // binding's own folder.
    QCOMPARE(
        db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings b"
                                  " JOIN messages m ON m.entry_id = b.message AND m.folder = b.folder"
                                  " AND m.class = 'IPC.Microsoft.EventBinding' AND m.subject = b.name"
                                  " JOIN messages s ON s.entry_id = b.state_message AND s.folder = b.folder"
                                  " AND s.class = 'IPC.Microsoft.ICS.EventBinding'"))
            .toInt(),
        400);
    // All three kinds of agent occur.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(DISTINCT handler_class) FROM bindings")).toInt(), 3);
    // Every agent has a script with the marker the program looks for.
    QCOMPARE(
        db->scalar(QStringLiteral("SELECT COUNT(*) FROM fields WHERE tag = '0x7102001E'"
                                  " AND instr(value, CAST('<SCRIPT RunAt=Server Language=' AS BLOB)) = 1"))
            .toInt(),
        400);
}

QTEST_GUILESS_MAIN(TestGenerate)
#include "test_generate.moc"
