// Two programs on one store, a file or a database on a PostgreSQL server:
// what one of them loaded is written over the other's later change only when
// its user says so, and each learns of the other's changes from its status
// bar.
#include "agentlines.h"
#include "driverprocess.h"
#include "platform/store/database.h"
#include "platform/store/history.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using testsupport::DriverProcess;

namespace {

const QString kAgent = u"\\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s;
const QString kScriptA = u"<SCRIPT RunAt=Server Language=VBScript>\r\n' Tess\r\n</SCRIPT>"_s;
const QString kScriptB = u"<SCRIPT RunAt=Server Language=VBScript>\r\n' Bob\r\n</SCRIPT>"_s;
const QString kNotice = u"The store has changed; press F5 to see the changes."_s;

/// Two programs on one store made from the agents fixture: `tess` made it,
/// `bob` logs on to it as Bob Builder.
struct TwoPrograms {
    std::unique_ptr<testsupport::PgServer> server;
    testsupport::TestHome home;
    std::unique_ptr<DriverProcess> tess, bob;
    /// The store's file name or server location.
    QString store;
};

/// The Inbox agent `name` of a `store` dump, or an empty object.
QJsonObject agentIn(const QJsonObject &answer, const QString &name)
{
    const QJsonValue dump = answer[u"store"_s];
    const QJsonObject store =
        dump.isString() ? QJsonDocument::fromJson(dump.toString().toUtf8()).object() : dump.toObject();
    const QJsonArray folders = store[u"stores"_s][0][u"folders"_s].toArray();
    for (const QJsonValue &folder : folders)
        if (folder[u"name"_s].toString() == "Inbox"_L1)
            for (const QJsonValue &agent : folder[u"agents"_s].toArray())
                if (agent[u"name"_s].toString() == name)
                    return agent.toObject();
    return {};
}

QString notice(DriverProcess &driver)
{
    return driver.send(u"state"_s).value("storeNotice").toString();
}

/// The driver's store notice once it shows one, or when two seconds have
/// gone by without one.
QString noticeWithinTwoSeconds(DriverProcess &driver)
{
    QDeadlineTimer deadline(2000);
    QString shown = notice(driver);
    while (shown.isEmpty() && !deadline.hasExpired()) {
        QThread::msleep(50);
        shown = notice(driver);
    }
    return shown;
}

QJsonObject lastPrompt(DriverProcess &driver)
{
    const QJsonArray prompts = driver.send(u"state"_s).value("prompts").toArray();
    return prompts.isEmpty() ? QJsonObject() : prompts.last().toObject();
}

/// The lines that put `text` into the pane of the agent loaded and save it,
/// answering Yes to the save's question.
QStringList saveLines(const QString &text)
{
    QString escaped = text;
    escaped.replace(u"\r"_s, u"\\r"_s).replace(u"\n"_s, u"\\n"_s);
    return {u"type frmMain txtPreview "_s + escaped, u"answer Yes"_s, u"menu mnuFileSave"_s};
}

bool sendAll(DriverProcess &driver, const QStringList &lines)
{
    for (const QString &line : lines)
        if (!driver.ok(line)) {
            qWarning("refused: %s", qPrintable(line));
            return false;
        }
    return true;
}

} // namespace

class TestSharedStore : public QObject {
    Q_OBJECT

    /// Starts both programs on one store of `engine`; both show the agent.
    std::unique_ptr<TwoPrograms> start(const QString &engine)
    {
        auto p = std::make_unique<TwoPrograms>();
        if (engine == "postgresql"_L1) {
            p->server = std::make_unique<testsupport::PgServer>();
            if (!p->server->running())
                return p;
            qputenv("SORRELIN_DRIVER_STORE_SERVER", p->server->location(u"postgres"_s).toUtf8());
        }
        for (const QString &name : {u"tess"_s, u"bob"_s})
            QDir().mkpath(p->home.file(name));
        p->tess = std::make_unique<DriverProcess>(p->home.file(u"tess"_s));
        p->store =
            p->tess->send(u"fixture "_s + testsupport::fixture(u"agents.json"_s)).value("store").toString();
        qunsetenv("SORRELIN_DRIVER_STORE_SERVER");
        p->bob = std::make_unique<DriverProcess>(p->home.file(u"bob"_s));
        const QString key = testsupport::kTestProfileKey;
        for (const QString &line : {u"reg %1 Store %2"_s.arg(key, p->store),
                                    u"reg %1 User Bob Builder"_s.arg(key), u"answer Test"_s, u"start"_s})
            p->bob->ok(line);
        p->tess->ok(u"start"_s);
        p->tess->ok(u"click "_s + kAgent);
        p->bob->ok(u"click "_s + kAgent);
        return p;
    }

