// A store copied by the store tool from an SQLite file to a PostgreSQL
// database and back is the store it was: the same dump, to the byte, and the
// same tree.
#include "platform/com/comerror.h"
#include "platform/mapi/profiles.h"
#include "tests/support/driverprocess.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

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
        QTest::newRow("demo") << testsupport::sourceDir() + u"/share/demo.json"_s;
        QTest::newRow("routing") << testsupport::fixture(u"routing.json"_s);
    }
    void copiedThereAndBackIsTheSame()
    {
        QFETCH(QString, fixture);
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
        QVERIFY(dump.contains("\"agents\""));
        QCOMPARE(tool({u"dump"_s, server}), dump);
        QCOMPARE(tool({u"dump"_s, back}), dump);
        // Loaded straight onto the server, the fixture gives the same store too;
        // where it leaves times out, a load takes its own time for them.
        if (tag == "demo"_L1)
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
