// The store on both engines: bytes, ids, case and transactions behave
// alike on an SQLite file and on a PostgreSQL database, and a server store
// that can't be used is refused in words, with nothing written.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/generate.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

class TestPgStore : public QObject {
    Q_OBJECT

private:
    testsupport::TestHome m_home;
    std::unique_ptr<testsupport::PgServer> m_server;
    int m_stores = 0;

    /// A location where no store is yet: a file name, or an empty database.
    QString freshLocation(const QString &engine)
    {
        const QString name = u"s%1"_s.arg(++m_stores);
        if (engine == "SQLite"_L1)
            return m_home.file(name + u".db"_s);
        return m_server->createDatabase(name);
    }

    static void engines()
    {
        QTest::addColumn<QString>("engine");
        QTest::newRow("SQLite") << u"SQLite"_s;
        QTest::newRow("PostgreSQL") << u"PostgreSQL"_s;
    }

    /// The tables in the public schema of a server database, read past the store layer.
    int serverTables(const QString &database)
    {
        int count = -1;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(u"QPSQL"_s, u"check"_s);
            db.setHostName(u"127.0.0.1"_s);
            db.setPort(m_server->port());
            db.setDatabaseName(database);
            db.setUserName(u"sorrelin"_s);
            if (db.open()) {
                QSqlQuery q(db);
                if (q.exec(u"SELECT count(*) FROM pg_tables WHERE schemaname = 'public'"_s) && q.next())
                    count = q.value(0).toInt();
            }
        }
        QSqlDatabase::removeDatabase(u"check"_s);
        return count;
    }

    static qint64 insertMessage(store::Database &db)
    {
        const QString storeId = u"S%1"_s.arg(db.scalar(u"SELECT count(*) FROM stores"_s).toInt());
        const qint64 storeRow = db.insert(
            u"INSERT INTO stores(store_id, seq, name, provider) VALUES(?, 0, 'Mailbox', 'x')"_s, {storeId});
        const qint64 folder =
            db.insert(u"INSERT INTO folders(store, seq, name) VALUES(?, 0, 'Inbox')"_s, {storeRow});
        return db.insert(u"INSERT INTO messages(folder, hidden, class, created, modified)"
                         " VALUES(?, 0, 'IPM.Note', '2024-01-01 00:00:00', '2024-01-01 00:00:00')"_s,
                         {folder});
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_server = std::make_unique<testsupport::PgServer>();
        SORRELIN_REQUIRE_PGSERVER(*m_server);
    }

    void fieldBytesComeBackExactly_data() { engines(); }
    void fieldBytesComeBackExactly()
    {
        QFETCH(QString, engine);
        QByteArray all;
        for (int b = 0; b < 256; ++b)
            all.append(static_cast<char>(b));
        const std::unique_ptr<store::Database> db = store::Database::create(freshLocation(engine));
        // Ids come from the insert.
        QVERIFY(insertMessage(*db) > 0);
        db->transaction([&] {
            const qint64 message = insertMessage(*db);
            QCOMPARE(message, db->scalar(u"SELECT max(id) FROM messages"_s).toLongLong());
            const QString sql = u"INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"_s;
            db->run(sql, {message, u"0x1000001E"_s, all});
            db->run(sql, {message, u"0x10800003"_s, 42});
            db->run(sql, {message, u"Empty"_s, QByteArray("")});
        });
        const QString read = u"SELECT value FROM fields WHERE tag = ?"_s;
        QCOMPARE(db->scalar(read, {u"0x1000001E"_s}).toByteArray(), all);
        QCOMPARE(db->scalar(read, {u"0x10800003"_s}).toInt(), 42);
        QCOMPARE(db->scalar(read, {u"Empty"_s}).toByteArray(), QByteArray(""));
    }

    void failedWriteLeavesNothing_data() { engines(); }
    void failedWriteLeavesNothing()
    {
        QFETCH(QString, engine);
        const std::unique_ptr<store::Database> db = store::Database::create(freshLocation(engine));
        // The second insert fails inside the transaction; the first goes with it.
        QVERIFY_THROWS_EXCEPTION(com::ComError, db->transaction([&] {
            db->run(u"INSERT INTO hosts(name) VALUES('EXCH01')"_s);
            db->run(u"INSERT INTO hosts(name) VALUES('exch01')"_s);
        }));
        QCOMPARE(db->scalar(u"SELECT count(*) FROM hosts"_s).toInt(), 0);
        // The store takes the next write as if nothing had happened.
        db->transaction([&] { db->run(u"INSERT INTO hosts(name) VALUES('EXCH02')"_s); });
        QCOMPARE(db->scalar(u"SELECT count(*) FROM hosts"_s).toInt(), 1);
    }

    void rowsReadAsAsked_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<store::Database::Rows>("rows");
        QTest::addColumn<bool>("oneByOne");
        QTest::newRow("SQLite, nested") << u"SQLite"_s << store::Database::Rows::Nested << true;
        QTest::newRow("SQLite, streamed") << u"SQLite"_s << store::Database::Rows::Streamed << true;
        QTest::newRow("PostgreSQL, nested") << u"PostgreSQL"_s << store::Database::Rows::Nested << false;
        QTest::newRow("PostgreSQL, streamed") << u"PostgreSQL"_s << store::Database::Rows::Streamed << true;
    }
    void rowsReadAsAsked()
    {
        QFETCH(QString, engine);
        QFETCH(store::Database::Rows, rows);
        QFETCH(bool, oneByOne);
        const std::unique_ptr<store::Database> db = store::Database::create(freshLocation(engine));
        db->transaction([&] {
            for (const char *name : {"EXCH03", "EXCH01", "EXCH02"})
                db->run(u"INSERT INTO hosts(name) VALUES(?)"_s, {QString::fromLatin1(name)});
        });
        QSqlQuery q = db->prepare(u"SELECT name FROM hosts ORDER BY name"_s, rows);
        QCOMPARE(q.isForwardOnly(), oneByOne);
        db->exec(q);
        QStringList read;
        while (q.next())
            read.append(q.value(0).toString());
        QCOMPARE(read, (QStringList{u"EXCH01"_s, u"EXCH02"_s, u"EXCH03"_s}));
    }

    void generatedStoreTakesNewRows()
    {
        const QString server = freshLocation(u"PostgreSQL"_s);
        store::GenerateOptions options;
        options.folders = 30;
        options.agents = 10;
        store::generateStore(options, server);
        const std::unique_ptr<store::Database> db = store::Database::open(server);
        const qint64 before = db->scalar(u"SELECT max(id) FROM messages"_s).toLongLong();
        QVERIFY(before > 0);
        QVERIFY(insertMessage(*db) > before);
    }

    void refusedOpen_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("start");
        QTest::newRow("no store in the database")
            << u"empty"_s << u"The database of %1 holds no Sorrelin store"_s;
        QTest::newRow("no such database")
            << u"missing"_s << u"The server of the store %1 has no database \"missing\""_s;
    }
    void refusedOpen()
    {
        QFETCH(QString, database);
        QFETCH(QString, start);
        if (serverTables(u"empty"_s) < 0)
            m_server->createDatabase(u"empty"_s);
        const QString location = m_server->location(database);
        try {
            store::Database::open(location);
            QFAIL("the store opened");
        } catch (const com::ComError &e) {
            QVERIFY2(e.description().startsWith(start.arg(location)), qPrintable(e.description()));
        }
        QCOMPARE(serverTables(u"empty"_s), 0);
    }

    void createRefusesAStore()
    {
        const QString server = freshLocation(u"PostgreSQL"_s);
        store::Database::create(server);
        try {
            store::Database::create(server);
            QFAIL("a second store was made");
        } catch (const com::ComError &e) {
            QCOMPARE(e.description(), u"The database of %1 already holds a store."_s.arg(server));
        }
    }
};

QTEST_GUILESS_MAIN(TestPgStore)
#include "test_pgstore.moc"
