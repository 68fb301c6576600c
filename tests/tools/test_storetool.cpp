// The store tool as a user runs it: exit codes, what goes to standard output
// and standard error, and that a failed command leaves no file behind.
#include "platform/os/applog.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "tests/support/driverprocess.h"
#include "tests/support/storekit.h"
#include "tests/support/testenv.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct Result {
    int code = -1;
    QString out;
    QString err;
};

const QString kUsage = u"Usage: sorrelin-store"_s;
const QString kExpenses = u"\\Public Folders\\All Public Folders\\Expense Approvals\\"_s;

/// The object of `list` whose `member` is `name`.
QJsonObject named(const QJsonValue &list, const QString &member, const QString &name)
{
    for (const QJsonValue &v : list.toArray())
        if (v[member].toString() == name)
            return v.toObject();
    return {};
}

} // namespace

class TestStoreTool : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup()
    {
        QFile::setPermissions(m_home->path(), QFileDevice::Permissions(0x7700));
        m_home.reset();
    }

    void misuse_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("says");
        QTest::newRow("nothing") << QStringList{} << kUsage;
        QTest::newRow("unknown command") << QStringList{u"frobnicate"_s} << u"frobnicate"_s;
        QTest::newRow("generate, unknown option")
            << QStringList{u"generate"_s, u"g.db"_s, u"--colour"_s, u"3"_s} << u"--colour"_s;
        QTest::newRow("history, days in words")
            << QStringList{u"history"_s, u"--keep"_s, u"many"_s, u"g.db"_s}
            << u"--keep must be a whole number"_s;
        QTest::newRow("show, no change number")
            << QStringList{u"show"_s, u"g.db"_s, u"last"_s} << u"CHANGE"_s;
    }
    void misuse()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, says);
        const Result r = tool(args);
        QCOMPARE(r.code, 2);
        QVERIFY2(r.err.contains(says), qPrintable(r.err));
        QVERIFY2(r.err.contains(kUsage), qPrintable(r.err));
        QCOMPARE(r.out, QString());
        // A misused command touches nothing.
        QCOMPARE(files(), QStringList());
    }

    void badFixture()
    {
        // The message names the file and the member; the rules are the fixture's.
        const QString fixture =
            write(u"bad.json"_s, R"({"user": "U", "stores": [{"name": "S", "colour": 1}]})");
        const Result r = tool({u"load"_s, fixture, u"bad.db"_s});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.out, QString());
        QCOMPARE(r.err, u"sorrelin-store: %1: stores[0].colour: unknown member\n"_s.arg(fixture));
        // No store, and nothing half-written beside where it would have been.
        QCOMPARE(files(), QStringList{u"bad.json"_s});
    }

    void loadThenDumpGivesTheStore()
    {
        const Result loaded = tool({u"load"_s, testsupport::fixture(u"agents.json"_s), u"made.db"_s});
        QCOMPARE(loaded.code, 0);
        QCOMPARE(loaded.err, QString());
        QCOMPARE(files(), QStringList{u"made.db"_s});
        const Result dumped = tool({u"dump"_s, u"made.db"_s});
        QCOMPARE(dumped.code, 0);
        QCOMPARE(QJsonDocument::fromJson(dumped.out.toUtf8()).object(), dump(m_home->file(u"made.db"_s)));
    }

    void refusedMapChangesNothing()
    {
        const QString path = demoStore();
        const QJsonObject before = dump(path);
        const Result r = tool(
            {u"add-map"_s, path, kExpenses + u"Trip to Lyon"_s, write(u"input"_s, "{\"not\": \"a list\"}")});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err.left(16), u"sorrelin-store: "_s);
        QVERIFY2(r.err.contains(u"expected a JSON list"_s), qPrintable(r.err));
        QCOMPARE(dump(path), before);
    }

    void serviceWrites()
    {
        const QString path = demoStore();
        // Every 8-bit byte but NUL, as the service would write them.
        QByteArray log("2026-11-23 07:00:00 Ran\r\n");
        for (int b = 0x80; b <= 0xFF; ++b)
            log += static_cast<char>(b);
        const QString autoReply = u"\\Mailbox - Alice Admin\\Inbox\\Auto Reply"_s;
        QCOMPARE(tool({u"set-log"_s, path, autoReply, write(u"log"_s, log)}).code, 0);
        const QString message = kExpenses + u"Team lunch receipts"_s;
        const QByteArray rows =
            R"([{"activity": "10", "action": "Send", "flags": "0", "args": ["Manager"]}])";
        const QByteArray votes =
            R"([{"name": "Gina Grant", "status": "Reject", "at": "2026-11-23 09:00:00"}])";
        QCOMPARE(tool({u"add-map"_s, path, message, write(u"map.json"_s, rows)}).code, 0);
        QCOMPARE(tool({u"add-instance"_s, path, message, u"4711"_s, u"Waiting"_s, u"1"_s}).code, 0);
        QCOMPARE(tool({u"add-votes"_s, path, message, u"-"_s}, votes).code, 0);
        const QJsonObject after = dump(path);
        const QJsonValue inbox =
            named(named(after[u"stores"_s], u"name"_s, u"Mailbox - Alice Admin"_s)[u"folders"_s], u"name"_s,
                  u"Inbox"_s)[u"agents"_s];
        QCOMPARE(named(inbox, u"name"_s, u"Auto Reply"_s)[u"log"_s].toString().toLatin1(), log);
        QJsonValue folder = named(after[u"stores"_s], u"name"_s, u"Public Folders"_s);
        for (const QString &name : {u"All Public Folders"_s, u"Expense Approvals"_s})
            folder = named(folder[u"folders"_s], u"name"_s, name);
        const QJsonObject m = named(folder[u"messages"_s], u"subject"_s, u"Team lunch receipts"_s);
        QCOMPARE(m[u"map"_s].toArray(), QJsonDocument::fromJson(rows).array());
        QCOMPARE(m[u"instance"_s].toObject(),
                 (QJsonObject{{u"rui"_s, 4711}, {u"status"_s, u"Waiting"_s}, {u"row"_s, 1}}));
        QCOMPARE(m[u"votes"_s].toArray(), QJsonDocument::fromJson(votes).array());
    }

    void readOnlyStoreIsReadNotWritten_data()
    {
        QTest::addColumn<bool>("folder"); // the folder is read-only, not the file
        QTest::newRow("read-only file") << false;
        QTest::newRow("read-only folder") << true;
    }
    void readOnlyStoreIsReadNotWritten()
    {
        QFETCH(bool, folder);
        const QString path = demoStore();
        const QString autoReply = u"\\Mailbox - Alice Admin\\Inbox\\Auto Reply"_s;
        const QByteArray tree = tool({u"tree"_s, path}).out.toUtf8();
        const QByteArray dumped = tool({u"dump"_s, path}).out.toUtf8();
        QVERIFY(tree.contains("Auto Reply"));
        const QByteArray before = digest(path);
        // Permissions don't bind root: then the tool runs as nobody.
        const int user = geteuid() == 0 ? 65534 : -1;
        QFile::setPermissions(m_home->path(), QFileDevice::Permissions(folder ? 0x5555 : 0x7777));
        if (!folder)
            QFile::setPermissions(path,
                                  QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
        for (const auto &[command, out] : {std::pair{u"tree"_s, tree}, std::pair{u"dump"_s, dumped}}) {
            const Result r = tool({command, path}, {}, user);
            QVERIFY2(r.code == 0, qPrintable(r.err));
            QCOMPARE(r.out.toUtf8(), out);
        }
        const QString refused =
            u"sorrelin-store: The store %1 is read-only; nothing was written.\n"_s.arg(path);
        for (const QStringList &write :
             {QStringList{u"set-log"_s, path, autoReply, u"-"_s},
              QStringList{u"add-map"_s, path, kExpenses + u"Trip to Lyon"_s, u"-"_s}}) {
            const Result r = tool(write, "[]", user);
            QCOMPARE(r.code, 1);
            QCOMPARE(r.err, refused);
        }
        QCOMPARE(digest(path), before);
    }

    void historyShowAndRestore()
    {
        const QString inbox = u"\\Mailbox - Tess Tester\\Inbox"_s;
        QFile f(testsupport::fixture(u"agents.json"_s));
        QVERIFY(f.open(QIODevice::ReadOnly));
        testkit::StoreKit kit(f.readAll());
        const QString path = kit.storePath;
        const QJsonObject original = agent(dump(path), u"Auto Reply"_s);
        // The tool writes as the system's user.
        qputenv("USER", "Rita Restorer");
        const QByteArray first = original[u"script"_s].toString().toLatin1();

        // A script saved over, then put back as it was.
        mapi::Message message = kit.hidden(inbox, u"Auto Reply"_s);
        message.Fields(mapi::PR_SCRIPT).setValue(QByteArray("' second\r\n"));
        message.Update();
        QCOMPARE(lines(tool({u"history"_s, path})),
                 QStringList{u"1\t*\tTess Tester\tscript\tAuto Reply\t"_s + inbox});
        const Result shown = tool({u"show"_s, path, u"1"_s});
        QCOMPARE(shown.code, 0);
        QCOMPARE(shown.out.toLatin1(), first);
        Result r = tool({u"restore"_s, path, u"1"_s});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out,
                 u"Restored \"Auto Reply\" in %1 as it was before change 1, as change 2\n"_s.arg(inbox));
        QCOMPARE(agent(dump(path), u"Auto Reply"_s)[u"script"_s].toString().toLatin1(), first);
        QCOMPARE(tool({u"show"_s, path, u"2"_s}).out, u"' second\r\n"_s);

        // Deleted as the program deletes it, and brought back whole.
        events::EventSource source = kit.events.GetEventSource(kit.folder(inbox), true);
        {
            const auto transaction = kit.session.BeginTransaction();
            source.Bindings().Remove(source.Bindings().Item(1));
            kit.hidden(inbox, u"Auto Reply"_s).Delete();
            transaction->commit();
        }
        QVERIFY(agent(dump(path), u"Auto Reply"_s).isEmpty());
        QCOMPARE(lines(tool({u"history"_s, path, inbox + u"\\Auto Reply"_s})),
                 (QStringList{u"4\t*\tTess Tester\tdeleted\tAuto Reply\t"_s + inbox,
                              u"3\t*\tTess Tester\tdeleted\tAuto Reply\t"_s + inbox,
                              u"2\t*\tRita Restorer\trestored\tAuto Reply\t"_s + inbox,
                              u"1\t*\tTess Tester\tscript\tAuto Reply\t"_s + inbox}));
        for (const QString &change : {u"4"_s, u"3"_s}) {
            const Result restored = tool({u"restore"_s, path, change});
            QVERIFY2(restored.code == 0, qPrintable(restored.err));
            QJsonObject back = agent(dump(path), u"Auto Reply"_s);
            QVERIFY(back.take(u"modified"_s).toString() > original[u"modified"_s].toString());
            QJsonObject expected = original;
            expected.remove(u"modified"_s);
            expected[u"modifiedBy"_s] = u"Rita Restorer"_s;
            QCOMPARE(back, expected);
        }

        // Nothing to restore before a creation, and no change that isn't kept.
        r = tool({u"show"_s, path, u"99"_s});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, u"sorrelin-store: The history of the store keeps no change 99.\n"_s);
        QCOMPARE(tool({u"history"_s, path, inbox + u"\\Nobody"_s}).err,
                 u"sorrelin-store: No agent or folder is named \"%1\\Nobody\".\n"_s.arg(inbox));

        // Only the changes of the last days are kept.
        kit.db().run(u"UPDATE agent_history SET at = '2000-01-01 00:00:00' WHERE id <= 4"_s);
        r = tool({u"history"_s, u"--keep"_s, u"30"_s, path});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, u"Removed 4 change(s) older than 30 day(s) from the history of %1\n"_s.arg(path));
        QCOMPARE(lines(tool({u"history"_s, path})),
                 (QStringList{u"6\t*\tRita Restorer\trestored\tAuto Reply\t"_s + inbox,
                              u"5\t*\tRita Restorer\trestored\tAuto Reply\t"_s + inbox}));
        QCOMPARE(tool({u"show"_s, path, u"4"_s}).code, 1);
    }

    void logPrintsTheApplicationLog()
    {
        os::ApplicationLog log;
        QVERIFY(
            log.LogEvent(u"Installed Auto Reply in \\Mailbox - Alice Admin\\Inbox"_s, os::kLogInformation));
        QVERIFY(log.LogEvent(u"Could not install in \\Public Folders\\Favorites"_s, os::kLogError));
        const Result r = tool({u"log"_s});
        QCOMPARE(r.code, 0);
        QStringList expected;
        for (const os::LogRecord &record : log.read())
            expected << os::formatLogLine(record);
        QCOMPARE(expected.size(), 2);
        QCOMPARE(r.out.split(u'\n', Qt::SkipEmptyParts), expected);
    }

