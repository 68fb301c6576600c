// The store is never damaged by the program: bad files are refused in words
// and left as they were, and other programs on the same store at the same
// time lose nothing of the program's saves.
#include "agentlines.h"
#include "driverprocess.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "storecheck.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QtSql>
#include <QtTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using testsupport::DriverProcess;
using testsupport::kTestProfileKey;

namespace {

constexpr int kNobody = 65534;

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

/// Loads the agents fixture into a store of `driver`'s; the store's path.
QString loadAgents(DriverProcess &driver)
{
    return driver.send(u"fixture "_s + testsupport::fixture(u"agents.json"_s)).value("store").toString();
}

QByteArray dump(const QString &store)
{
    return testsupport::runStoreTool({u"dump"_s, store}).out;
}

QByteArray digest(const QString &path)
{
    return QCryptographicHash::hash(readAll(path), QCryptographicHash::Sha256);
}

QString caption(const QJsonObject &state)
{
    return state.value("forms").toObject().value("frmMain").toObject().value("caption").toString();
}

/// Starts the program on a store that it may only read, as Tess Tester, and
/// browses it: the tree, an agent's script, and the list of installed
/// agents. What went wrong, or nothing.
QString startAndBrowse(DriverProcess &driver)
{
    driver.send(u"answer Test"_s);
    if (!driver.ok(u"start"_s))
        return u"the program doesn't start"_s;
    const QJsonObject started = driver.send(u"state"_s);
    if (const QJsonArray prompts = started.value("prompts").toArray(); prompts.size() != 1)
        return u"prompts: "_s + QString::fromUtf8(QJsonDocument(prompts).toJson());
    if (caption(started) != u"Current User: Tess Tester - Sorrelin (read-only)"_s)
        return u"caption at the start: "_s + caption(started);
    if (!driver.ok(u"click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s))
        return u"the agent can't be chosen"_s;
    const QJsonObject state = driver.send(u"state"_s);
    if (caption(state) != u"Auto Reply - Sorrelin (read-only)"_s)
        return u"caption: "_s + caption(state);
    if (!QJsonDocument(state.value("tree").toArray()).toJson().contains("Clipper"))
        return u"the tree lacks an agent"_s;
    const QJsonObject controls = state["forms"_L1]["frmMain"_L1]["controls"_L1].toObject();
    if (!controls["txtPreview"_L1]["text"_L1].toString().contains("Folder_OnMessageCreated"_L1))
        return u"the script is not shown"_s;
    if (!driver.ok(u"toolbar Installed"_s))
        return u"the list can't be opened"_s;
    const QJsonObject list = driver.send(u"state"_s)["forms"_L1]["frmScripts"_L1].toObject();
    if (list["controls"_L1]["SSDBGrid1"_L1]["rows"_L1].toArray().size() < 4)
        return u"the list lacks agents"_s;
    return driver.ok(u"press frmScripts cmdClose"_s) ? QString() : u"the list can't be closed"_s;
}

/// Whether a save of an edited script into the read-only `store` is refused
/// in words, the edit left in the pane.
bool refusesSave(DriverProcess &driver, const QString &store)
{
    driver.send(u"type frmMain txtPreview <SCRIPT RunAt=Server Language=VBScript>\\r\\n' mine"_s);
    driver.send(u"answer Yes"_s);
    driver.send(u"answer OK"_s);
    if (!driver.ok(u"menu mnuFileSave"_s))
        return false;
    const QJsonObject state = driver.send(u"state"_s);
    const QJsonObject told = state.value("prompts").toArray().last().toObject();
    const QString pane =
        state["forms"_L1]["frmMain"_L1]["controls"_L1]["txtPreview"_L1]["text"_L1].toString();
    const bool refused = told.value("text").toString().contains(
                             u"Description: The store %1 is read-only; nothing was written."_s.arg(store)) &&
                         told.value("icon").toString() == "information"_L1 && pane.contains("' mine"_L1);
    if (!refused)
        qWarning("not refused as expected: %s; pane: %s", qPrintable(QJsonDocument(told).toJson()),
                 qPrintable(pane));
    return refused;
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

/// Makes at `path` the file of one kind of store that the program can't open, or may only read.
void makeStoreFile(const QString &kind, const QString &path)
{
    if (kind == "missing"_L1) {
        return;
    } else if (kind == "empty"_L1) {
        writeAll(path, QByteArray());
    } else if (kind == "text"_L1) {
        writeAll(path, "Dear admin, this is a letter, not a store.\n");
    } else if (kind == "foreign"_L1) {
        QVERIFY(testsupport::makeForeignDatabase(path));
    } else {
        store::loadFixture(testsupport::fixture(u"agents.json"_s), path);
        if (kind == "version"_L1) {
            QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"v"_s);
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery(u"UPDATE meta SET value = '7' WHERE key = 'schema'"_s, db).exec();
            QSqlQuery(u"PRAGMA wal_checkpoint(TRUNCATE)"_s, db).exec();
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(u"v"_s);
            QFile::remove(path + u"-wal"_s);
            QFile::remove(path + u"-shm"_s);
        } else if (kind == "damaged"_L1) {
            QFile f(path);
            QVERIFY(f.resize(f.size() / 2));
        } else if (kind == "read-only file"_L1) {
            QFile::setPermissions(path,
                                  QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
        } else if (kind == "read-only folder"_L1) {
            QFile::setPermissions(path, QFileDevice::Permissions(0x6666));
            QFile::setPermissions(QFileInfo(path).absolutePath(), QFileDevice::Permissions(0x5555));
        }
    }
}

} // namespace

class TestStoreSafety : public QObject {
    Q_OBJECT

    std::unique_ptr<testsupport::TestHome> m_home;
    QString m_work;

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<testsupport::TestHome>();
        // Open to every user, so that a run under another user id can work here.
        m_work = m_home->file(u"work"_s);
        QDir().mkpath(m_work);
        QFile::setPermissions(m_home->path(), QFileDevice::Permissions(0x7777));
        QFile::setPermissions(m_work, QFileDevice::Permissions(0x7777));
    }

    void cleanup() { m_home.reset(); }

    void badStoreIsRefusedInWords_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("cause");
        QTest::newRow("missing") << u"missing"_s << u"does not exist."_s;
        QTest::newRow("empty") << u"empty"_s << u"is empty; it is not a Sorrelin store."_s;
        QTest::newRow("not a database") << u"text"_s << u"is not a Sorrelin store: it is not a database."_s;
        QTest::newRow("another program's")
            << u"foreign"_s << u"is not a Sorrelin store: it is a database of another program."_s;
        QTest::newRow("another version")
            << u"version"_s << u"is of version 7; this program reads version 1."_s;
        QTest::newRow("damaged") << u"damaged"_s << u"is damaged"_s;
    }

    void badStoreIsRefusedInWords()
    {
        QFETCH(QString, kind);
        QFETCH(QString, cause);
        const QString folder = m_work + u"/stores"_s;
        QDir().mkpath(folder);
        const QString path = folder + u"/store.db"_s;
        makeStoreFile(kind, path);
        const QByteArray before = readAll(path);
        const QStringList filesBefore = filesIn(folder);

        {
            DriverProcess driver(m_work + u"/home"_s);
            QVERIFY(driver.ok(u"reg %1 Store %2"_s.arg(kTestProfileKey, path)));
            driver.send(u"answer Test"_s);
            driver.send(u"answer OK"_s);
            driver.send(u"start"_s);
            const QJsonArray prompts = driver.send(u"state"_s).value("prompts").toArray();
            QVERIFY2(prompts.size() == 2, QJsonDocument(prompts).toJson().constData());
            const QJsonObject message = prompts.at(1).toObject();
            QCOMPARE(message.value("text").toString(),
                     u"Unrecoverable Error - Could not logon to MAPI profile!"_s);
            QCOMPARE(message.value("icon").toString(), u"stop"_s);
            const QString detail = message.value("detail").toString();
            QVERIFY2(detail.contains(QDir::toNativeSeparators(path)), qPrintable(detail));
            QVERIFY2(detail.contains(cause), qPrintable(detail));
            const QJsonArray log = driver.send(u"log"_s).value("lines").toArray();
            QVERIFY(!log.isEmpty());
            const QJsonObject last = log.last().toObject();
            QCOMPARE(last.value("type").toInt(), 1);
            QVERIFY2(last.value("text").toString().contains(cause),
                     qPrintable(last.value("text").toString()));
            QVERIFY(driver.finish());
        }
        QCOMPARE(readAll(path), before);
        QCOMPARE(filesIn(folder), filesBefore);

        for (const QString &command : {u"tree"_s, u"dump"_s}) {
            const testsupport::ToolRun run = testsupport::runStoreTool({command, path});
            QCOMPARE(run.code, 1);
            QCOMPARE(run.out, QByteArray());
            QVERIFY2(run.err.startsWith("sorrelin-store: ") &&
                         QString::fromLocal8Bit(run.err).contains(cause),
                     run.err.constData());
            QCOMPARE(readAll(path), before);
            // A refused store gets nothing beside it.
            QCOMPARE(filesIn(folder), filesBefore);
        }
    }

    void readOnlyStoreOpensForReading_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("read-only file") << u"read-only file"_s;
        QTest::newRow("read-only folder") << u"read-only folder"_s;
    }

