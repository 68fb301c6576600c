// Folders: the user's rights (PR_ACCESS), subfolders in order, and what a
// folder handle keeps from its listing.
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

const QByteArray kFixture = R"({
  "user": "Tess Tester",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [ { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
    { "name": "Inbox", "folders": [ { "name": "zeta" }, { "name": "Alpha" }, { "name": "beta" } ] },
    { "name": "Read Only", "access": 2 },
    { "name": "Nearly", "access": 62 },
    { "name": "Nothing", "access": 0 },
    { "name": "Calendar" } ] } ] })";

const QString kMailbox = QStringLiteral("\\Mailbox - Tess Tester");
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);

} // namespace

class TestFolders : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }
    void access_data();
    void access();
    void otherFolderFieldsAreNotFound();
    void subfoldersInTheStoreOrder();
    void itemOutsideTheList_data();
    void itemOutsideTheList();
    void newCollectionsSeeNewMessages();

private:
    std::unique_ptr<StoreKit> m_kit;
};

void TestFolders::access_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("rowFor"); // whose folder_access row is added, if any
    QTest::addColumn<int>("rowAccess");
    QTest::addColumn<int>("listed");   // for Tess Tester, as the folder was listed
    QTest::addColumn<int>("expected"); // for Tess Tester, read again
    QTest::newRow("full rights by default") << "Inbox" << QString() << 0 << 63 << 63;
    QTest::newRow("one bit short") << "Nearly" << QString() << 0 << 62 << 62;
    QTest::newRow("none") << "Nothing" << QString() << 0 << 0 << 0;
    QTest::newRow("own row lowers") << "Inbox"
                                    << "Tess Tester" << 3 << 63 << 3;
    QTest::newRow("another user's row doesn't count") << "Nearly"
                                                      << "Someone Else" << 63 << 62 << 62;
}

void TestFolders::access()
{
    QFETCH(QString, folder);
    QFETCH(QString, rowFor);
    QFETCH(int, rowAccess);
    QFETCH(int, listed);
    QFETCH(int, expected);
    const mapi::Folder f = m_kit->folder(kMailbox + QLatin1Char('\\') + folder);
    if (!rowFor.isNull())
        m_kit->db().run(QStringLiteral("INSERT INTO folder_access(folder, user, access) VALUES(?, ?, ?)"),
                        {f.row().row, rowFor, rowAccess});
    const QVariant value = m_kit->session.GetFolder(f.ID(), f.StoreID()).Fields(mapi::PR_ACCESS);
    QCOMPARE(value.typeId(), QMetaType::Int);
    QCOMPARE(value.toInt(), expected);
    QCOMPARE(m_kit->folder(kMailbox + QLatin1Char('\\') + folder).Fields(mapi::PR_ACCESS).toInt(), expected);
    // The handle read before keeps what it was listed with.
    QCOMPARE(f.Fields(mapi::PR_ACCESS).toInt(), listed);
}

void TestFolders::otherFolderFieldsAreNotFound()
{
    const mapi::Folder inbox = m_kit->folder(kMailbox + QStringLiteral("\\Inbox"));
    QCOMPARE(errorOf([&] { inbox.Fields(0x3001001E); }), kNotFound);
    QCOMPARE(errorOf([&] { inbox.Fields(0x0FF40102); }), kNotFound); // same id, other type
}

void TestFolders::subfoldersInTheStoreOrder()
{
    const mapi::Folder top = m_kit->session.InfoStores().at(0).RootFolder();
    QStringList names;
    for (const mapi::Folder &f : top.Folders())
        names << f.Name();
    QCOMPARE(names, (QStringList{"Inbox", "Read Only", "Nearly", "Nothing", "Calendar"}));
    const mapi::FolderList inbox = top.Folders().Item(1).Folders();
    QCOMPARE(inbox.Count(), 3);
    QCOMPARE(inbox.Item(1).Name(), QStringLiteral("zeta")); // the store's order, not sorted
    QCOMPARE(inbox.Item(3).Name(), QStringLiteral("beta"));
    QCOMPARE(inbox.Item(2).Folders().Count(), 0);
    for (const mapi::Folder &f : inbox)
        QCOMPARE(f.StoreID(), top.StoreID());
}

void TestFolders::itemOutsideTheList_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0;
    QTest::newRow("one past the end") << 6;
}

void TestFolders::itemOutsideTheList()
{
    QFETCH(int, index);
    const mapi::FolderList folders = m_kit->session.InfoStores().at(0).RootFolder().Folders();
    QCOMPARE(errorOf([&] { folders.Item(index); }), kNotFound);
}

void TestFolders::newCollectionsSeeNewMessages()
{
    const mapi::Folder calendar = m_kit->folder(kMailbox + QStringLiteral("\\Calendar"));
    mapi::MessageList before = calendar.HiddenMessages();
    QCOMPARE(before.Count(), 0);
    m_kit->db().run(
        QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created, modified)"
                       " VALUES(?, 1, 'IPC.Microsoft.EventBinding', 'Late', '2026-01-01 00:00:00',"
                       " '2026-01-01 00:00:00')"),
        {calendar.row().row});
    mapi::MessageList after = calendar.HiddenMessages();
    QCOMPARE(after.Count(), 1);
    after.Filter().setType(mapi::kBindingClass);
    QCOMPARE(after.Count(), 1);
    QCOMPARE(after.Item(1).Subject(), QStringLiteral("Late"));
}

QTEST_GUILESS_MAIN(TestFolders)
#include "test_folders.moc"
