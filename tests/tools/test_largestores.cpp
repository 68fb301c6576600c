// Stores of 20,000 nested folder levels and of 100,000 folders side by side,
// opened as a user opens them: the program through the driver, and the
// store tool's tree, dump and load. Each run is a child process held to a
// memory limit; the tree stops at the stated depth with a message that says
// so, and a dump holds every level and loads again.
#include "platform/store/database.h"
#include "platform/store/folderlevels.h"
#include "platform/store/generate.h"
#include "tests/support/driverprocess.h"
#include "tests/support/testenv.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t kAddressSpace = rlim_t(3) << 30; // what a child may map
constexpr long kPeakMB = 1024;                    // what it may keep resident

using Result = testsupport::ToolRun;

/// Runs a program under the memory limit, with `input` on its standard input.
Result run(const QString &program, const QStringList &args, const QByteArray &input = {})
{
    return testsupport::runProgram(QStringList{program} + args, input, [] {
        const rlimit limit{kAddressSpace, kAddressSpace};
        setrlimit(RLIMIT_AS, &limit);
    });
}

/// The most any child so far has kept resident.
long childrenPeakMB()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss / 1024;
}

bool isFolderImage(int image)
{
    return image == 6 || image == 7 || image == 18;
}

} // namespace

class TestLargeStores : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const auto &[name, folders, shape] : {std::tuple{"deep", 20000, store::FolderShape::Deep},
                                                   std::tuple{"wide", 100000, store::FolderShape::Wide}}) {
            store::generateStore(
                {.stores = 1, .folders = folders, .agents = folders / 100, .messages = 0, .shape = shape},
                m_home.file(QString::fromLatin1(name) + u".db"_s));
        }
    }

    void storeTool_data()
    {
        QTest::addColumn<QString>("store");
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("folders"); // -1: refused
        QTest::addColumn<QString>("err");
        const QString deeper = u"sorrelin-store tree: "_s + store::folderLevelsText() + '\n';
        QTest::newRow("deep tree") << "deep"
                                   << "tree" << 0 << store::kMaxFolderLevels << deeper;
        QTest::newRow("wide dump") << "wide"
                                   << "dump" << 0 << 100000 << QString();
    }
    void storeTool()
    {
        QFETCH(QString, store);
        QFETCH(QString, command);
        QFETCH(int, code);
        QFETCH(int, folders);
        QFETCH(QString, err);
        const Result r = run(QStringLiteral(SORRELIN_STORE_TOOL), {command, m_home.file(store + u".db"_s)});
        QCOMPARE(r.code, code);
        QVERIFY2(QString::fromUtf8(r.err).endsWith(err), r.err.constData());
        if (command == "tree"_L1 && folders >= 0) {
            int shown = 0;
            for (const QString &line : QString::fromUtf8(r.out).split(u'\n'))
                shown += isFolderImage(line.section(u"[image "_s, 1).section(u']', 0, 0).toInt());
            QCOMPARE(shown, folders);
        } else if (folders >= 0) {
            QCOMPARE(QJsonDocument::fromJson(r.out)[u"stores"_s][0][u"folders"_s].toArray().size(), folders);
        }
        QVERIFY2(childrenPeakMB() <= kPeakMB, QByteArray::number(childrenPeakMB()).constData());
    }

    /// Every level of the deep store goes into its dump, and a load of the
    /// dump gives a store that dumps the same, each run within the limits.
    void deepRoundTrip()
    {
        const QString dumped = m_home.file(u"deep.json"_s);
        const QString loaded = m_home.file(u"deep-loaded.db"_s);
        const Result first = run(QStringLiteral(SORRELIN_STORE_TOOL), {u"dump"_s, m_home.file(u"deep.db"_s)});
        QCOMPARE(first.code, 0);
        QVERIFY2(first.err.isEmpty(), first.err.constData());
        QFile file(dumped);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(first.out) == first.out.size());
        file.close();
        const Result load = run(QStringLiteral(SORRELIN_STORE_TOOL), {u"load"_s, dumped, loaded});
        QVERIFY2(load.code == 0, load.err.constData());
        QCOMPARE(store::folderLevels(*store::Database::open(loaded)), 20000);
        const Result second = run(QStringLiteral(SORRELIN_STORE_TOOL), {u"dump"_s, loaded});
        QCOMPARE(second.code, 0);
        QVERIFY(second.out == first.out);
        QVERIFY2(childrenPeakMB() <= kPeakMB, QByteArray::number(childrenPeakMB()).constData());
    }

    void program_data()
    {
        QTest::addColumn<QString>("store");
        QTest::addColumn<int>("folders");
        QTest::addColumn<QString>("status");
        QTest::newRow("deep") << "deep" << store::kMaxFolderLevels << store::folderLevelsText();
        QTest::newRow("wide") << "wide" << 100000 << u"Ready"_s;
    }
    void program()
    {
        QFETCH(QString, store);
        QFETCH(int, folders);
        QFETCH(QString, status);
        const QByteArray profiles =
            "reg \"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\"
            "Windows Messaging Subsystem\\Profiles";
        const QByteArray commands = profiles + "\\Big\" User Alice Admin\n" + profiles + "\\Big\" Store " +
                                    m_home.file(store + u".db"_s).toUtf8() + '\n' + profiles +
                                    "\" DefaultProfile Big\nstart\nstate\nquit\n";
        const Result r = run(QStringLiteral(SORRELIN_DRIVER), {}, commands);
        QCOMPARE(r.code, 0);
        const QList<QByteArray> answers = r.out.trimmed().split('\n');
        QCOMPARE(answers.size(), 6);
        for (const QByteArray &answer : answers)
            QVERIFY2(QJsonDocument::fromJson(answer)[u"ok"_s].toBool(), answer.left(300).constData());
        const QJsonDocument state = QJsonDocument::fromJson(answers.at(4));
        QCOMPARE(state[u"status"_s].toString(), status);
        int shown = 0;
        for (const QJsonValue &node : state[u"tree"_s].toArray())
            shown += isFolderImage(node[u"image"_s].toInt());
        QCOMPARE(shown, folders);
        QVERIFY2(childrenPeakMB() <= kPeakMB, QByteArray::number(childrenPeakMB()).constData());
    }

private:
    testsupport::TestHome m_home;
};

QTEST_GUILESS_MAIN(TestLargeStores)
#include "test_largestores.moc"
