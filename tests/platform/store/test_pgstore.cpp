// The store on both engines: bytes, ids, order, case and transactions behave
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

class TestPgStore : public QObject {
    Q_OBJECT

private:
    testsupport::TestHome m_home;
    std::unique_ptr<testsupport::PgServer> m_server;
    int m_stores = 0;

    /// A location where no store is yet: a file name, or an empty database.
    QString freshLocation(const QString &engine)
    {
        const QString name = QStringLiteral("s%1").arg(++m_stores);
        if (engine == QLatin1String("SQLite"))
            return m_home.file(name + QStringLiteral(".db"));
        const QString location = m_server->createDatabase(name);
        if (location.isEmpty())
            qFatal("%s", qPrintable(m_server->failure()));
        return location;
    }

    static void engines()
    {
        QTest::addColumn<QString>("engine");
        QTest::newRow("SQLite") << QStringLiteral("SQLite");
        QTest::newRow("PostgreSQL") << QStringLiteral("PostgreSQL");
    }

    /// The tables in the public schema of a server database, read past the store layer.
    int serverTables(const QString &database)
    {
        int count = -1;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("check"));
            db.setHostName(QStringLiteral("127.0.0.1"));
            db.setPort(m_server->port());
            db.setDatabaseName(database);
            db.setUserName(QStringLiteral("sorrelin"));
            if (db.open()) {
                QSqlQuery q(db);
                if (q.exec(QStringLiteral("SELECT count(*) FROM pg_tables WHERE schemaname = 'public'")) &&
                    q.next())
                    count = q.value(0).toInt();
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("check"));
        return count;
    }

    static qint64 insertMessage(store::Database &db)
    {
        const QString storeId =
            QStringLiteral("S%1").arg(db.scalar(QStringLiteral("SELECT count(*) FROM stores")).toInt());
        const qint64 storeRow = db.insert(
            QStringLiteral("INSERT INTO stores(store_id, seq, name, provider) VALUES(?, 0, 'Mailbox', 'x')"),
            {storeId});
        const qint64 folder = db.insert(
            QStringLiteral("INSERT INTO folders(store, seq, name) VALUES(?, 0, 'Inbox')"), {storeRow});
        return db.insert(
            QStringLiteral("INSERT INTO messages(folder, hidden, class, created, modified)"
                           " VALUES(?, 0, 'IPM.Note', '2024-01-01 00:00:00', '2024-01-01 00:00:00')"),
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
            QCOMPARE(message, db->scalar(QStringLiteral("SELECT max(id) FROM messages")).toLongLong());
            const QString sql = QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)");
            db->run(sql, {message, QStringLiteral("0x1000001E"), all});
            db->run(sql, {message, QStringLiteral("0x10800003"), 42});
            db->run(sql, {message, QStringLiteral("Empty"), QByteArray("")});
        });
        const QString read = QStringLiteral("SELECT value FROM fields WHERE tag = ?");
        QCOMPARE(db->scalar(read, {QStringLiteral("0x1000001E")}).toByteArray(), all);
        QCOMPARE(db->scalar(read, {QStringLiteral("0x10800003")}).toInt(), 42);
        QCOMPARE(db->scalar(read, {QStringLiteral("Empty")}).toByteArray(), QByteArray(""));
    }

    void textSortsByBytes_data() { engines(); }
    void textSortsByBytes()
    {
        QFETCH(QString, engine);
        const std::unique_ptr<store::Database> db = store::Database::create(freshLocation(engine));
        const QStringList names{QStringLiteral("b"),  QStringLiteral("\u00e9t\u00e9"), QStringLiteral("B"),
                                QStringLiteral("_x"), QStringLiteral("a b"),           QStringLiteral("ab")};
        for (const QString &name : names)
            db->run(QStringLiteral("INSERT INTO stores(store_id, seq, name, provider) VALUES(?, 0, ?, 'x')"),
                    {name, name});
        QStringList sorted;
        QSqlQuery q = db->run(QStringLiteral("SELECT name FROM stores ORDER BY name"));
        while (q.next())
            sorted << q.value(0).toString();
        QCOMPARE(sorted,
                 (QStringList{QStringLiteral("B"), QStringLiteral("_x"), QStringLiteral("a b"),
                              QStringLiteral("ab"), QStringLiteral("b"), QStringLiteral("\u00e9t\u00e9")}));
    }

    void failedWriteLeavesNothing_data() { engines(); }
    void failedWriteLeavesNothing()
    {
        QFETCH(QString, engine);
        const std::unique_ptr<store::Database> db = store::Database::create(freshLocation(engine));
        // The second insert fails inside the transaction; the first goes with it.
        QVERIFY_THROWS_EXCEPTION(com::ComError, db->transaction([&] {
            db->run(QStringLiteral("INSERT INTO hosts(name) VALUES('EXCH01')"));
            db->run(QStringLiteral("INSERT INTO hosts(name) VALUES('exch01')"));
        }));
        QCOMPARE(db->scalar(QStringLiteral("SELECT count(*) FROM hosts")).toInt(), 0);
        // The store takes the next write as if nothing had happened.
        db->transaction([&] { db->run(QStringLiteral("INSERT INTO hosts(name) VALUES('EXCH02')")); });
        QCOMPARE(db->scalar(QStringLiteral("SELECT count(*) FROM hosts")).toInt(), 1);
    }

    void fixtureDumpsAlike()
    {
        const QString demo = testsupport::sourceDir() + QStringLiteral("/share/demo.json");
        const QString file = freshLocation(QStringLiteral("SQLite"));
        const QString server = freshLocation(QStringLiteral("PostgreSQL"));
        store::loadFixture(demo, file);
        store::loadFixture(demo, server);
        const auto dumped = [](const QString &location) {
            return QJsonDocument(
                       store::dumpStore(*store::Database::open(location, store::Database::Access::ReadOnly)))
                .toJson();
        };
        const QByteArray fromFile = dumped(file);
        QVERIFY(fromFile.contains("\"agents\""));
        QCOMPARE(dumped(server), fromFile);
    }

    void generatedStoreTakesNewRows()
    {
        const QString server = freshLocation(QStringLiteral("PostgreSQL"));
        store::GenerateOptions options;
        options.folders = 30;
        options.agents = 10;
        store::generateStore(options, server);
        const std::unique_ptr<store::Database> db = store::Database::open(server);
        const qint64 before = db->scalar(QStringLiteral("SELECT max(id) FROM messages")).toLongLong();
        QVERIFY(before > 0);
        QVERIFY(insertMessage(*db) > before);
    }

    void refusedOpen_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("start");
        QTest::newRow("no store in the database")
            << QStringLiteral("empty") << QStringLiteral("sorrelin")
            << QStringLiteral("The database of %1 holds no Sorrelin store");
        QTest::newRow("no such database")
            << QStringLiteral("missing") << QStringLiteral("sorrelin")
            << QStringLiteral("The server of the store %1 has no database \"missing\"");
        QTest::newRow("login refused")
            << QStringLiteral("empty") << QStringLiteral("mallory")
            << QStringLiteral("The server of the store %1 refused the login of mallory");
    }
    void refusedOpen()
    {
        QFETCH(QString, database);
        QFETCH(QString, user);
        QFETCH(QString, start);
        if (serverTables(QStringLiteral("empty")) < 0)
            m_server->createDatabase(QStringLiteral("empty"));
        const QString location = m_server->location(database, user);
        try {
            store::Database::open(location);
            QFAIL("the store opened");
        } catch (const com::ComError &e) {
            QVERIFY2(e.description().startsWith(start.arg(location)), qPrintable(e.description()));
        }
        QCOMPARE(serverTables(QStringLiteral("empty")), 0);
    }

    void readerCannotWrite()
    {
        const QString server = freshLocation(QStringLiteral("PostgreSQL"));
        store::Database::create(server);
        const std::unique_ptr<store::Database> reader =
            store::Database::open(server, store::Database::Access::ReadOnly);
        QVERIFY_THROWS_EXCEPTION(com::ComError,
                                 reader->run(QStringLiteral("INSERT INTO hosts(name) VALUES('H')")));
        QVERIFY_THROWS_EXCEPTION(com::ComError, store::Database::open(server));
        QCOMPARE(reader->scalar(QStringLiteral("SELECT count(*) FROM hosts")).toInt(), 0);
    }

    void createRefusesAStore()
    {
        const QString server = freshLocation(QStringLiteral("PostgreSQL"));
        store::Database::create(server);
        try {
            store::Database::create(server);
            QFAIL("a second store was made");
        } catch (const com::ComError &e) {
            QCOMPARE(e.description(),
                     QStringLiteral("The database of %1 already holds a store.").arg(server));
        }
    }
};

QTEST_GUILESS_MAIN(TestPgStore)
#include "test_pgstore.moc"
