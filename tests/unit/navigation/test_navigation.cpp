// How the tree classifies folders (6, 7, 18) and agents (19, 20, 21), and
// the walk of a logged-on session as the tree's refresh makes it: which
// nodes, their records, and the display order.
#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "navigation/treewalk.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using navigation::TreeNode;
using testkit::StoreKit;

using namespace Qt::StringLiterals;

namespace {

const QByteArray kFolders = R"({
  "user": "Tess Tester",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [ { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
    { "name": "Plain" },
    { "name": "With Agents", "agents": [ { "name": "A" } ] },
    { "name": "Other Hidden", "hidden": [ { "subject": "Routing Map Message", "class": "IPM.Note" } ] },
    { "name": "Lost Binding", "agents": [ { "name": "B", "binding": false, "stateMessage": false } ] },
    { "name": "Only Messages", "messages": [ { "subject": "EventBinding", "class": "IPC.Microsoft.EventBinding" } ] },
    { "name": "Access 62", "access": 62, "agents": [ { "name": "C" } ] },
    { "name": "No Source", "eventSource": false, "agents": [ { "name": "D" } ] },
    { "name": "Above 63", "agents": [ { "name": "E" } ] },
    { "name": "Lowered For Me", "agents": [ { "name": "F" } ] } ] } ] })";

const QString kMailbox = u"\\Mailbox - Tess Tester\\"_s;

const QByteArray kTree = R"({
  "user": "Alice Admin",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [
    { "name": "Public Folders", "host": "H1", "folders": [
      { "name": "All Public Folders", "folders": [ { "name": "Shared" } ] } ] },
    { "name": "Personal", "provider": "Personal Folders", "folders": [
      { "name": "Old", "agents": [ { "name": "Never Shown" } ] } ] },
    { "name": "Mailbox - Alice Admin", "host": "H1", "folders": [
      { "name": "inbox", "agents": [
          { "name": "Zed", "handler": "{8B1C2D3E-4F50-4A6B-9C7D-8E9F0A1B2C3D}" },
          { "name": "Twin" },
          { "name": "beta Agent" },
          { "name": "Alpha agent", "handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}" },
          { "name": "Twin" } ] },
      { "name": "Locked", "access": 62, "agents": [ { "name": "Hidden Agent" } ] },
      { "name": "Archive", "folders": [ { "name": "2024" }, { "name": "2023" } ] },
      { "name": "Calendar" },
      { "name": "Deleted Items" } ] },
    { "name": "Public Folders", "host": "H1", "folders": [ { "name": "Extra" } ] } ] })";

QString line(const navigation::DisplayNode &n)
{
    return u"%1|%2|%3"_s.arg(n.path).arg(n.node.image).arg(n.node.depth);
}

/// The nodes of a session in the order the tree shows them.
QVector<navigation::DisplayNode> shown(StoreKit &kit)
{
    return navigation::displayOrder(navigation::walkTree(kit.session, kit.events, true).nodes);
}

/// The image the walk gives a folder of the mailbox.
int imageOf(StoreKit &kit, events::Events &events, const QString &folder)
{
    const QString key = kit.folder(kMailbox + folder).ID();
    for (const TreeNode &node : navigation::walkTree(kit.session, events, true).nodes)
        if (node.key == key)
            return node.image;
    return -1;
}

} // namespace