    /// A row for each engine: a store file and a database on a server.
    static void engines()
    {
        QTest::addColumn<QString>("engine");
        QTest::newRow("file") << u"file"_s;
        QTest::newRow("postgresql") << u"postgresql"_s;
    }

private Q_SLOTS:
    void writeOverAnotherProgramsChangeAsks_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<QString>("command");
        for (const QString &engine : {u"file"_s, u"postgresql"_s})
            for (const QString &command : {u"save"_s, u"properties"_s, u"delete"_s})
                QTest::newRow(qPrintable(engine + u' ' + command)) << engine << command;
    }

    void writeOverAnotherProgramsChangeAsks()
    {
        QFETCH(QString, engine);
        QFETCH(QString, command);
        const std::unique_ptr<TwoPrograms> p = start(engine);
        if (p->server)
            SORRELIN_REQUIRE_PGSERVER(*p->server);
        DriverProcess &tess = *p->tess;
        DriverProcess &bob = *p->bob;

        // Tess begins her change; Bob saves his meanwhile.
        QStringList tessLines;
        if (command == "save"_L1) {
            tessLines = saveLines(kScriptA);
            tessLines.insert(2, u"answer No"_s);
        } else if (command == "properties"_L1) {
            QVERIFY(tess.ok(u"menu mnuFileAgentProperties"_s));
            tessLines = {u"type frmProperties txtAgentName Tess Reply"_s, u"answer Yes"_s, u"answer No"_s,
                         u"press frmProperties cmdOK"_s};
        } else {
            tessLines = {u"answer Yes"_s, u"answer No"_s, u"menu mnuFileDelete"_s};
        }
        QVERIFY(sendAll(bob, saveLines(kScriptB)));
        QCOMPARE(agentIn(tess.send(u"store"_s), u"Auto Reply"_s)[u"script"_s].toString(), kScriptB);
        bob.send(u"state"_s);

        // No: the store stays as Bob left it, and Tess's change is still hers to make.
        QVERIFY(sendAll(tess, tessLines));
        const QJsonObject asked = lastPrompt(tess);
        static const QRegularExpression text(u"^'Auto Reply' was changed by Bob Builder at \\d\\d:\\d\\d"
                                             " after you opened it\\.\rSave your version over it\\?$"_s);
        QVERIFY2(text.match(asked[u"text"_s].toString()).hasMatch(), qPrintable(asked[u"text"_s].toString()));
        QCOMPARE(asked[u"icon"_s].toString(), u"exclamation"_s);
        QCOMPARE(asked[u"buttons"_s].toString(), u"YesNo"_s);
        QCOMPARE(asked[u"default"_s].toString(), u"No"_s);
        QCOMPARE(asked[u"answer"_s].toString(), u"No"_s);
        QJsonObject agent = agentIn(tess.send(u"store"_s), u"Auto Reply"_s);
        QCOMPARE(agent[u"script"_s].toString(), kScriptB);
        const QJsonObject state = tess.send(u"state"_s);
        if (command == "save"_L1)
            QVERIFY(state[u"dirty"_s].toBool());
        if (command == "properties"_L1)
            QVERIFY(state[u"forms"_s].toObject().contains(u"frmProperties"_s));

        // Yes: Tess's change is written.
        const int last = tessLines.size() - 1;
        tessLines.replace(last - 1, u"answer Yes"_s);
        QVERIFY(sendAll(tess, tessLines));
        QCOMPARE(lastPrompt(tess)[u"answer"_s].toString(), u"Yes"_s);
        const QJsonObject after = tess.send(u"store"_s);
        if (command == "save"_L1)
            QCOMPARE(agentIn(after, u"Auto Reply"_s)[u"script"_s].toString(), kScriptA);
        else if (command == "properties"_L1)
            QCOMPARE(agentIn(after, u"Tess Reply"_s)[u"script"_s].toString(), kScriptB);
        else
            QVERIFY(agentIn(after, u"Auto Reply"_s).isEmpty());

        // What Tess wrote she may change again without a question.
        if (command == "save"_L1) {
            QVERIFY(sendAll(tess, saveLines(kScriptB)));
            QCOMPARE(lastPrompt(tess)[u"text"_s].toString().left(6), u"Save '"_s);
        }
        QVERIFY(bob.quit());
        QVERIFY(tess.quit());
    }

    void anotherProgramsChangeIsNoticed_data() { engines(); }

    void anotherProgramsChangeIsNoticed()
    {
        QFETCH(QString, engine);
        const std::unique_ptr<TwoPrograms> p = start(engine);
        if (p->server)
            SORRELIN_REQUIRE_PGSERVER(*p->server);
        DriverProcess &tess = *p->tess;
        DriverProcess &bob = *p->bob;
        QCOMPARE(notice(tess), QString());
        const QString log = p->home.file(u"agent.log"_s);
        QFile file(log);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Replied to 3 messages\r\n");
        file.close();

        // Bob's save, then the event service writing the agent's log: each
        // is news to Tess until her F5 reads the store again.
        for (const QString &writer : {u"program"_s, u"event service"_s}) {
            if (writer == "program"_L1)
                QVERIFY(sendAll(bob, saveLines(kScriptB)));
            else
                QCOMPARE(testsupport::runStoreTool({u"set-log"_s, p->store, kAgent, log}).code, 0);
            QVERIFY2(noticeWithinTwoSeconds(tess) == kNotice, qPrintable(writer));
            QCOMPARE(tess.send(u"state"_s).value("status").toString(), u"Ready"_s);
            QVERIFY(tess.ok(u"key frmMain treOutl F5"_s));
            QCOMPARE(notice(tess), QString());
        }

        // Tess's own save is no news to her, nor is what was there at her
        // F5; Bob learns of her save.
        QVERIFY(bob.ok(u"key frmMain treOutl F5"_s));
        QCOMPARE(notice(bob), QString());
        QVERIFY(tess.ok(u"click "_s + kAgent));
        QVERIFY(sendAll(tess, saveLines(kScriptA)));
        QElapsedTimer saved;
        saved.start();
        QCOMPARE(agentIn(tess.send(u"store"_s), u"Auto Reply"_s)[u"script"_s].toString(), kScriptA);
        QCOMPARE(noticeWithinTwoSeconds(bob), kNotice);
        // Tess's program has looked at the store again meanwhile.
        QThread::msleep(static_cast<unsigned long>(std::max<qint64>(0, 1500 - saved.elapsed())));
        QCOMPARE(notice(tess), QString());
        QVERIFY(bob.quit());
        QVERIFY(tess.quit());
    }

    void historyKeepsBothVersionsInOrder_data() { engines(); }

    void historyKeepsBothVersionsInOrder()
    {
        QFETCH(QString, engine);
        const std::unique_ptr<TwoPrograms> p = start(engine);
        if (p->server)
            SORRELIN_REQUIRE_PGSERVER(*p->server);
        const QByteArray fixtureScript =
            agentIn(p->tess->send(u"store"_s), u"Auto Reply"_s)[u"script"_s].toString().toLatin1();
        QVERIFY(sendAll(*p->bob, saveLines(kScriptB)));
        // Tess is asked about Bob's change and saves hers over it.
        QStringList tessLines = saveLines(kScriptA);
        tessLines.insert(2, u"answer Yes"_s);
        QVERIFY(sendAll(*p->tess, tessLines));
        QVERIFY(lastPrompt(*p->tess)[u"text"_s].toString().contains(u"was changed by Bob Builder"_s));
        QVERIFY(p->bob->quit());
        QVERIFY(p->tess->quit());

        // Newest first: Tess's save over Bob's script, Bob's over the first.
        const std::unique_ptr<store::Database> db = store::Database::open(p->store);
        const QList<store::Change> changes = store::changes(*db, store::agentsNamed(*db, kAgent));
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.at(0).user, u"Tess Tester"_s);
        QCOMPARE(changes.at(1).user, u"Bob Builder"_s);
        for (const store::Change &c : changes)
            QCOMPARE(c.what, u"script"_s);
        QCOMPARE(store::scriptBefore(*db, changes.at(0).id), kScriptB.toLatin1());
        QCOMPARE(store::scriptBefore(*db, changes.at(1).id), fixtureScript);
        QVERIFY(changes.at(0).number > changes.at(1).number);
    }
};

QTEST_GUILESS_MAIN(TestSharedStore)
#include "test_sharedstore.moc"
