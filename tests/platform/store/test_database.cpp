// Opening a store: every kind of bad file is refused with a clear error and
// left as it was; writes are all or nothing.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "tests/support/testenv.h"

#include <QtTest>

#include <memory>

class TestDatabase : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }
    void badStore_data();
    void badStore();
    void transactionRollsBack();
    void entryIdsAreUniqueAndStable();
    void opensOfOneFileShareAConnection();
    void lockedStoreIsWaitedForThenRefusedInWords();

private:
    QByteArray read(const QString &path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestDatabase::badStore_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << "missing" << com::err::NotFound << "does not exist";
    QTest::newRow("a folder") << "folder" << com::err::Corrupt << "is a folder, not a Sorrelin store.";
    QTest::newRow("empty file") << "empty" << com::err::Corrupt << "is empty; it is not a Sorrelin store.";
    QTest::newRow("text file") << "text" << com::err::Corrupt
                               << "is not a Sorrelin store: it is not a database.";
    QTest::newRow("another database")
        << "foreign" << com::err::Corrupt << "is not a Sorrelin store: it is a database of another program.";
    QTest::newRow("no schema version") << "unversioned" << com::err::Corrupt << "no schema version";
    QTest::newRow("newer version") << "version:99" << com::err::Corrupt
                                   << "is of version 99; this program reads version 1";
    QTest::newRow("older version") << "version:0" << com::err::Corrupt
                                   << "is of version 0; this program reads version 1";
    QTest::newRow("truncated") << "truncated" << com::err::Corrupt << "is damaged";
}

void TestDatabase::badStore()
{
    QFETCH(QString, kind);
    QFETCH(int, number);
    QFETCH(QString, message);
    const QString path = m_home->file(QStringLiteral("store.db"));
    const auto writeFile = [&](const QByteArray &bytes) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    };
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir(m_home->path()).mkdir(QStringLiteral("store.db")));
    } else if (kind == QLatin1String("empty")) {
        writeFile(QByteArray());
    } else if (kind == QLatin1String("text")) {
        writeFile("just some text, no database at all");
    } else if (kind == QLatin1String("foreign")) {
        QVERIFY(testsupport::makeForeignDatabase(path));
    } else if (kind == QLatin1String("unversioned")) {
        store::Database::create(path)->run(QStringLiteral("DELETE FROM meta"));
    } else if (kind.startsWith(QLatin1String("version:"))) {
        store::Database::create(path)->setMeta(QStringLiteral("schema"), kind.section(QLatin1Char(':'), 1));
    } else if (kind == QLatin1String("truncated")) {
        store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
        QFile f(path);
        QVERIFY(f.size() > 8192);
        QVERIFY(f.resize(f.size() / 2));
    }
    const QByteArray before = read(path);
    const QStringList filesBefore = QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    try {
        store::Database::open(path);
        QFAIL("a bad store opened");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), number);
        QVERIFY2(e.description().contains(path), qPrintable(e.description()));
        QVERIFY2(e.description().contains(message), qPrintable(e.description()));
    }
    // The file is left as it was, and nothing is made beside it.
    QCOMPARE(read(path), before);
    QCOMPARE(QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), filesBefore);
}

void TestDatabase::transactionRollsBack()
{
    const auto db = store::Database::create(m_home->file(QStringLiteral("t.db")));
    try {
        db->transaction([&] {
            db->setMeta(QStringLiteral("outer"), QStringLiteral("1"));
            // A nested transaction joins the outer one and goes with it.
            db->transaction([&] { db->setMeta(QStringLiteral("inner"), QStringLiteral("1")); });
            throw com::ComError(1, QStringLiteral("test"), QStringLiteral("stop"));
        });
        QFAIL("the error did not come through");
    } catch (const com::ComError &e) {
        QCOMPARE(e.description(), QStringLiteral("stop"));
    }
    QCOMPARE(db->meta(QStringLiteral("outer")), QString());
    QCOMPARE(db->meta(QStringLiteral("inner")), QString());
}

void TestDatabase::entryIdsAreUniqueAndStable()
{
    const QString path = m_home->file(QStringLiteral("ids.db"));
    store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
    const auto ids = [&path] {
        const auto db = store::Database::open(path);
        QSqlQuery q =
            db->run(QStringLiteral("SELECT entry_id FROM folders UNION ALL SELECT entry_id FROM messages"
                                   " UNION ALL SELECT store_id FROM stores"));
        QStringList list;
        while (q.next())
            list << q.value(0).toString();
        return list;
    };
    const QStringList first = ids();
    QVERIFY(first.size() > 20);
    QCOMPARE(QSet<QString>(first.begin(), first.end()).size(), first.size());
    // Opened again, the store gives the same identifiers.
    QCOMPARE(ids(), first);
}

void TestDatabase::opensOfOneFileShareAConnection()
{
    const QString path = m_home->file(QStringLiteral("shared.db"));
    store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
    const auto first = store::Database::open(path);
    // A second open by another name of the same file joins the first: a
    // transaction begun on one is the other's too.
    const auto second = store::Database::open(m_home->path() + QStringLiteral("/./shared.db"));
    auto outer = std::make_unique<store::Database::Transaction>(*first);
    second->setMeta(QStringLiteral("probe"), QStringLiteral("joined"));
    QCOMPARE(first->meta(QStringLiteral("probe")), QStringLiteral("joined"));
    // Gone without a commit: the write of the second rolls back with it.
    outer.reset();
    QCOMPARE(second->meta(QStringLiteral("probe")), QString());
}

void TestDatabase::lockedStoreIsWaitedForThenRefusedInWords()
{
    const QString path = m_home->file(QStringLiteral("locked.db"));
    store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
    const auto db = store::Database::open(path);
    QVector<bool> told;
    db->setBusyObserver([&](bool waiting) { told << waiting; });
    {
        // Another program holds the write lock for longer than a write waits.
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(path);
        QVERIFY(other.open());
        QSqlQuery q(other);
        QVERIFY(q.exec(QStringLiteral("BEGIN IMMEDIATE")));
        QVERIFY(q.exec(QStringLiteral("UPDATE meta SET value = value WHERE key = 'user'")));
        try {
            db->transaction([&] { db->setMeta(QStringLiteral("probe"), QStringLiteral("1")); });
            QFAIL("a write went through another program's lock");
        } catch (const com::ComError &e) {
            QCOMPARE(e.number(), com::err::Busy);
            QVERIFY2(e.description().contains(QStringLiteral("The store %1 is locked by another program.")
                                                  .arg(QDir::toNativeSeparators(path))),
                     qPrintable(e.description()));
            QVERIFY2(e.description().contains(QLatin1String("nothing was written")),
                     qPrintable(e.description()));
        }
        QCOMPARE(told, (QVector<bool>{true, false}));
        QVERIFY(q.exec(QStringLiteral("ROLLBACK")));
        q = QSqlQuery();
        other.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    // Once the lock is gone the same write goes through.
    db->transaction([&] { db->setMeta(QStringLiteral("probe"), QStringLiteral("2")); });
    QCOMPARE(db->meta(QStringLiteral("probe")), QStringLiteral("2"));
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "test_database.moc"