class TestNavigation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_folders = std::make_unique<StoreKit>(kFolders);
        m_tree = std::make_unique<StoreKit>(kTree);
        const mapi::Folder above = m_folders->folder(kMailbox + u"Above 63"_s);
        m_folders->db().run(u"UPDATE folders SET access = 127 WHERE id = ?"_s, {above.row().row});
        const mapi::Folder lowered = m_folders->folder(kMailbox + u"Lowered For Me"_s);
        m_folders->db().run(u"INSERT INTO folder_access(folder, user, access) VALUES(?, 'Tess Tester', 62)"_s,
                            {lowered.row().row});
        // Another user's row is no concern of the walk's user.
        m_tree->db().run(u"INSERT INTO folder_access(folder, user, access) VALUES(?, 'Someone Else', 0)"_s,
                         {m_tree->folder(u"\\Mailbox - Alice Admin\\inbox"_s).row().row});
    }

    void folderImage_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("image");
        QTest::newRow("full rights, nothing hidden") << "Plain" << 6;
        QTest::newRow("full rights, binding messages") << "With Agents" << 7;
        QTest::newRow("other hidden messages alone") << "Other Hidden" << 6;
        QTest::newRow("a binding message without its binding") << "Lost Binding" << 7;
        QTest::newRow("the class among ordinary messages") << "Only Messages" << 6;
        QTest::newRow("access 62, binding messages") << "Access 62" << 18;
        QTest::newRow("no event source, binding messages") << "No Source" << 18;
        QTest::newRow("access above 63 isn't exactly 63") << "Above 63" << 6;
        QTest::newRow("the user's own access row") << "Lowered For Me" << 18;
    }

    void folderImage()
    {
        QFETCH(QString, folder);
        QFETCH(int, image);
        QCOMPARE(imageOf(*m_folders, m_folders->events, folder), image);
    }

    void unreachableEventSourcesAreNoRights()
    {
        events::Events unset; // an event configuration never given the session
        QCOMPARE(imageOf(*m_folders, m_folders->events, u"With Agents"_s),
                 navigation::kImageFolderWithAgents);
        QCOMPARE(imageOf(*m_folders, unset, u"With Agents"_s), navigation::kImageNoRights);
        QCOMPARE(imageOf(*m_folders, unset, u"Plain"_s), navigation::kImageNoRights);
        QCOMPARE(imageOf(*m_folders, unset, u"Above 63"_s), navigation::kImageFolder);
    }

    // Only the field as the store writes it names a handler of ours.
    void handlerField_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<int>("image");
        QTest::newRow("lower-case digits") << QByteArray("5141e56971b3d011bcd900aa00c1ab1c") << 21;
        QTest::newRow("registry form") << QByteArray("{69E54151-B371-11D0-BCD9-00AA00C1AB1C}") << 21;
    }

    void handlerField()
    {
        QFETCH(QByteArray, field);
        QFETCH(int, image);
        QCOMPARE(navigation::classifyHandlerField(field), image);
    }

    void nodesInDisplayOrder()
    {
        // path|image|depth
        const QStringList top{"|2|0",
                              "\\Mailbox - Alice Admin|1|1",
                              "\\Mailbox - Alice Admin\\Archive|6|2",
                              "\\Mailbox - Alice Admin\\Archive\\2023|6|3",
                              "\\Mailbox - Alice Admin\\Archive\\2024|6|3",
                              "\\Mailbox - Alice Admin\\Calendar|6|2",
                              "\\Mailbox - Alice Admin\\Deleted Items|6|2",
                              "\\Mailbox - Alice Admin\\inbox|7|2"};
        const QStringList agents{
            "\\Mailbox - Alice Admin\\inbox\\Alpha agent|20|3",
            "\\Mailbox - Alice Admin\\inbox\\beta Agent|19|3", "\\Mailbox - Alice Admin\\inbox\\Twin|19|3",
            "\\Mailbox - Alice Admin\\inbox\\Twin|19|3", "\\Mailbox - Alice Admin\\inbox\\Zed|21|3"};
        // The second store of the same name adds no node of its own; its
        // folders go below the first.
        const QStringList rest{"\\Mailbox - Alice Admin\\Locked|18|2", "\\Public Folders|1|1",
                               "\\Public Folders\\All Public Folders|6|2",
                               "\\Public Folders\\All Public Folders\\Shared|6|3",
                               "\\Public Folders\\Extra|6|2"};
        QStringList seen;
        for (const navigation::DisplayNode &n : shown(*m_tree))
            seen << line(n);
        QCOMPARE(seen, top + agents + rest);
    }

    void equalTextsKeepTheirOrder()
    {
        mapi::MessageList hidden = m_tree->folder(u"\\Mailbox - Alice Admin\\inbox"_s).HiddenMessages();
        hidden.Filter().setType(mapi::kBindingClass);
        QStringList twins;
        for (const mapi::Message &m : hidden)
            if (m.Subject() == "Twin"_L1)
                twins << m.ID();
        QStringList walked;
        for (const navigation::DisplayNode &n : shown(*m_tree))
            if (n.node.text == "Twin"_L1)
                walked << n.node.key;
        QCOMPARE(walked, twins);
    }

    void aFolderWhoseKeyStandsLeavesItsSubfoldersToThatNode()
    {
        StoreKit kit(kTree);
        const mapi::Folder archive = kit.folder(u"\\Mailbox - Alice Admin\\Archive"_s);
        kit.db().run(u"UPDATE folders SET entry_id = 'Public Folders' WHERE id = ?"_s, {archive.row().row});
        QStringList seen;
        for (const navigation::DisplayNode &n : shown(kit))
            if (n.path.contains("20"_L1) || n.path.contains("Archive"_L1))
                seen << line(n);
        QCOMPARE(seen, QStringList({"\\Public Folders\\2023|6|2", "\\Public Folders\\2024|6|2"}));
    }

    void noServerStoreLeavesTheRoot()
    {
        StoreKit kit(R"({ "user": "Bob", "hosts": [],
                          "stores": [ { "name": "Personal", "provider": "Personal Folders",
                                        "folders": [ { "name": "Inbox" } ] } ] })");
        const QVector<TreeNode> nodes = navigation::walkTree(kit.session, kit.events, true).nodes;
        QCOMPARE(nodes.size(), 1);
        QCOMPARE(nodes.first().text, u"Current User: Bob"_s);
    }

    void cleanupTestCase()
    {
        m_folders.reset();
        m_tree.reset();
    }

private:
    std::unique_ptr<StoreKit> m_folders;
    std::unique_ptr<StoreKit> m_tree;
};

QTEST_GUILESS_MAIN(TestNavigation)
#include "test_navigation.moc"
