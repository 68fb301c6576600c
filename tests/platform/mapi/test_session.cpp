// The session: logon through the profile dialog or by name, the demo
// profile, the error numbers of logon and look-up, and logoff.
#include "platform/mapi/profiles.h"
#include "platform/mapi/session.h"
#include "platform/registry/registry.h"
#include "platform/store/fixture.h"
#include "platform/ui/scriptedprompter.h"
#include "tests/support/storekit.h"
#include "tests/support/testenv.h"

#include <QFile>
#include <QJsonDocument>
#include <QSet>
#include <QStandardPaths>
#include <QtTest>

using testkit::errorOf;

namespace {

const QByteArray kFixture = R"({
  "user": "Tess Tester", "profile": "Work",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [
    { "name": "Mailbox - Tess Tester", "host": "H1",
      "folders": [ { "name": "Inbox", "agents": [ { "name": "Auto Reply" } ],
                     "messages": [ { "subject": "Hello", "received": "2026-02-03 04:05:06" } ] },
                   { "name": "Sent Items" } ] },
    { "name": "Public Folders", "host": "H1", "folders": [ { "name": "Shared" } ] },
    { "name": "Personal", "provider": "Personal Folders", "folders": [ { "name": "Archive" } ] } ] })";

constexpr int32_t kUserCancel = static_cast<int32_t>(0x80040113);
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);
constexpr int32_t kNotLoggedOn = static_cast<int32_t>(0x80040111);
constexpr int32_t kCorrupt = static_cast<int32_t>(0x80040115);

QString registryText(const QString &key, const QString &name)
{
    using namespace registry;
    Registry &reg = Registry::system();
    HKEY h = 0;
    if (reg.RegOpenKeyEx(HKEY_CURRENT_USER, key, &h) != ERROR_SUCCESS)
        return QStringLiteral("<no key>");
    uint32_t size = 0;
    QByteArray data;
    QString value = QStringLiteral("<no value>");
    if (reg.RegQueryValueEx(h, name, nullptr, nullptr, &size) == ERROR_SUCCESS &&
        reg.RegQueryValueEx(h, name, nullptr, &data, &size) == ERROR_SUCCESS)
        value = QString::fromUtf8(data.left(size));
    reg.RegCloseKey(h);
    return value;
}

} // namespace

// The profiles live in the process's one registry, so the slots run in this
// order on one home: first with no profile at all.
class TestSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_prompter.takePrompts(); }
    void cancelledLogonRaises();
    void firstLogonMakesTheDemoProfile();
    void laterLogonsOfferTheProfiles();
    void logonByName();
    void unknownProfileIsNotFound();
    void storeErrorAtLogon_data();
    void storeErrorAtLogon();
    void failedLogonKeepsTheSession();
    void infoStoresInTheirOrder();
    void lookUpNamesNothing_data();
    void lookUpNamesNothing();
    void nullStoreLooksEverywhere();

private:
    testsupport::TestHome m_home;
    QString m_store;
    ui::ScriptedPrompter m_prompter;
};

void TestSession::initTestCase()
{
    m_store = m_home.file(QStringLiteral("work.db"));
    store::loadFixture(QJsonDocument::fromJson(kFixture).object(), m_store);
}

void TestSession::cancelledLogonRaises()
{
    mapi::Session session(m_prompter);
    m_prompter.enqueue(QStringLiteral("Cancel"));
    QCOMPARE(errorOf([&] { session.Logon(); }), kUserCancel);
    QCOMPARE(m_prompter.takePrompts().value(0).extra.value(QStringLiteral("offerDemo")).toBool(), true);
    // Nothing was made.
    QVERIFY(!QFile::exists(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           QStringLiteral("/sorrelin/Demo.db")));
    QCOMPARE(errorOf([&] { session.CurrentUser(); }), kNotLoggedOn);
}

void TestSession::firstLogonMakesTheDemoProfile()
{
    mapi::Session session(m_prompter);
    m_prompter.enqueue(QStringLiteral("Demo"));
    session.Logon();
    QCOMPARE(session.CurrentUser(), QStringLiteral("Alice Admin"));

    const QString demo = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/sorrelin/Demo.db");
    QVERIFY(QFile::exists(demo));
    const QString key = mapi::profilesKey() + QStringLiteral("\\Demo");
    QCOMPARE(registryText(key, QStringLiteral("Store")), demo);
    QCOMPARE(registryText(key, QStringLiteral("User")), QStringLiteral("Alice Admin"));
    QCOMPARE(registryText(mapi::profilesKey(), QStringLiteral("DefaultProfile")), QStringLiteral("Demo"));
}

void TestSession::laterLogonsOfferTheProfiles()
{
    mapi::writeProfile(mapi::Profile{QStringLiteral("Work"), QStringLiteral("Tess Tester"), m_store});
    const ui::ProfileChoice choice = mapi::profileChoice();
    QCOMPARE(choice.offerDemo, false);
    QCOMPARE(choice.profiles, (QStringList{QStringLiteral("Demo"), QStringLiteral("Work")}));
    QCOMPARE(choice.defaultProfile, QStringLiteral("Work"));

    mapi::Session session(m_prompter);
    m_prompter.enqueue(QStringLiteral("Work"));
    session.Logon();
    QCOMPARE(session.Name(), QStringLiteral("Work"));
    QCOMPARE(session.CurrentUser(), QStringLiteral("Tess Tester"));
}

