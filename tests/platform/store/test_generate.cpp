// Generated stores: the same options give the same store, the sizes asked
// for, and a tree that looks like a real one.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/generate.h"
#include "tests/support/testenv.h"

#include <QJsonDocument>
#include <QtTest>

#include <memory>

class TestGenerate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }
    void sameSeedSameStore();
    void sizes_data();
    void sizes();
    void plausibleTree();
    void agentsAreWhole();

private:
    QString generate(const store::GenerateOptions &o, const QString &name) const
    {
        const QString path = m_home->file(name);
        store::generateStore(o, path);
        return path;
    }
    QJsonObject dump(const QString &path) const { return store::dumpStore(*store::Database::open(path)); }

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

void TestGenerate::sameSeedSameStore()
{
    const QJsonObject a = dump(generate(small(7), QStringLiteral("a.db")));
    const QJsonObject b = dump(generate(small(7), QStringLiteral("b.db")));
    QCOMPARE(QJsonDocument(a).toJson(), QJsonDocument(b).toJson());
}

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

void TestGenerate::plausibleTree()
{
    store::GenerateOptions o;
    o.stores = 2;
    o.folders = 4000;
    o.agents = 0;
    o.messages = 0;
    const auto db = store::Database::open(generate(o, QStringLiteral("t.db")));
    // Depths below the store's root, from a walk down the tree.
    QSqlQuery q = db->run(
        QStringLiteral("WITH RECURSIVE d(id, depth) AS (SELECT id, 0 FROM folders WHERE parent IS NULL"
                       " UNION ALL SELECT f.id, d.depth + 1 FROM folders f JOIN d ON f.parent = d.id)"
                       " SELECT depth, COUNT(*) FROM d GROUP BY depth ORDER BY depth"));
    QMap<int, int> byDepth;
    while (q.next())
        byDepth.insert(q.value(0).toInt(), q.value(1).toInt());
    QCOMPARE(byDepth.value(0), 2);
    QVERIFY2(byDepth.lastKey() >= 3 && byDepth.lastKey() <= 6, "a tree a few levels deep");
    int reached = 0;
    for (int n : byDepth)
        reached += n;
    QCOMPARE(reached, 4002); // every folder hangs below a root
    // Siblings are numbered from 0 under each parent.
    QCOMPARE(
        db->scalar(QStringLiteral("SELECT COUNT(*) FROM (SELECT parent, MAX(seq) + 1 AS n, COUNT(*) AS c"
                                  " FROM folders WHERE parent IS NOT NULL GROUP BY parent) WHERE n <> c"))
            .toInt(),
        0);
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
