// The store is never damaged by the program: bad files are refused in words
// and left as they were, and other programs on the same store at the same
// time lose nothing of the program's saves.
#include "agentlines.h"
#include "driverprocess.h"
#include "platform/store/fixture.h"
#include "storecheck.h"
#include "tests/support/testenv.h"

#include <QtSql>
#include <QtTest>

#include <unistd.h>

using testsupport::DriverProcess;

namespace {

const QString kProfileKey = QStringLiteral(
    "\"HKCU\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging Subsystem\\Profiles\\Test\"");
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

} // namespace

class TestStoreSafety : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_home.reset(); }
    void badStoreIsRefusedInWords_data();
    void badStoreIsRefusedInWords();
    void damagedSettingsAreMovedAside();
    void otherProgramsOnTheStoreLoseNoSave();
    void unwritableLogIsToldOnce();
    void saveIntoALockedStoreIsRefusedInWords();

private:
    /// Makes the file of one kind of bad store at `path`.
    void makeBadStore(const QString &kind, const QString &path);

    std::unique_ptr<testsupport::TestHome> m_home;
    QString m_work;
};

void TestStoreSafety::init()
{
    m_home = std::make_unique<testsupport::TestHome>();
    // Open to every user, so that a run under another user id can work here.
    m_work = m_home->file(QStringLiteral("work"));
    QDir().mkpath(m_work);
    QFile::setPermissions(m_home->path(), QFileDevice::Permissions(0x7777));
    QFile::setPermissions(m_work, QFileDevice::Permissions(0x7777));
}

void TestStoreSafety::makeBadStore(const QString &kind, const QString &path)
{
    if (kind == QLatin1String("missing")) {
        return;
    } else if (kind == QLatin1String("empty")) {
        writeAll(path, QByteArray());
    } else if (kind == QLatin1String("text")) {
        writeAll(path, "Dear admin, this is a letter, not a store.\n");
    } else if (kind == QLatin1String("foreign")) {
        QVERIFY(testsupport::makeForeignDatabase(path));
    } else {
        store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
        if (kind == QLatin1String("version")) {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("v"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery(QStringLiteral("UPDATE meta SET value = '7' WHERE key = 'schema'"), db).exec();
            QSqlQuery(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"), db).exec();
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(QStringLiteral("v"));
            QFile::remove(path + QStringLiteral("-wal"));
            QFile::remove(path + QStringLiteral("-shm"));
        } else if (kind == QLatin1String("damaged")) {
            QFile f(path);
            QVERIFY(f.resize(f.size() / 2));
        } else if (kind == QLatin1String("read-only file")) {
            QFile::setPermissions(path,
                                  QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
        } else if (kind == QLatin1String("read-only folder")) {
            QFile::setPermissions(path, QFileDevice::Permissions(0x6666));
            QFile::setPermissions(QFileInfo(path).absolutePath(), QFileDevice::Permissions(0x5555));
        }
    }
}

void TestStoreSafety::badStoreIsRefusedInWords_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("cause");
    QTest::addColumn<bool>("listable"); // the store's command line may still list it
    QTest::newRow("missing") << "missing"
                             << "does not exist." << false;
    QTest::newRow("empty") << "empty"
                           << "is empty; it is not a Sorrelin store." << false;
    QTest::newRow("not a database") << "text"
                                    << "is not a Sorrelin store: it is not a database." << false;
    QTest::newRow("another program's")
        << "foreign"
        << "is not a Sorrelin store: it is a database of another program." << false;
    QTest::newRow("another version") << "version"
                                     << "is of version 7; this program reads version 1." << false;
    QTest::newRow("damaged") << "damaged"
                             << "is damaged" << false;
    QTest::newRow("read-only file") << "read-only file"
                                    << "is read-only; Sorrelin must be able to write to it." << true;
    QTest::newRow("read-only folder") << "read-only folder"
                                      << "is read-only; Sorrelin keeps the store's journal beside it" << true;
}

void TestStoreSafety::badStoreIsRefusedInWords()
{
    QFETCH(QString, kind);
    QFETCH(QString, cause);
    QFETCH(bool, listable);
    // Permissions don't bind root: such cases run as an ordinary user.
    const int user = kind.startsWith(QLatin1String("read-only")) && geteuid() == 0 ? kNobody : -1;
    const QString folder = m_work + QStringLiteral("/stores");
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
    const QString path = folder + QStringLiteral("/store.db");
    makeBadStore(kind, path);
    const QByteArray before = readAll(path);
    const QStringList filesBefore = QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);

    {
        DriverProcess driver(
            m_work + QStringLiteral("/home-") + QString::number(QDateTime::currentMSecsSinceEpoch()), user);
        QVERIFY(driver.send(QStringLiteral("reg %1 Store %2").arg(kProfileKey, path)).value("ok").toBool());
        driver.send(QStringLiteral("answer Test"));
        driver.send(QStringLiteral("answer OK"));
        driver.send(QStringLiteral("start"));
        const QJsonObject state = driver.send(QStringLiteral("state"));
        const QJsonArray prompts = state.value("prompts").toArray();
        QVERIFY2(prompts.size() == 2, QJsonDocument(prompts).toJson().constData());
        const QJsonObject message = prompts.at(1).toObject();
        QCOMPARE(message.value("text").toString(),
                 QStringLiteral("Unrecoverable Error - Could not logon to MAPI profile!"));
        QCOMPARE(message.value("icon").toString(), QStringLiteral("stop"));
        const QString detail = message.value("detail").toString();
        QVERIFY2(detail.contains(QDir::toNativeSeparators(path)), qPrintable(detail));
        QVERIFY2(detail.contains(cause), qPrintable(detail));
        const QJsonArray log = driver.send(QStringLiteral("log")).value("lines").toArray();
        QVERIFY(!log.isEmpty());
        QCOMPARE(log.last().toObject().value("type").toInt(), 1);
        QVERIFY2(log.last().toObject().value("text").toString().contains(cause),
                 qPrintable(log.last().toObject().value("text").toString()));
        QVERIFY(driver.finish());
    }
    QCOMPARE(readAll(path), before);
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), filesBefore);

    for (const QString &command : {QStringLiteral("tree"), QStringLiteral("dump")}) {
        const testsupport::ToolRun run = testsupport::runStoreTool({command, path}, user);
        if (listable) {
            QVERIFY2(run.code == 0, run.err.constData());
            QVERIFY(run.out.contains("Inbox"));
        } else {
            QCOMPARE(run.code, 1);
            QCOMPARE(run.out, QByteArray());
            QVERIFY2(run.err.startsWith("sorrelin-store: ") &&
                         QString::fromLocal8Bit(run.err).contains(cause),
                     run.err.constData());
        }
        QCOMPARE(readAll(path), before);
        // A reader may leave SQLite's journal files beside a store it can't
        // write; a refused store gets nothing beside it.
        if (!listable)
            QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), filesBefore);
    }
    QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
}