void TestSession::logonByName()
{
    mapi::writeProfile(mapi::Profile{QStringLiteral("Other"), QStringLiteral("Someone Else"), m_store});
    mapi::Session session(m_prompter);
    session.Logon(QStringLiteral("Other"));
    QCOMPARE(session.Name(), QStringLiteral("Other"));
    QCOMPARE(session.CurrentUser(), QStringLiteral("Someone Else"));
    QVERIFY(m_prompter.takePrompts().isEmpty()); // no dialog
}

void TestSession::unknownProfileIsNotFound()
{
    mapi::Session session(m_prompter);
    QCOMPARE(errorOf([&] { session.Logon(QStringLiteral("Nobody")); }), kNotFound);
    QCOMPARE(errorOf([&] { session.Logon(QString()); }), kNotFound);
}

void TestSession::storeErrorAtLogon_data()
{
    QTest::addColumn<QByteArray>("content"); // empty: no file at all
    QTest::addColumn<int>("number");
    QTest::newRow("missing store file") << QByteArray() << kNotFound;
    QTest::newRow("file that is no store") << QByteArray("just some text\n") << kCorrupt;
}

void TestSession::storeErrorAtLogon()
{
    QFETCH(QByteArray, content);
    QFETCH(int, number);
    const QString path = m_home.file(QStringLiteral("broken-%1.db").arg(QTest::currentDataTag()));
    if (!content.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    mapi::writeProfile(mapi::Profile{QStringLiteral("Broken"), QStringLiteral("Tess Tester"), path});
    mapi::Session session(m_prompter);
    QCOMPARE(errorOf([&] { session.Logon(QStringLiteral("Broken")); }), number);
}

void TestSession::failedLogonKeepsTheSession()
{
    mapi::Session session(m_prompter);
    session.LogonStore(m_store);
    QCOMPARE(errorOf([&] { session.LogonStore(m_home.file(QStringLiteral("none.db"))); }), kNotFound);
    QCOMPARE(session.CurrentUser(), QStringLiteral("Tess Tester"));
}

void TestSession::infoStoresInTheirOrder()
{
    mapi::Session session(m_prompter);
    session.LogonStore(m_store);
    QStringList names, ids;
    for (const mapi::InfoStore &s : session.InfoStores()) {
        names << s.Name();
        ids << s.ID();
        QCOMPARE(s.RootFolder().StoreID(), s.ID());
    }
    QCOMPARE(names, (QStringList{QStringLiteral("Mailbox - Tess Tester"), QStringLiteral("Public Folders"),
                                 QStringLiteral("Personal")}));
    QCOMPARE(QSet<QString>(ids.begin(), ids.end()).size(), 3);
}

void TestSession::lookUpNamesNothing_data()
{
    QTest::addColumn<QString>("what");
    QTest::newRow("message id that names nothing") << "message:unknown";
    QTest::newRow("folder id that names nothing") << "folder:unknown";
}

void TestSession::lookUpNamesNothing()
{
    QFETCH(QString, what);
    mapi::Session session(m_prompter);
    session.LogonStore(m_store);
    const mapi::InfoStore mailbox = session.InfoStores().at(0);
    const mapi::InfoStore publicStore = session.InfoStores().at(1);
    const mapi::Folder inbox = mailbox.RootFolder().Folders().Item(1);
    const mapi::Message hello = inbox.Messages().Item(1);
    const QStringList parts = what.split(QLatin1Char(':'));
    QString id = QStringLiteral("00000000000000000000000000000000000000000000FFFF");
    QString storeId = mailbox.ID();
    if (parts.at(1) == QLatin1String("folder"))
        id = inbox.ID();
    else if (parts.at(1) == QLatin1String("message"))
        id = hello.ID();
    else if (parts.at(1) == QLatin1String("other-store")) {
        id = parts.at(0) == QLatin1String("folder") ? inbox.ID() : hello.ID();
        storeId = publicStore.ID();
    }
    const int32_t number = parts.at(0) == QLatin1String("folder")
                               ? errorOf([&] { session.GetFolder(id, storeId); })
                               : errorOf([&] { session.GetMessage(id, storeId); });
    QCOMPARE(number, kNotFound);
}

void TestSession::nullStoreLooksEverywhere()
{
    mapi::Session session(m_prompter);
    session.LogonStore(m_store);
    const mapi::Folder inbox = session.InfoStores().at(0).RootFolder().Folders().Item(1);
    const mapi::Message hello = inbox.Messages().Item(1);
    const mapi::Message found = session.GetMessage(hello.ID(), QString());
    QCOMPARE(found.Subject(), QStringLiteral("Hello"));
    QCOMPARE(found.StoreID(), inbox.StoreID());
    QCOMPARE(found.FolderID(), inbox.ID());
    QCOMPARE(session.GetFolder(inbox.ID(), QString()).Name(), QStringLiteral("Inbox"));
    QCOMPARE(session.GetFolder(found.FolderID(), found.StoreID()).Name(), QStringLiteral("Inbox"));
}

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