    void readOnlyStoreOpensForReading()
    {
        QFETCH(QString, kind);
        // Permissions don't bind root: the program runs as an ordinary user.
        const int user = geteuid() == 0 ? kNobody : -1;
        const QString folder = m_work + u"/stores"_s;
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
        const QString path = folder + u"/store.db"_s;
        makeStoreFile(kind, path);
        const QByteArray before = digest(path);

        {
            DriverProcess driver(m_work + u"/home"_s, user);
            QVERIFY(driver.ok(u"reg %1 Store %2"_s.arg(kTestProfileKey, path)));
            const QString browsing = startAndBrowse(driver);
            QVERIFY2(browsing.isEmpty(), qPrintable(browsing));

            QVERIFY(refusesSave(driver, path));
            // The other writes are refused in the same words: on the screen, or
            // in the application log that the install's message points to.
            const QString agent = u"\\Mailbox - Tess Tester\\Inbox\\Router"_s;
            for (const QStringList &write :
                 {testsupport::renameLines(agent, u"Renamed"_s), testsupport::removeLines(agent),
                  testsupport::installLines(u"Greeter"_s, u"\\Mailbox - Tess Tester\\Empty"_s)}) {
                for (const QString &line : write)
                    driver.send(line);
                const QJsonArray prompts = driver.send(u"state"_s).value("prompts").toArray();
                const QJsonArray log = driver.send(u"log"_s).value("lines").toArray();
                const QString told =
                    prompts.last()["text"_L1].toString() + u'\n' + log.last()["text"_L1].toString();
                QVERIFY2(told.contains(u"The store %1 is read-only; nothing was written."_s.arg(path)),
                         qPrintable(write.last() + u": "_s + told));
            }
            QVERIFY(driver.finish());
        }
        QCOMPARE(digest(path), before);

        QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
    }

