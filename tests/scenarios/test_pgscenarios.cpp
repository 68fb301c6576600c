// Scenarios of installing, changing, deleting agents and saving scripts run
// again with every fixture made on a PostgreSQL server instead of a file;
// and the profile dialog's server profiles, on a store loaded there first.
#include "platform/store/fixture.h"
#include "tests/support/driverprocess.h"
#include "tests/support/pgserver.h"

#include <QtTest>

#include <memory>

class TestPgScenarios : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<testsupport::PgServer> m_server;

private Q_SLOTS:
    void initTestCase()
    {
        m_server = std::make_unique<testsupport::PgServer>();
        SORRELIN_REQUIRE_PGSERVER(*m_server);
        const QString shared = m_server->createDatabase(QStringLiteral("profiles"));
        QVERIFY(!shared.isEmpty());
        store::loadFixture(QStringLiteral(SORRELIN_SOURCE "/tests/fixtures/agents.json"), shared);
        // The runner reads the fixtures from the source folder; its driver
        // makes every store on the server.
        QVERIFY(QDir::setCurrent(QStringLiteral(SORRELIN_SOURCE)));
        qputenv("SORRELIN_DRIVER_STORE_SERVER", m_server->location(QStringLiteral("postgres")).toUtf8());
    }

    void scenario_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *name :
             {"agents/install", "agents/install_checks", "agents/install_routing", "agents/properties",
              "agents/properties_errors", "agents/delete", "agents/target_folders", "scripts/save_modes",
              "scripts/save_as", "scripts/save_error", "scripts/new_script"})
            QTest::newRow(name) << QStringLiteral(SORRELIN_SCENARIOS "/%1.scn").arg(QLatin1String(name));
        // Only for a server: not run with the file scenarios.
        QTest::newRow("app/profiles_server")
            << QStringLiteral(SORRELIN_SCENARIOS "/app/profiles_server.pgscn");
    }
    void scenario()
    {
        QFETCH(QString, file);
        const testsupport::ToolRun run = testsupport::runProgram(
            {QStringLiteral(SORRELIN_SCENARIO_RUNNER), QStringLiteral(SORRELIN_DRIVER), file});
        QVERIFY2(run.code == 0, (run.out + run.err).constData());
    }
};

QTEST_GUILESS_MAIN(TestPgScenarios)
#include "test_pgscenarios.moc"
