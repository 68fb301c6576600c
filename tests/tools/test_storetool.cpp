#include "tests/support/testenv.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

namespace {

struct Run {
    int code = -1;
    QString out;
    QString err;
};

Run storeTool(const QStringList &arguments)
{
    QProcess p;
    p.start(QStringLiteral(SORRELIN_STORE_TOOL), arguments);
    p.waitForFinished(60000);
    return Run{p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

} // namespace

class TestStoreTool : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void misuse_data();
    void misuse();
    void badFixtureLeavesNoFile();
    void loadTreeDumpLoad();
    void serviceWrites();

private:
    testsupport::TestHome m_home;
};

void TestStoreTool::misuse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("nothing") << QStringList{} << 2 << "Usage: sorrelin-store";
    QTest::newRow("unknown command") << QStringList{QStringLiteral("frobnicate")} << 2 << "unknown command";
    QTest::newRow("load without target") << QStringList{QStringLiteral("load"), QStringLiteral("x.json")} << 2
                                         << "expected 2 argument(s)";
    QTest::newRow("generate with a bad number")
        << QStringList{QStringLiteral("generate"), QStringLiteral("g.db"), QStringLiteral("--folders"), QStringLiteral("many")}
        << 2 << "--folders must be a whole number";
    QTest::newRow("generate with an unknown option")
        << QStringList{QStringLiteral("generate"), QStringLiteral("g.db"), QStringLiteral("--colour"), QStringLiteral("1")}
        << 2 << "unknown option --colour";
    QTest::newRow("tree of a missing store") << QStringList{QStringLiteral("tree"), QStringLiteral("/no/such.db")} << 1
                                             << "does not exist";
}

void TestStoreTool::misuse()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, message);
    const Run r = storeTool(arguments);
    QCOMPARE(r.code, code);
    QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QVERIFY(r.out.isEmpty());
}

void TestStoreTool::badFixtureLeavesNoFile()
{
    QFile bad(m_home.file(QStringLiteral("bad.json")));
    bad.open(QIODevice::WriteOnly);
    bad.write(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "F", "agents": [{"name": "A", "mask": "all"}]}]}]})");
    bad.close();
    const QString target = m_home.file(QStringLiteral("bad.db"));
    const Run r = storeTool({QStringLiteral("load"), bad.fileName(), target});
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(QStringLiteral("stores[0].folders[0].agents[0].mask")), qPrintable(r.err));
    QVERIFY(!QFile::exists(target));
}

void TestStoreTool::loadTreeDumpLoad()
{
    const QString first = m_home.file(QStringLiteral("first.db"));
    QCOMPARE(storeTool({QStringLiteral("load"), testsupport::fixture(QStringLiteral("agents.json")), first}).code, 0);
    const Run tree = storeTool({QStringLiteral("tree"), first});
    QCOMPARE(tree.code, 0);
    QVERIFY(tree.out.contains(QStringLiteral("Current User: Tess Tester  [image 2]")));
    QVERIFY(tree.out.contains(QStringLiteral("      Router  [image 20]")));
    QVERIFY(!tree.out.contains(QStringLiteral("Hidden Agent")));
    // A dump loads back to the same tree.
    const Run dump = storeTool({QStringLiteral("dump"), first});
    QCOMPARE(dump.code, 0);
    QFile json(m_home.file(QStringLiteral("dump.json")));
    json.open(QIODevice::WriteOnly);
    json.write(dump.out.toUtf8());
    json.close();
    const QString second = m_home.file(QStringLiteral("second.db"));
    QCOMPARE(storeTool({QStringLiteral("load"), json.fileName(), second}).code, 0);
    const auto withoutKeys = [](QString text) {
        text.remove(QRegularExpression(QStringLiteral("  [0-9A-F]{48}")));
        return text;
    };
    QCOMPARE(withoutKeys(storeTool({QStringLiteral("tree"), second}).out), withoutKeys(tree.out));
}

void TestStoreTool::serviceWrites()
{
    const QString db = m_home.file(QStringLiteral("service.db"));
    QCOMPARE(storeTool({QStringLiteral("load"), testsupport::fixture(QStringLiteral("agents.json")), db}).code, 0);
    QFile log(m_home.file(QStringLiteral("log.txt")));
    log.open(QIODevice::WriteOnly);
    log.write("ran at 6\r\n");
    log.close();
    QCOMPARE(storeTool({QStringLiteral("set-log"), db, QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Router"),
                        log.fileName()})
                 .code,
             0);
    QCOMPARE(storeTool({QStringLiteral("add-instance"), db, QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Hello"),
                        QStringLiteral("42"), QStringLiteral("Waiting"), QStringLiteral("3")})
                 .code,
             0);
    const QJsonObject dump = QJsonDocument::fromJson(storeTool({QStringLiteral("dump"), db}).out.toUtf8()).object();
    const QJsonObject inbox = dump[QStringLiteral("stores")][0][QStringLiteral("folders")][0].toObject();
    QCOMPARE(inbox[QStringLiteral("agents")][1][QStringLiteral("log")].toString(), QStringLiteral("ran at 6\r\n"));
    QCOMPARE(inbox[QStringLiteral("messages")][0][QStringLiteral("instance")][QStringLiteral("rui")].toInt(), 42);
    const Run missing = storeTool({QStringLiteral("set-log"), db, QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Nobody"),
                                   log.fileName()});
    QCOMPARE(missing.code, 1);
    QVERIFY(missing.err.contains(QStringLiteral("No agent is named")));
}

QTEST_GUILESS_MAIN(TestStoreTool)
#include "test_storetool.moc"
