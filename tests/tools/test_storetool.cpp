// The store tool as a user runs it: exit codes, what goes to standard output
// and standard error, and that a failed command leaves no file behind.
#include "platform/os/applog.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "tests/support/testenv.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <memory>

namespace {

struct Result {
    int code = -1;
    QString out;
    QString err;
};

const QString kUsage = QStringLiteral("Usage: sorrelin-store");

/// The agents of a dumped folder, found by its names from the store down.
QJsonObject dumpedFolder(const QJsonObject &dump, const QStringList &path)
{
    for (const QJsonValue &s : dump.value(QStringLiteral("stores")).toArray()) {
        if (s[QStringLiteral("name")].toString() != path.first())
            continue;
        QJsonArray level = s[QStringLiteral("folders")].toArray();
        QJsonObject found;
        for (int i = 1; i < path.size(); ++i) {
            found = {};
            for (const QJsonValue &f : level)
                if (f[QStringLiteral("name")].toString() == path.at(i))
                    found = f.toObject();
            level = found.value(QStringLiteral("folders")).toArray();
        }
        return found;
    }
    return {};
}

QJsonObject named(const QJsonArray &list, const QString &member, const QString &name)
{
    for (const QJsonValue &v : list)
        if (v[member].toString() == name)
            return v.toObject();
    return {};
}

} // namespace

class TestStoreTool : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }

    void misuse_data();
    void misuse();
    void badFixture();
    void loadThenDumpGivesTheStore();
    void treeShowsEveryKindOfNode();
    void setLog_data();
    void setLog();
    void refusedWriteChangesNothing_data();
    void refusedWriteChangesNothing();
    void routingWrites();
    void logPrintsTheApplicationLog();

