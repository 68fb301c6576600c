// A store copied by the store tool from an SQLite file to a PostgreSQL
// database and back is the store it was: the same dump, to the byte, and the
// same tree.
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QProcess>
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
};

QTEST_GUILESS_MAIN(TestStoreCopy)
#include "test_storecopy.moc"
