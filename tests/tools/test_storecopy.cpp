// A store copied by the store tool from an SQLite file to a PostgreSQL
// database and back is the store it was: the same dump, to the byte, and the
// same tree. Loads write rows many to a statement: a store with just under,
// at and just over as many messages in a folder as one statement takes
// goes through both engines the same.
#include "platform/com/comerror.h"
#include "platform/mapi/profiles.h"
#include "tests/support/driverprocess.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

class TestStoreCopy : public QObject {
    Q_OBJECT

private:
    testsupport::TestHome m_home;
    std::unique_ptr<testsupport::PgServer> m_server;

    /// What the tool prints for `args`, or "failed" when it doesn't succeed.
    static QByteArray tool(const QStringList &args)
    {
        const testsupport::ToolRun run = testsupport::runStoreTool(args);
        if (run.code != 0)
            qWarning("sorrelin-store %s: %s", qPrintable(args.join(u' ')), run.err.constData());
        return run.code == 0 ? run.out : QByteArray("failed");
    }

    /// Folders of 255, 256 and 257 messages; the first message of each
    /// names its sender twice, as "from" and then as a field, which wins.
    QString batchFixture()
    {
        QJsonArray folders;
        for (const int count : {255, 256, 257}) {
            QJsonArray messages;
            for (int i = 0; i < count; ++i) {
                QJsonObject m{{u"subject"_s, u"Message %1"_s.arg(i)},
                              {u"received"_s, u"2024-05-01 10:00:00"_s}};
                if (i == 0) {
                    m[u"from"_s] = u"Given first"_s;
                    m[u"fields"_s] = QJsonObject{{u"0x0c1a001e"_s, u"Given last"_s}};
                }
                messages.append(m);
            }
            folders.append(QJsonObject{{u"name"_s, u"Folder %1"_s.arg(count)}, {u"messages"_s, messages}});
        }
        const QJsonObject store{{u"name"_s, u"Mailbox"_s}, {u"folders"_s, folders}};
        QFile file(m_home.file(u"batches.json"_s));
        if (!file.open(QIODevice::WriteOnly) ||
            file.write(
                QJsonDocument(QJsonObject{{u"user"_s, u"Tess Tester"_s}, {u"stores"_s, QJsonArray{store}}})
                    .toJson()) < 0)
            qFatal("could not write a test file");
        return file.fileName();
    }

private Q_SLOTS:
    void initTestCase()
    {
        // The tool's profiles go where this test reads them.
        qputenv("XDG_CONFIG_HOME",
                QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toUtf8());
        m_server = std::make_unique<testsupport::PgServer>();
        SORRELIN_REQUIRE_PGSERVER(*m_server);
    }

    void copiedThereAndBackIsTheSame_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<bool>("timed"); // every time given, none left to the load
        QTest::newRow("demo") << testsupport::sourceDir() + u"/share/demo.json"_s << true;
        QTest::newRow("routing") << testsupport::fixture(u"routing.json"_s) << false;
        QTest::newRow("batches") << batchFixture() << true;
    }
    void copiedThereAndBackIsTheSame()
    {
        QFETCH(QString, fixture);
        QFETCH(bool, timed);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        const QString original = m_home.file(tag + u"-original.db"_s);
        const QString back = m_home.file(tag + u"-back.db"_s);
        const QString server = m_server->createDatabase(tag);
        const QString loaded = m_server->createDatabase(tag + u"_loaded"_s);
        QVERIFY(!tool({u"load"_s, fixture, original}).startsWith("failed"));
        QVERIFY(!tool({u"copy"_s, original, server}).startsWith("failed"));
        QVERIFY(!tool({u"copy"_s, server, back}).startsWith("failed"));
        QVERIFY(!tool({u"load"_s, fixture, loaded}).startsWith("failed"));
        const QByteArray dump = tool({u"dump"_s, original});
        QVERIFY(dump.contains("\"messages\""));
        QVERIFY(!dump.contains("Given first"));
        QCOMPARE(tool({u"dump"_s, server}), dump);
        QCOMPARE(tool({u"dump"_s, back}), dump);
        // Loaded straight onto the server, the fixture gives the same store too;
        // where it leaves times out, a load takes its own time for them.
        if (timed)
            QCOMPARE(tool({u"dump"_s, loaded}), dump);
        const QByteArray tree = tool({u"tree"_s, original});
        QVERIFY(tree.contains("[image"));
        QCOMPARE(tool({u"tree"_s, server}), tree);
    }

    void profileIsRecordedOnAStoreOnly()
    {
        const QString empty = m_server->createDatabase(u"nostore"_s);
        QCOMPARE(tool({u"profile"_s, u"Empty"_s, u"Tess Tester"_s, empty}), QByteArray("failed"));
        QVERIFY_THROWS_EXCEPTION(com::ComError, mapi::readProfile(u"Empty"_s));
        const QString team = m_server->createDatabase(u"team"_s);
        QVERIFY(!tool({u"load"_s, testsupport::fixture(u"agents.json"_s), team}).startsWith("failed"));
        QVERIFY(!tool({u"profile"_s, u"Team"_s, u"Tess Tester"_s, team}).startsWith("failed"));
        QCOMPARE(mapi::readProfile(u"Team"_s).store, team);
    }
};

QTEST_GUILESS_MAIN(TestStoreCopy)
#include "test_storecopy.moc"
