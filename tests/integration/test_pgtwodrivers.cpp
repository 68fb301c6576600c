// Two programs on one store on a PostgreSQL server at once: one installs an
// agent into 200 folders while the other renames and deletes the agents
// already there. Afterwards every agent is whole or wholly absent, and every
// install the first program logged as done is in the store.
#include "agentlines.h"
#include "driverprocess.h"
#include "platform/store/database.h"
#include "storecheck.h"
#include "tests/support/pgserver.h"
#include "tests/support/testenv.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFolders = 200;
const QString kMailbox = u"Mailbox - Tess Tester"_s;

QString folderName(int i)
{
    return u"F%1"_s.arg(i, 3, 10, QLatin1Char('0'));
}

/// A store of 200 folders with the agent "Old" in each.
const char kStoreJson[] = R"({"user": "Tess Tester", "profile": "Test", "hosts": [{"name": "H1", "handlers":
  [{"class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler"}]}],
  "stores": [{"name": "%1", "host": "H1", "folders": [%2]}]})";
const char kFolderJson[] = R"({"name": "%1", "agents": [{"name": "Old", "script": "\u0027 old\r\n",
  "created": "2026-01-02 03:04:05", "modified": "2026-01-02 03:04:05"}]})";

QByteArray fixture()
{
    QStringList folders;
    for (int i = 0; i < kFolders; ++i)
        folders << QString::fromLatin1(kFolderJson).arg(folderName(i));
    return QString::fromLatin1(kStoreJson).arg(kMailbox, folders.join(QLatin1Char(','))).toUtf8();
}

} // namespace

class TestPgTwoDrivers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void installWhileAnotherRenamesAndDeletes()
    {
        testsupport::PgServer server;
        SORRELIN_REQUIRE_PGSERVER(server);
        testsupport::TestHome home;
        const QString fixturePath = home.file(u"many.json"_s);
        QFile f(fixturePath);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(fixture());
        f.close();

        qputenv("SORRELIN_DRIVER_STORE_SERVER", server.location(u"postgres"_s).toUtf8());
        testsupport::DriverProcess installer(home.file(u"a"_s));
        const QJsonObject made = installer.send(u"fixture "_s + fixturePath);
        qunsetenv("SORRELIN_DRIVER_STORE_SERVER");
        const QString location = made.value(u"store"_s).toString();
        QVERIFY2(location.startsWith("postgresql://"_L1), QJsonDocument(made).toJson().constData());
        const store::Location where = store::Location::parse(location);

        testsupport::DriverProcess other(home.file(u"b"_s));
        for (const auto &[name, value] :
             {std::pair{u"User"_s, u"\"Tess Tester\""_s}, std::pair{u"Server"_s, where.host},
              std::pair{u"Port"_s, QString::number(where.port)}, std::pair{u"Database"_s, where.database},
              std::pair{u"Login"_s, where.user}})
            QVERIFY(other.send(u"reg %1 %2 %3"_s.arg(testsupport::kTestProfileKey, name, value))
                        .value("ok")
                        .toBool());
        other.send(u"answer Test"_s);
        QVERIFY(other.ok(u"start"_s));
        QVERIFY(installer.ok(u"start"_s));

        // The installer's whole install goes at once, and the other program
        // works on the same folders meanwhile.
        QStringList targets;
        for (int i = 0; i < kFolders; ++i)
            targets << u"\\%1\\%2"_s.arg(kMailbox, folderName(i));
        const QStringList install = testsupport::installLines(u"Greeter"_s, targets.join(u" | "_s));
        for (const QString &line : install.mid(0, install.size() - 1))
            QVERIFY2(installer.send(line).value("ok").toBool(), qPrintable(line));
        installer.post({install.last()});
        // What the other program did without a word of failure must be in the store.
        QList<bool> done;
        for (int i = 0; i < kFolders; ++i) {
            const QString agent = u"\\%1\\%2\\Old"_s.arg(kMailbox, folderName(i));
            bool ok = true;
            for (const QString &line :
                 i % 2 ? testsupport::removeLines(agent) : testsupport::renameLines(agent, u"Renamed"_s))
                ok = other.send(line).value("ok").toBool() && ok;
            const QJsonArray prompts = other.send(u"state"_s).value("prompts").toArray();
            done << (ok && prompts.size() <= 1);
        }
        // The answer to the install comes when it is over.
        QProcess &installing = installer.process();
        while (!installing.canReadLine())
            QVERIFY(installing.waitForReadyRead(300000));
        const QByteArray answer = installing.readLine();
        QVERIFY2(QJsonDocument::fromJson(answer).object().value("ok").toBool(), answer.constData());
        const QJsonObject installed = installer.send(u"log"_s);
        QVERIFY(other.quit());
        QVERIFY(installer.quit());

        int logged = 0;
        for (const QJsonValue &line : installed.value(u"lines"_s).toArray())
            logged += line[u"text"_s].toString().contains("Greeter installed in"_L1);

        const std::unique_ptr<store::Database> db = store::Database::open(location);
        const auto count = [&](const QString &sql, const QVariantList &values = {}) {
            return db->scalar(sql, values).toInt();
        };
        QCOMPARE(testsupport::StoreCheck::halfAgentsIn(*db), QSet<QString>());
        qInfo("installed: %d; renamed: %d; old left: %d", logged,
              count(u"SELECT count(*) FROM bindings WHERE name = 'Renamed'"_s),
              count(u"SELECT count(*) FROM bindings WHERE name = 'Old'"_s));
        QVERIFY(logged > 0);
        const QString inFolder =
            u"SELECT count(*) FROM bindings b JOIN folders f ON f.id = b.folder WHERE f.name = ? AND b.name = ?"_s;
        for (int i = 0; i < kFolders; ++i)
            if (done.at(i))
                QVERIFY2(count(inFolder, {folderName(i), u"Old"_s}) == 0 &&
                             count(inFolder, {folderName(i), u"Renamed"_s}) == (i % 2 ? 0 : 1),
                         qPrintable(folderName(i)));
        QCOMPARE(count(u"SELECT count(*) FROM bindings WHERE name = 'Greeter'"_s), logged);
        QVERIFY(done.count(true) > kFolders / 2);
    }
};

QTEST_GUILESS_MAIN(TestPgTwoDrivers)
#include "test_pgtwodrivers.moc"