    void readOnlyLoginBrowses()
    {
        testsupport::PgServer server;
        SORRELIN_REQUIRE_PGSERVER(server);
        qputenv("SORRELIN_DRIVER_STORE_SERVER", server.location(u"postgres"_s).toUtf8());
        DriverProcess maker(m_work + u"/maker"_s);
        const QString made = loadAgents(maker);
        qunsetenv("SORRELIN_DRIVER_STORE_SERVER");
        QVERIFY(maker.finish());
        const store::Location where = store::Location::parse(made);
        {
            // A login that may read every table of the store and change none.
            const std::unique_ptr<store::Database> db = store::Database::open(made);
            db->run(u"CREATE ROLE auditor LOGIN"_s);
            db->run(u"GRANT SELECT ON ALL TABLES IN SCHEMA public TO auditor"_s);
        }
        const QString location = server.location(where.database, u"auditor"_s);
        const QByteArray before = dump(made);
        QVERIFY(before.contains("Auto Reply"));

        {
            DriverProcess driver(m_work + u"/auditor"_s);
            for (const auto &[name, value] :
                 {std::pair{u"User"_s, u"Tess Tester"_s}, std::pair{u"Server"_s, where.host},
                  std::pair{u"Port"_s, QString::number(where.port)}, std::pair{u"Database"_s, where.database},
                  std::pair{u"Login"_s, u"auditor"_s}})
                QVERIFY(driver.ok(u"reg %1 %2 %3"_s.arg(kTestProfileKey, name, value)));
            const QString browsing = startAndBrowse(driver);
            QVERIFY2(browsing.isEmpty(), qPrintable(browsing));
            QVERIFY(refusesSave(driver, store::Location::parse(location).text()));
            QVERIFY(driver.finish());
        }
        QCOMPARE(dump(made), before);

        const testsupport::ToolRun read = testsupport::runStoreTool({u"dump"_s, location});
        QCOMPARE(read.code, 0);
        QCOMPARE(read.out, before);
        const testsupport::ToolRun write = testsupport::runStoreTool(
            {u"set-log"_s, location, u"\\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s, u"/dev/null"_s});
        QCOMPARE(write.code, 1);
        QCOMPARE(QString::fromLocal8Bit(write.err),
                 u"sorrelin-store: The store %1 is read-only; nothing was written.\n"_s.arg(
                     store::Location::parse(location).text()));
        QCOMPARE(dump(made), before);
    }

    void damagedSettingsAreMovedAside()
    {
        const QString home = m_work + u"/home"_s;
        const QString settings = home + u"/config/sorrelin/registry.db"_s;
        const QString settingsFolder = QFileInfo(settings).absolutePath();
        QDir().mkpath(settingsFolder);
        writeAll(settings, QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\x5A'));
        const QByteArray damaged = readAll(settings);

        DriverProcess driver(home);
        loadAgents(driver);
        driver.send(u"answer OK"_s);
        QVERIFY(driver.ok(u"start"_s));
        const QJsonObject state = driver.send(u"state"_s);
        const QJsonObject first = state.value("prompts").toArray().at(0).toObject();
        QVERIFY2(first.value("text").toString().startsWith(
                     u"The settings file %1 was damaged. It has been moved to "_s.arg(settings)),
                 qPrintable(first.value("text").toString()));
        QCOMPARE(first.value("icon").toString(), u"exclamation"_s);
        // The program runs on fresh settings, and the damaged file is kept aside.
        QVERIFY(state.value("forms").toObject().contains("frmMain"));
        const QStringList aside = QDir(settingsFolder).entryList({u"registry.db.damaged-*"_s}, QDir::Files);
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readAll(settingsFolder + QLatin1Char('/') + aside.first()), damaged);
        QVERIFY(driver.quit());
    }

    void otherProgramsOnTheStoreLoseNoSave()
    {
        DriverProcess program(m_work + u"/first"_s);
        const QString store = loadAgents(program);
        QVERIFY(!store.isEmpty());
        QVERIFY(program.ok(u"start"_s));
        const int rounds = 4;
        for (int round = 1; round <= rounds; ++round) {
            // Meanwhile: the store's command line lists it, and a second program
            // opens it, reads it and quits.
            QProcess tree;
            tree.start(QStringLiteral(SORRELIN_STORE_TOOL_PATH), {u"tree"_s, store});
            DriverProcess second(m_work + u"/second-%1"_s.arg(round));
            second.post({u"reg %1 Store %2"_s.arg(kTestProfileKey, store),
                         u"reg %1 User \"Tess Tester\""_s.arg(kTestProfileKey), u"answer Test"_s, u"start"_s,
                         u"state"_s, u"quit"_s});

            const QString script =
                u"<SCRIPT RunAt=Server Language=VBScript>\\r\\n' round %1\\r\\n</SCRIPT>"_s.arg(round);
            program.send(u"click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s);
            program.send(u"type frmMain txtPreview %1"_s.arg(script));
            program.send(u"answer Yes"_s);
            QVERIFY(program.ok(u"menu mnuFileSave"_s));
            QVERIFY(second.finish());
            QVERIFY(tree.waitForFinished(60000));
            QCOMPARE(tree.exitCode(), 0);
            // Another reader sees the save at once.
            const testsupport::ToolRun read = testsupport::runStoreTool({u"dump"_s, store});
            QCOMPARE(read.code, 0);
            QVERIFY2(read.out.contains(u"' round %1"_s.arg(round).toLatin1()), read.err.constData());
        }
        QVERIFY(program.quit());
        QCOMPARE(testsupport::StoreCheck::of(store).integrity, u"ok"_s);
        QVERIFY(dump(store).contains(u"' round %1"_s.arg(rounds).toLatin1()));
    }

    void unwritableLogIsToldOnce()
    {
        const QString home = m_work + u"/home"_s;
        // A folder where the log file should be: no user can append to it.
        const QString log = home + u"/state/sorrelin/application.log"_s;
        QVERIFY(QDir().mkpath(log));
        DriverProcess driver(home);
        loadAgents(driver);
        QVERIFY(driver.ok(u"start"_s));
        QStringList lines = testsupport::installLines(
            u"Greeter"_s, u"\\Mailbox - Tess Tester\\Empty | \\Mailbox - Tess Tester\\Parent\\Child"_s);
        // Only the prompts of the install itself are counted; the log's message needs an answer.
        lines.insert(lines.indexOf(u"answer Yes"_s), u"state"_s);
        lines.insert(lines.size() - 1, u"answer OK"_s);
        for (const QString &line : lines)
            QVERIFY2(driver.ok(line), qPrintable(line));
        const QJsonArray prompts = driver.send(u"state"_s).value("prompts").toArray();
        // The question, the log's one message for both folders, and the end.
        QCOMPARE(prompts.size(), 3);
        const QJsonObject told = prompts.at(1).toObject();
        QCOMPARE(told.value("text").toString(), u"The application log could not be written."_s);
        QVERIFY(told.value("detail").toString().startsWith(log));
        QCOMPARE(told.value("icon").toString(), u"exclamation"_s);
        QCOMPARE(prompts.at(2).toObject().value("text").toString(),
                 u"Agent installed OK in target folder(s)."_s);
        QVERIFY(driver.quit());
    }

    void saveIntoALockedStoreIsRefusedInWords()
    {
        DriverProcess program(m_work + u"/first"_s);
        const QString store = loadAgents(program);
        QVERIFY(program.ok(u"start"_s));
        program.send(u"click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s);
        program.send(u"type frmMain txtPreview <SCRIPT RunAt=Server Language=VBScript>\\r\\n' mine"_s);
        program.send(u"state"_s);
        const QByteArray before = dump(store);
        {
            // Another program holds the store's write lock for longer than a save waits.
            const testsupport::StoreWriteLock lock(store);
            QVERIFY(lock.held());
            program.send(u"answer Yes"_s);
            program.send(u"answer OK"_s);
            QVERIFY(program.ok(u"menu mnuFileSave"_s));
        }
        const QJsonObject state = program.send(u"state"_s);
        const QString told = state.value("prompts").toArray().last().toObject().value("text").toString();
        QCOMPARE(state.value("prompts").toArray().last().toObject().value("icon").toString(),
                 u"information"_s);
        QVERIFY2(told.contains(u"Description: The store %1 is locked by another program."_s.arg(store)),
                 qPrintable(told));
        // The status text of the wait is gone again.
        QVERIFY2(!state.value("status").toString().contains("waiting"_L1),
                 qPrintable(state.value("status").toString()));
        // Nothing was written, and the store is whole.
        QCOMPARE(dump(store), before);
        QVERIFY(program.quit());
        QCOMPARE(testsupport::StoreCheck::of(store).integrity, u"ok"_s);
    }

    void saveIntoARemovedOrReplacedStoreIsRefusedInWords_data()
    {
        QTest::addColumn<bool>("replaced");
        QTest::newRow("removed") << false;
        QTest::newRow("replaced by a copy") << true;
    }

    void saveIntoARemovedOrReplacedStoreIsRefusedInWords()
    {
        QFETCH(bool, replaced);
        DriverProcess program(m_work + u"/first"_s);
        const QString store = loadAgents(program);
        QVERIFY(program.ok(u"start"_s));
        program.send(u"click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"_s);
        program.send(u"type frmMain txtPreview <SCRIPT RunAt=Server Language=VBScript>\\r\\n' mine"_s);
        program.send(u"state"_s);
        const QByteArray before = dump(store);
        QVERIFY(QFile::rename(store, store + u".old"_s));
        if (replaced)
            QVERIFY(QFile::copy(store + u".old"_s, store));
        program.send(u"answer Yes"_s);
        program.send(u"answer OK"_s);
        QVERIFY(program.ok(u"menu mnuFileSave"_s));
        const QJsonObject state = program.send(u"state"_s);
        const QString told = state.value("prompts").toArray().last().toObject().value("text").toString();
        QVERIFY2(told.contains(u"Description: The store %1 was removed or replaced by another file while "
                               "Sorrelin had it open; nothing was written."_s.arg(store)),
                 qPrintable(told));
        // The edit is still there to be saved.
        QVERIFY(state.value("dirty").toBool());
        if (replaced)
            QCOMPARE(dump(store), before);
        QVERIFY(program.quit());
    }
};

QTEST_GUILESS_MAIN(TestStoreSafety)
#include "test_storesafety.moc"
