// A store copied by the store tool from an SQLite file to a PostgreSQL
// database and back is the store it was: the same dump, to the byte, and the
// same tree.
#include "platform/com/comerror.h"
#include "platform/mapi/profiles.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

class TestStoreCopy : public QObject {
    Q_OBJECT

private:
    testsupport::TestHome m_home;
    std::unique_ptr<testsupport::PgServer> m_server;

    /// What the tool prints for `args`; the test fails if it doesn't succeed.
    static QByteArray tool(const QStringList &args)
    {
        QProcess p;
        // The tool's profiles go where this test reads them.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"),
                   QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(SORRELIN_STORE_TOOL), args);
        if (!p.waitForFinished(120000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
            qWarning("sorrelin-store %s: %s", qPrintable(args.join(QLatin1Char(' '))),
                     p.readAllStandardError().constData());
        return p.exitCode() == 0 ? p.readAllStandardOutput() : QByteArray("failed");
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_server = std::make_unique<testsupport::PgServer>();
        SORRELIN_REQUIRE_PGSERVER(*m_server);
    }

    void copiedThereAndBackIsTheSame_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::newRow("demo") << testsupport::sourceDir() + QStringLiteral("/share/demo.json");
        QTest::newRow("agents") << testsupport::fixture(QStringLiteral("agents.json"));
        QTest::newRow("routing") << testsupport::fixture(QStringLiteral("routing.json"));
    }
    void copiedThereAndBackIsTheSame()
    {
        QFETCH(QString, fixture);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        const QString original = m_home.file(tag + QStringLiteral("-original.db"));
        const QString back = m_home.file(tag + QStringLiteral("-back.db"));
        const QString server = m_server->createDatabase(tag);
        QVERIFY(!tool({QStringLiteral("load"), fixture, original}).startsWith("failed"));
        QVERIFY(!tool({QStringLiteral("copy"), original, server}).startsWith("failed"));
        QVERIFY(!tool({QStringLiteral("copy"), server, back}).startsWith("failed"));
        const QByteArray dump = tool({QStringLiteral("dump"), original});
        QVERIFY(dump.contains("\"agents\""));
        QCOMPARE(tool({QStringLiteral("dump"), server}), dump);
        QCOMPARE(tool({QStringLiteral("dump"), back}), dump);
        const QByteArray tree = tool({QStringLiteral("tree"), original});
        QVERIFY(tree.contains("[image"));
        QCOMPARE(tool({QStringLiteral("tree"), server}), tree);
    }

    void profileIsRecordedOnAStoreOnly()
    {
        const QString empty = m_server->createDatabase(QStringLiteral("nostore"));
        QCOMPARE(
            tool({QStringLiteral("profile"), QStringLiteral("Empty"), QStringLiteral("Tess Tester"), empty}),
            QByteArray("failed"));
        QVERIFY_THROWS_EXCEPTION(com::ComError, mapi::readProfile(QStringLiteral("Empty")));

        const QString team = m_server->createDatabase(QStringLiteral("team"));
        QVERIFY(!tool({QStringLiteral("load"), testsupport::fixture(QStringLiteral("agents.json")), team})
                     .startsWith("failed"));
        QVERIFY(
            !tool({QStringLiteral("profile"), QStringLiteral("Team"), QStringLiteral("Tess Tester"), team})
                 .startsWith("failed"));
        QCOMPARE(mapi::readProfile(QStringLiteral("Team")).store, team);
    }
};

QTEST_GUILESS_MAIN(TestStoreCopy)
#include "test_storecopy.moc"