void TestStoreSafety::damagedSettingsAreMovedAside()
{
    const QString home = m_work + QStringLiteral("/home");
    const QString settings = home + QStringLiteral("/config/sorrelin/registry.db");
    QDir().mkpath(QFileInfo(settings).absolutePath());
    writeAll(settings, QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\x5A'));
    const QByteArray damaged = readAll(settings);

    DriverProcess driver(home);
    driver.send(QStringLiteral("fixture ") + testsupport::fixture(QStringLiteral("agents.json")));
    driver.send(QStringLiteral("answer OK"));
    QVERIFY(driver.send(QStringLiteral("start")).value("ok").toBool());
    const QJsonObject state = driver.send(QStringLiteral("state"));
    const QJsonObject first = state.value("prompts").toArray().at(0).toObject();
    QVERIFY2(first.value("text").toString().startsWith(
                 QStringLiteral("The settings file %1 was damaged. It has been moved to ").arg(settings)),
             qPrintable(first.value("text").toString()));
    QCOMPARE(first.value("icon").toString(), QStringLiteral("exclamation"));
    // The program runs on fresh settings, and the damaged file is kept aside.
    QVERIFY(state.value("forms").toObject().contains("frmMain"));
    const QStringList aside = QDir(QFileInfo(settings).absolutePath())
                                  .entryList({QStringLiteral("registry.db.damaged-*")}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(readAll(QFileInfo(settings).absolutePath() + QLatin1Char('/') + aside.first()), damaged);
    driver.send(QStringLiteral("quit"));
    QVERIFY(driver.finish());
}

void TestStoreSafety::otherProgramsOnTheStoreLoseNoSave()
{
    DriverProcess program(m_work + QStringLiteral("/first"));
    const QString store =
        program.send(QStringLiteral("fixture ") + testsupport::fixture(QStringLiteral("agents.json")))
            .value("store")
            .toString();
    QVERIFY(!store.isEmpty());
    QVERIFY(program.send(QStringLiteral("start")).value("ok").toBool());
    const int rounds = 4;
    for (int round = 1; round <= rounds; ++round) {
        // Meanwhile: the store's command line lists it, and a second program
        // opens it, reads it and quits.
        QProcess tree;
        tree.start(QStringLiteral(SORRELIN_STORE_TOOL_PATH), {QStringLiteral("tree"), store});
        DriverProcess second(m_work + QStringLiteral("/second-%1").arg(round));
        second.post({QStringLiteral("reg %1 Store %2").arg(kProfileKey, store),
                     QStringLiteral("reg %1 User \"Tess Tester\"").arg(kProfileKey),
                     QStringLiteral("answer Test"), QStringLiteral("start"), QStringLiteral("state"),
                     QStringLiteral("quit")});

        const QString script =
            QStringLiteral("<SCRIPT RunAt=Server Language=VBScript>\\r\\n' round %1\\r\\n</SCRIPT>")
                .arg(round);
        program.send(QStringLiteral("click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"));
        program.send(QStringLiteral("type frmMain txtPreview %1").arg(script));
        program.send(QStringLiteral("answer Yes"));
        QVERIFY(program.send(QStringLiteral("menu mnuFileSave")).value("ok").toBool());
        QVERIFY(second.finish());
        QVERIFY(tree.waitForFinished(60000));
        QCOMPARE(tree.exitCode(), 0);
        // Another reader sees the save at once.
        const testsupport::ToolRun dump = testsupport::runStoreTool({QStringLiteral("dump"), store});
        QCOMPARE(dump.code, 0);
        QVERIFY2(dump.out.contains(QStringLiteral("' round %1").arg(round).toLatin1()), dump.err.constData());
    }
    program.send(QStringLiteral("quit"));
    QVERIFY(program.finish());
    const testsupport::StoreCheck check = testsupport::StoreCheck::of(store);
    QCOMPARE(check.integrity, QStringLiteral("ok"));
    const testsupport::ToolRun dump = testsupport::runStoreTool({QStringLiteral("dump"), store});
    QVERIFY(dump.out.contains(QStringLiteral("' round %1").arg(rounds).toLatin1()));
}

void TestStoreSafety::unwritableLogIsToldOnce()
{
    const QString home = m_work + QStringLiteral("/home");
    // A folder where the log file should be: no user can append to it.
    const QString log = home + QStringLiteral("/state/sorrelin/application.log");
    QVERIFY(QDir().mkpath(log));
    DriverProcess driver(home);
    driver.send(QStringLiteral("fixture ") + testsupport::fixture(QStringLiteral("agents.json")));
    QVERIFY(driver.send(QStringLiteral("start")).value("ok").toBool());
    QStringList lines = testsupport::installLines(
        QStringLiteral("Greeter"),
        QStringLiteral("\\Mailbox - Tess Tester\\Empty | \\Mailbox - Tess Tester\\Parent\\Child"));
    // Only the prompts of the install itself are counted; the log's message needs an answer.
    lines.insert(lines.indexOf(QStringLiteral("answer Yes")), QStringLiteral("state"));
    lines.insert(lines.size() - 1, QStringLiteral("answer OK"));
    for (const QString &line : lines)
        QVERIFY2(driver.send(line).value("ok").toBool(), qPrintable(line));
    const QJsonArray prompts = driver.send(QStringLiteral("state")).value("prompts").toArray();
    // The question, the log's one message for both folders, and the end.
    QCOMPARE(prompts.size(), 3);
    const QJsonObject told = prompts.at(1).toObject();
    QCOMPARE(told.value("text").toString(), QStringLiteral("The application log could not be written."));
    QVERIFY(told.value("detail").toString().startsWith(log));
    QCOMPARE(told.value("icon").toString(), QStringLiteral("exclamation"));
    QCOMPARE(prompts.at(2).toObject().value("text").toString(),
             QStringLiteral("Agent installed OK in target folder(s)."));
    driver.send(QStringLiteral("quit"));
    QVERIFY(driver.finish());
}

void TestStoreSafety::saveIntoALockedStoreIsRefusedInWords()
{
    DriverProcess program(m_work + QStringLiteral("/first"));
    const QString store =
        program.send(QStringLiteral("fixture ") + testsupport::fixture(QStringLiteral("agents.json")))
            .value("store")
            .toString();
    QVERIFY(program.send(QStringLiteral("start")).value("ok").toBool());
    program.send(QStringLiteral("click \\Mailbox - Tess Tester\\Inbox\\Auto Reply"));
    program.send(
        QStringLiteral("type frmMain txtPreview <SCRIPT RunAt=Server Language=VBScript>\\r\\n' mine"));
    program.send(QStringLiteral("state"));
    const QByteArray before = testsupport::runStoreTool({QStringLiteral("dump"), store}).out;
    {
        // Another program holds the store's write lock for longer than a save waits.
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(store);
        QVERIFY(other.open());
        QSqlQuery q(other);
        QVERIFY(q.exec(QStringLiteral("BEGIN IMMEDIATE")));
        QVERIFY(q.exec(QStringLiteral("UPDATE meta SET value = value WHERE key = 'user'")));
        program.send(QStringLiteral("answer Yes"));
        program.send(QStringLiteral("answer OK"));
        QVERIFY(program.send(QStringLiteral("menu mnuFileSave")).value("ok").toBool());
        QVERIFY(q.exec(QStringLiteral("ROLLBACK")));
        q = QSqlQuery();
        other.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    const QJsonObject state = program.send(QStringLiteral("state"));
    const QJsonObject told = state.value("prompts").toArray().last().toObject();
    QCOMPARE(told.value("icon").toString(), QStringLiteral("information"));
    QVERIFY2(told.value("text").toString().contains(
                 QStringLiteral("Description: The store %1 is locked by another program.").arg(store)),
             qPrintable(told.value("text").toString()));
    // The status text of the wait is gone again.
    QVERIFY2(!state.value("status").toString().contains(QLatin1String("waiting")),
             qPrintable(state.value("status").toString()));
    // Nothing was written, and the store is whole.
    QCOMPARE(testsupport::runStoreTool({QStringLiteral("dump"), store}).out, before);
    program.send(QStringLiteral("quit"));
    QVERIFY(program.finish());
    QCOMPARE(testsupport::StoreCheck::of(store).integrity, QStringLiteral("ok"));
}

QTEST_GUILESS_MAIN(TestStoreSafety)
#include "test_storesafety.moc"
