// Folders: the user's rights (PR_ACCESS), subfolders in order, and what a
// folder handle keeps from its listing.
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using testkit::StoreKit;

namespace {

const QByteArray kFixture =
    R"({"user": "Tess Tester", "hosts": [{"name": "H1", "handlers": []}],
"stores": [{"name": "Mailbox - Tess Tester", "host": "H1", "folders": [
{"name": "Inbox", "folders": [{"name": "zeta"}, {"name": "Alpha"}, {"name": "beta"}]},
{"name": "Read Only", "access": 2}, {"name": "Nearly", "access": 62}, {"name": "Nothing", "access": 0},
{"name": "Calendar"}]}]})";

const QString kMailbox = u"\\Mailbox - Tess Tester\\"_s;

} // namespace

class TestFolders : public QObject {
    Q_OBJECT

    std::unique_ptr<StoreKit> m_kit;

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }

    void access_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("rowFor"); // whose folder_access row is added, if any
        QTest::addColumn<int>("rowAccess");
        QTest::addColumn<int>("listed");   // for Tess Tester, as the folder was listed
        QTest::addColumn<int>("expected"); // for Tess Tester, read again
        QTest::newRow("one bit short") << "Nearly" << QString() << 0 << 62 << 62;
        QTest::newRow("own row lowers") << "Inbox" << u"Tess Tester"_s << 3 << 63 << 3;
        QTest::newRow("another user's row doesn't count") << "Nearly" << u"Someone Else"_s << 63 << 62 << 62;
    }

    void access()
    {
        QFETCH(QString, folder);
        QFETCH(QString, rowFor);
        QFETCH(int, rowAccess);
        QFETCH(int, listed);
        QFETCH(int, expected);
        const mapi::Folder f = m_kit->folder(kMailbox + folder);
        if (!rowFor.isNull())
            m_kit->db().run(u"INSERT INTO folder_access(folder, user, access) VALUES(?, ?, ?)"_s,
                            {f.row().row, rowFor, rowAccess});
        const QVariant value = m_kit->session.GetFolder(f.ID(), f.StoreID()).Fields(mapi::PR_ACCESS);
        QCOMPARE(value.typeId(), QMetaType::Int);
        QCOMPARE(value.toInt(), expected);
        QCOMPARE(m_kit->folder(kMailbox + folder).Fields(mapi::PR_ACCESS).toInt(), expected);
        // The handle read before keeps what it was listed with.
        QCOMPARE(f.Fields(mapi::PR_ACCESS).toInt(), listed);
    }

    void subfoldersInTheStoreOrder()
    {
        const mapi::Folder top = m_kit->session.InfoStores().at(0).RootFolder();
        QStringList names;
        for (const mapi::Folder &f : top.Folders())
            names << f.Name();
        QCOMPARE(names, (QStringList{"Inbox", "Read Only", "Nearly", "Nothing", "Calendar"}));
        const mapi::FolderList inbox = top.Folders().Item(1).Folders();
        QCOMPARE(inbox.Count(), 3);
        QCOMPARE(inbox.Item(1).Name(), u"zeta"_s); // the store's order, not sorted
        QCOMPARE(inbox.Item(3).Name(), u"beta"_s);
        QCOMPARE(inbox.Item(2).Folders().Count(), 0);
        for (const mapi::Folder &f : inbox)
            QCOMPARE(f.StoreID(), top.StoreID());
    }
};

QTEST_GUILESS_MAIN(TestFolders)
#include "test_folders.moc"