private:
    Result tool(const QStringList &args, const QByteArray &input = {}, int asUser = -1) const
    {
        QProcess p;
        p.setWorkingDirectory(m_home->path());
        const QStringList command = testsupport::asUserCommand(QStringLiteral(SORRELIN_STORE_TOOL), asUser);
        p.start(command.first(), command.mid(1) + args);
        if (!p.waitForStarted())
            return {};
        p.write(input);
        p.closeWriteChannel();
        p.waitForFinished(120000);
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
    }

    /// The rows a history lists, their times as "*".
    static QStringList lines(const Result &r)
    {
        QStringList rows = r.out.split(u'\n', Qt::SkipEmptyParts);
        if (r.code != 0 || rows.value(0) != u"Change\tWhen\tWho\tWhat\tAgent\tFolder"_s)
            return {r.out + r.err};
        rows.removeFirst();
        for (QString &row : rows) {
            QStringList cells = row.split(u'\t');
            cells[1] = u"*"_s;
            row = cells.join(u'\t');
        }
        return rows;
    }

    /// The Inbox agent `name` of the agents fixture's store, as dumped.
    static QJsonObject agent(const QJsonObject &dumped, const QString &name)
    {
        return named(
            named(dumped[u"stores"_s].toArray().at(0)[u"folders"_s], u"name"_s, u"Inbox"_s)[u"agents"_s],
            u"name"_s, name);
    }

    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile f(m_home->file(name));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("could not write a test file");
        return f.fileName();
    }

    /// A store made from the demo profile's fixture.
    QString demoStore() const
    {
        const QString path = m_home->file(u"demo.db"_s);
        store::loadFixture(testsupport::sourceDir() + u"/share/demo.json"_s, path);
        return path;
    }

    QJsonObject dump(const QString &path) const { return store::dumpStore(*store::Database::open(path)); }

    static QByteArray digest(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256)
                                           : QByteArray();
    }

    /// Every file of the temporary home's top folder.
    QStringList files() const { return QDir(m_home->path()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<testsupport::TestHome> m_home;
};

QTEST_GUILESS_MAIN(TestStoreTool)
#include "test_storetool.moc"