private:
    Result tool(const QStringList &args, const QByteArray &input = {}) const
    {
        QProcess p;
        p.setWorkingDirectory(m_home->path());
        p.start(QStringLiteral(SORRELIN_STORE_TOOL), args);
        if (!p.waitForStarted())
            return {};
        p.write(input);
        p.closeWriteChannel();
        p.waitForFinished(120000);
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
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
        const QString path = m_home->file(QStringLiteral("demo.db"));
        store::loadFixture(testsupport::sourceDir() + QStringLiteral("/share/demo.json"), path);
        return path;
    }

    QJsonObject dump(const QString &path) const { return store::dumpStore(*store::Database::open(path)); }

    /// Every file of the temporary home's top folder.
    QStringList files() const { return QDir(m_home->path()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestStoreTool::misuse_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("says");
    QTest::newRow("nothing") << QStringList{} << kUsage;
    QTest::newRow("unknown command") << QStringList{QStringLiteral("frobnicate")}
                                     << QStringLiteral("frobnicate");
    QTest::newRow("generate, word for a number")
        << QStringList{QStringLiteral("generate"), QStringLiteral("g.db"), QStringLiteral("--folders"),
                       QStringLiteral("many")}
        << QStringLiteral("many");
    QTest::newRow("generate, unknown option")
        << QStringList{QStringLiteral("generate"), QStringLiteral("g.db"), QStringLiteral("--colour"),
                       QStringLiteral("3")}
        << QStringLiteral("--colour");
}

void TestStoreTool::misuse()
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

void TestStoreTool::badFixture()
{
    // The message names the file and the member; the rules are the fixture's.
    const QString fixture =
        write(QStringLiteral("bad.json"), R"({"user": "U", "stores": [{"name": "S", "colour": 1}]})");
    const QStringList before = files();
    const Result r = tool({QStringLiteral("load"), fixture, QStringLiteral("bad.db")});
    QCOMPARE(r.code, 1);
    QCOMPARE(r.out, QString());
    QCOMPARE(r.err, QStringLiteral("sorrelin-store: %1: stores[0].colour: unknown member\n").arg(fixture));
    // No store, and nothing half-written beside where it would have been.
    QCOMPARE(files(), before);
}

void TestStoreTool::loadThenDumpGivesTheStore()
{
    const QString fixture = testsupport::fixture(QStringLiteral("agents.json"));
    const Result loaded = tool({QStringLiteral("load"), fixture, QStringLiteral("made.db")});
    QCOMPARE(loaded.code, 0);
    QCOMPARE(loaded.err, QString());
    QCOMPARE(files(), QStringList{QStringLiteral("made.db")});

    const Result dumped = tool({QStringLiteral("dump"), QStringLiteral("made.db")});
    QCOMPARE(dumped.code, 0);
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(dumped.out.toUtf8(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(doc.object(), dump(m_home->file(QStringLiteral("made.db"))));
}

void TestStoreTool::treeShowsEveryKindOfNode()
{
    const QString path = demoStore();
    const Result r = tool({QStringLiteral("tree"), path});
    QCOMPARE(r.code, 0);
    QCOMPARE(r.err, QString());
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY(!lines.isEmpty());
    QVERIFY2(lines.first().startsWith(QStringLiteral("Current User: Alice Admin")),
             qPrintable(lines.first()));
    QVERIFY(lines.first().contains(QStringLiteral("[image 2]")));
    // Each kind of node of the demo profile, with its picture; the depth is
    // the indentation.
    const QList<std::tuple<QString, int, int>> expected = {
        {QStringLiteral("Mailbox - Alice Admin"), 1, 1},
        {QStringLiteral("Auto Reply"), 3, 19},
        {QStringLiteral("Expense Route"), 4, 20},
        {QStringLiteral("Escalation Clip"), 4, 21},
    };
    for (const auto &[text, depth, image] : expected) {
        bool found = false;
        for (const QString &line : lines) {
            const QString indent(depth * 2, QLatin1Char(' '));
            if (line.startsWith(indent + text + QLatin1Char(' ')) &&
                line.contains(QStringLiteral("[image %1]").arg(image)))
                found = true;
        }
        QVERIFY2(found, qPrintable(text));
    }
    // No store of another provider reaches the tree.
    QVERIFY(!r.out.contains(QStringLiteral("Personal Folders")));
}

void TestStoreTool::setLog_data()
{
    QTest::addColumn<bool>("byPath");
    QTest::addColumn<bool>("fromStdin");
    QTest::newRow("by entry id, from a file") << false << false;
    QTest::newRow("by path, from standard input") << true << true;
}

void TestStoreTool::setLog()
{
    QFETCH(bool, byPath);
    QFETCH(bool, fromStdin);
    const QString path = demoStore();
    QString agent = QStringLiteral("\\Mailbox - Alice Admin\\Inbox\\Auto Reply");
    if (!byPath) {
        auto db = store::Database::open(path);
        agent = db->scalar(QStringLiteral(
                               "SELECT entry_id FROM messages WHERE class = 'IPC.Microsoft.EventBinding'"
                               " AND subject = 'Auto Reply'"))
                    .toString();
        QVERIFY(!agent.isEmpty());
    }
    // Every 8-bit byte but NUL, as the service would write them.
    QByteArray log("2026-11-23 07:00:00 Ran\r\n");
    for (int b = 0x80; b <= 0xFF; ++b)
        log += static_cast<char>(b);
    const QString source = fromStdin ? QStringLiteral("-") : write(QStringLiteral("log.txt"), log);
    const Result r = tool({QStringLiteral("set-log"), path, agent, source}, fromStdin ? log : QByteArray());
    QCOMPARE(r.code, 0);
    QCOMPARE(r.err, QString());
    const QJsonObject inbox =
        dumpedFolder(dump(path), {QStringLiteral("Mailbox - Alice Admin"), QStringLiteral("Inbox")});
    const QJsonObject autoReply = named(inbox[QStringLiteral("agents")].toArray(), QStringLiteral("name"),
                                        QStringLiteral("Auto Reply"));
    QCOMPARE(autoReply[QStringLiteral("log")].toString().toLatin1(), log);
}

void TestStoreTool::refusedWriteChangesNothing_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("says");
    const QString lyon =
        QStringLiteral("\\Public Folders\\All Public Folders\\Expense Approvals\\Trip to Lyon");
    const QString nobody = QStringLiteral("\\Mailbox - Alice Admin\\Inbox\\Nobody");
    QTest::newRow("set-log, no such agent") << "set-log" << nobody << QByteArray("text") << nobody;
    QTest::newRow("add-map, not a list")
        << "add-map" << lyon << QByteArray("{\"not\": \"a list\"}") << "expected a JSON list";
    QTest::newRow("add-map, cut short")
        << "add-map" << lyon << QByteArray("[{\"activity\": \"10\",") << "expected a JSON list";
}

void TestStoreTool::refusedWriteChangesNothing()
{
    QFETCH(QString, command);
    QFETCH(QString, target);
    QFETCH(QByteArray, input);
    QFETCH(QString, says);
    const QString path = demoStore();
    const QJsonObject before = dump(path);
    const Result r = tool({command, path, target, write(QStringLiteral("input"), input)});
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.startsWith(QStringLiteral("sorrelin-store: ")) && r.err.contains(says), qPrintable(r.err));
    QCOMPARE(dump(path), before);
}

void TestStoreTool::routingWrites()
{
    const QString path = demoStore();
    const QString message =
        QStringLiteral("\\Public Folders\\All Public Folders\\Expense Approvals\\Team lunch receipts");
    const QByteArray rows = R"([{"activity": "10", "action": "Send", "flags": "0", "args": ["Manager"]}])";
    const QByteArray votes = R"([{"name": "Gina Grant", "status": "Reject", "at": "2026-11-23 09:00:00"}])";
    QCOMPARE(tool({QStringLiteral("add-map"), path, message, write(QStringLiteral("map.json"), rows)}).code,
             0);
    QCOMPARE(tool({QStringLiteral("add-instance"), path, message, QStringLiteral("4711"),
                   QStringLiteral("Waiting"), QStringLiteral("1")})
                 .code,
             0);
    QCOMPARE(tool({QStringLiteral("add-votes"), path, message, QStringLiteral("-")}, votes).code, 0);

    const QJsonObject folder =
        dumpedFolder(dump(path), {QStringLiteral("Public Folders"), QStringLiteral("All Public Folders"),
                                  QStringLiteral("Expense Approvals")});
    const QJsonObject m = named(folder[QStringLiteral("messages")].toArray(), QStringLiteral("subject"),
                                QStringLiteral("Team lunch receipts"));
    QCOMPARE(m[QStringLiteral("map")].toArray(), QJsonDocument::fromJson(rows).array());
    QCOMPARE(m[QStringLiteral("instance")].toObject(),
             (QJsonObject{{QStringLiteral("rui"), 4711},
                          {QStringLiteral("status"), QStringLiteral("Waiting")},
                          {QStringLiteral("row"), 1}}));
    QCOMPARE(m[QStringLiteral("votes")].toArray(), QJsonDocument::fromJson(votes).array());
}

void TestStoreTool::logPrintsTheApplicationLog()
{
    os::ApplicationLog log;
    QVERIFY(log.LogEvent(QStringLiteral("Installed Auto Reply in \\Mailbox - Alice Admin\\Inbox"),
                         os::kLogInformation));
    QVERIFY(log.LogEvent(QStringLiteral("Could not install in \\Public Folders\\Favorites"), os::kLogError));
    const Result r = tool({QStringLiteral("log")});
    QCOMPARE(r.code, 0);
    QStringList expected;
    for (const os::LogRecord &record : log.read())
        expected << os::formatLogLine(record);
    QCOMPARE(expected.size(), 2);
    QCOMPARE(r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
}

QTEST_GUILESS_MAIN(TestStoreTool)
#include "test_storetool.moc"
