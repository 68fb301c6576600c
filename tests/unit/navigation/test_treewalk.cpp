// The walk of a logged-on session as the tree's refresh makes it: which
// nodes, their records, and the display order.
#include "navigation/nodekinds.h"
#include "navigation/treewalk.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using navigation::TreeNode;
using testkit::StoreKit;

namespace {

const QByteArray kFixture = R"({
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
    return QStringLiteral("%1|%2|%3").arg(n.path).arg(n.node.image).arg(n.node.depth);
}

/// The nodes of a session in the order the tree shows them.
QVector<navigation::DisplayNode> shown(StoreKit &kit)
{
    return navigation::displayOrder(navigation::walkTree(kit.session, kit.events, true).nodes);
}

} // namespace

class TestTreeWalk : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanupTestCase() { m_kit.reset(); }
    void nodesInDisplayOrder();
    void equalTextsKeepTheirOrder();
    void noServerStoreLeavesTheRoot();
    void displayOrderOfAnyInput();

private:
    std::unique_ptr<StoreKit> m_kit;
};

void TestTreeWalk::nodesInDisplayOrder()
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
        "\\Mailbox - Alice Admin\\inbox\\Alpha agent|20|3", "\\Mailbox - Alice Admin\\inbox\\beta Agent|19|3",
        "\\Mailbox - Alice Admin\\inbox\\Twin|19|3", "\\Mailbox - Alice Admin\\inbox\\Twin|19|3",
        "\\Mailbox - Alice Admin\\inbox\\Zed|21|3"};
    // The second store of the same name adds no node of its own; its
    // folders go below the first.
    const QStringList rest{"\\Mailbox - Alice Admin\\Locked|18|2", "\\Public Folders|1|1",
                           "\\Public Folders\\All Public Folders|6|2",
                           "\\Public Folders\\All Public Folders\\Shared|6|3", "\\Public Folders\\Extra|6|2"};
    QStringList seen;
    for (const navigation::DisplayNode &n : shown(*m_kit))
        seen << line(n);
    QCOMPARE(seen, top + agents + rest);
}

void TestTreeWalk::equalTextsKeepTheirOrder()
{
    mapi::MessageList hidden =
        m_kit->folder(QStringLiteral("\\Mailbox - Alice Admin\\inbox")).HiddenMessages();
    hidden.Filter().setType(mapi::kBindingClass);
    QStringList twins;
    for (const mapi::Message &m : hidden)
        if (m.Subject() == QLatin1String("Twin"))
            twins << m.ID();
    QStringList walked;
    for (const navigation::DisplayNode &n : shown(*m_kit))
        if (n.node.text == QLatin1String("Twin"))
            walked << n.node.key;
    QCOMPARE(walked, twins);
}

void TestTreeWalk::noServerStoreLeavesTheRoot()
{
    StoreKit kit(R"({ "user": "Bob", "hosts": [],
                      "stores": [ { "name": "Personal", "provider": "Personal Folders",
                                    "folders": [ { "name": "Inbox" } ] } ] })");
    const QVector<TreeNode> nodes = navigation::walkTree(kit.session, kit.events, true).nodes;
    QCOMPARE(nodes.size(), 1);
    QCOMPARE(nodes.first().text, QStringLiteral("Current User: Bob"));
}

void TestTreeWalk::displayOrderOfAnyInput()
{
    // Parents before children, siblings in any order; a repeated key and a
    // node whose parent is missing.
    const QVector<TreeNode> nodes{
        {QString(), QStringLiteral("root"), QStringLiteral("Current User: X"), QString(), 2, 0},
        {QStringLiteral("root"), QStringLiteral("S"), QStringLiteral("S"), QStringLiteral("T"), 1, 1},
        {QStringLiteral("S"), QStringLiteral("f2"), QStringLiteral("b"), QStringLiteral("T"), 6, 2},
        {QStringLiteral("S"), QStringLiteral("f1"), QStringLiteral("A"), QStringLiteral("T"), 7, 2},
        {QStringLiteral("f1"), QStringLiteral("a1"), QStringLiteral("c"), QStringLiteral("T"), 19, 3},
        {QStringLiteral("gone"), QStringLiteral("x"), QStringLiteral("orphan"), QStringLiteral("T"), 6, 3},
        {QStringLiteral("a1"), QStringLiteral("f1"), QStringLiteral("loop"), QStringLiteral("T"), 6, 4},
    };
    QStringList paths;
    for (const navigation::DisplayNode &n : navigation::displayOrder(nodes))
        paths << n.path;
    QCOMPARE(paths, (QStringList{"", "\\S", "\\S\\A", "\\S\\A\\c", "\\S\\A\\c\\loop", "\\S\\b"}));
}

QTEST_GUILESS_MAIN(TestTreeWalk)
#include "test_treewalk.moc"
