// A store on a PostgreSQL server that goes away while the program runs:
// each command that reaches it says so in words and the program goes on;
// once the server is back, a refresh works again.
#include "driverprocess.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace Qt::StringLiterals;

class TestPgStoreLoss : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lostServerIsToldAndRefreshWorksAgain()
    {
        testsupport::PgServer server;
        SORRELIN_REQUIRE_PGSERVER(server);
        testsupport::TestHome home;
        qputenv("SORRELIN_DRIVER_STORE_SERVER", server.location(u"postgres"_s).toUtf8());
        testsupport::DriverProcess program(home.file(u"a"_s));
        const QJsonObject made = program.send(u"fixture "_s + testsupport::fixture(u"agents.json"_s));
        qunsetenv("SORRELIN_DRIVER_STORE_SERVER");
        QVERIFY2(made.value("ok").toBool(), QJsonDocument(made).toJson().constData());
        QVERIFY(program.ok(u"start"_s));
        QVERIFY(program.ok(u"quit"_s));
        QVERIFY(program.ok(u"reg HKCU\\Software\\Kelverd\\Sorrelin\\5.5\\General SaveChangesMode save"_s));
        QVERIFY(program.ok(u"start"_s));
        QVERIFY(program.ok(u"click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s));
        const QString edited = u"<SCRIPT RunAt=Server Language=VBScript>\\r\\n' mine\\r\\n</SCRIPT>"_s;
        QVERIFY(program.ok(u"type frmMain txtPreview "_s + edited));
        program.send(u"state"_s);

        server.stop();
        // Each command that reaches the store tells in words, and the edit
        // stays pending through a save.
        for (const auto &[command, pending] : {std::pair{u"menu mnuFileSave"_s, true},
                                               std::pair{u"click \\Mailbox - Tess Tester\\Inbox"_s, false},
                                               std::pair{u"menu mnuViewRefresh"_s, false}}) {
            program.send(u"answer OK"_s);
            program.send(u"answer OK"_s);
            const QJsonObject done = program.send(command);
            QVERIFY2(done.value("ok").toBool(), qPrintable(command + QJsonDocument(done).toJson()));
            const QJsonObject state = program.send(u"state"_s);
            const QJsonArray prompts = state.value("prompts").toArray();
            QVERIFY2(!prompts.isEmpty(), qPrintable(command + QJsonDocument(state).toJson()));
            const QString told = prompts.at(0).toObject().value("text").toString();
            QVERIFY2(told.startsWith(u"The connection to the server of the store"_s),
                     qPrintable(command + told));
            if (pending)
                QVERIFY2(state.value("dirty").toBool(), qPrintable(command));
        }

        QVERIFY(server.restart());
        QVERIFY(program.ok(u"menu mnuViewRefresh"_s));
        const QJsonObject state = program.send(u"state"_s);
        QVERIFY2(state.value("prompts").toArray().isEmpty(),
                 QJsonDocument(state.value("prompts").toArray()).toJson().constData());
        QStringList paths;
        for (const QJsonValue &node : state.value("tree").toArray())
            paths << node.toObject().value("path").toString();
        QVERIFY2(paths.contains(u"\\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s),
                 qPrintable(paths.join(u", "_s)));
        QVERIFY(program.quit());
    }
};

QTEST_GUILESS_MAIN(TestPgStoreLoss)
#include "test_pgstoreloss.moc"
