// The folder tree's node table and the tree that shows it: unique keys,
// children in text order, a tree showing only the table's first nodes, and
// nodes removed afterwards.
#include "platform/controls/sstree.h"
#include "platform/controls/sstreenodes.h"

#include <QtTest>

using controls::SSTree;
using controls::SSTreeNodes;

namespace {

/// root > Store > (b, B, a, B again with its own key) and an agent below a.
std::shared_ptr<SSTreeNodes> sample()
{
    auto nodes = std::make_shared<SSTreeNodes>();
    const qint32 tag = nodes->tag(QStringLiteral("S1"));
    const qint32 root =
        nodes->add(SSTreeNodes::kNone, u"root", u"Current User: Tess", nodes->tag(QString()), 2, true);
    const qint32 store = nodes->add(root, u"Mailbox", u"Mailbox", tag, 1, false);
    nodes->add(store, u"F1", u"b", tag, 6, true);
    nodes->add(store, u"F2", u"B", tag, 6, true);
    const qint32 a = nodes->add(store, u"F3", u"a", tag, 7, true);
    nodes->add(store, u"F4", u"B", tag, 6, true);
    nodes->add(a, u"A1", u"Agent", tag, 19, false);
    return nodes;
}

QStringList texts(const SSTree &tree, SSTree::Id parent)
{
    QStringList out;
    for (const SSTree::Id child : tree.nodeChildren(parent))
        out << tree.nodeText(child);
    return out;
}

} // namespace

class TestSSTree : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusals_data()
    {
        QTest::addColumn<int>("parent");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("added");
        QTest::newRow("a new key") << 1 << "F9" << true;
        QTest::newRow("a key that stands") << 1 << "F2" << false;
        QTest::newRow("the root's key") << 1 << "root" << false;
        QTest::newRow("a parent that isn't there") << 99 << "F9" << false;
    }

    void refusals()
    {
        QFETCH(int, parent);
        QFETCH(QString, key);
        QFETCH(bool, added);
        const auto nodes = sample();
        const qint32 before = nodes->find(key);
        const qint32 node = nodes->add(parent, key, u"x", 0, 6, false);
        QCOMPARE(node != SSTreeNodes::kNone, added);
        QCOMPARE(nodes->find(key), added ? node : before);
        QCOMPARE(nodes->size(), added ? 8 : 7);
    }

    void treeShowsTheTable()
    {
        const auto nodes = sample();
        nodes->sortChildren();
        SSTree tree;
        tree.setNodes(nodes);
        QCOMPARE(tree.count(), 7);
        // Only what the open root shows has items; a closed branch is read from the table.
        QCOMPARE(tree.topLevelItemCount(), 1);
        QTreeWidgetItem *store = tree.topLevelItem(0)->child(0);
        QCOMPARE(store->childCount(), 0);
        QCOMPARE(store->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);
        // By text, case counting; equal texts in the order they came.
        const SSTree::Id storeId = SSTree::id(store);
        QCOMPARE(texts(tree, storeId), (QStringList{"B", "B", "a", "b"}));
        QCOMPARE(tree.nodeKey(tree.nodeChildren(storeId).at(0)), QStringLiteral("F2"));
        QCOMPARE(tree.nodeKey(tree.nodeChildren(storeId).at(1)), QStringLiteral("F4"));
        QVERIFY(tree.nodeExpanded(nodes->find(u"F3")));
        QVERIFY(!tree.nodeExpanded(nodes->find(u"F1")));
        QCOMPARE(tree.nodeImage(nodes->find(u"A1")), 19);
        QVERIFY(!store->isExpanded());
        // Opening the store makes its items, and those of its open branches.
        tree.expandItem(store);
        QCOMPARE(store->childCount(), 4);
        QCOMPARE(SSTree::key(store->child(1)), QStringLiteral("F4"));
        QCOMPARE(store->child(2)->childCount(), 1);
        QCOMPARE(SSTree::fullPath(tree.node(QStringLiteral("A1"))),
                 QStringLiteral("Current User: Tess\\Mailbox\\a\\Agent"));
        QCOMPARE(SSTree::tag(store), QStringLiteral("S1"));
        QCOMPARE(SSTree::tag(tree.node(QStringLiteral("root"))), QString());
        QVERIFY(tree.node(QStringLiteral("root"))->isExpanded());
        QVERIFY(tree.node(QStringLiteral("F3"))->isExpanded());
        QVERIFY(!tree.node(QStringLiteral("F1"))->isExpanded()); // nothing below it to open
        QCOMPARE(tree.nodeAt(5), tree.node(QStringLiteral("F3")));

        QTreeWidgetItem *agent = tree.node(QStringLiteral("A1"));
        tree.setImage(tree.node(QStringLiteral("F3")), 6);
        tree.remove(agent);
        QCOMPARE(tree.node(QStringLiteral("A1")), nullptr);
        QCOMPARE(tree.count(), 6);
        QCOMPARE(SSTree::image(tree.node(QStringLiteral("F3"))), 6);
        QCOMPARE(nodes->image(nodes->find(u"F3")), 7); // the table stays as read

        // The same table without its last node, as the folder dialog shows it.
        SSTree folders;
        folders.setNodes(nodes, 6);
        QCOMPARE(folders.count(), 6);
        QCOMPARE(folders.node(QStringLiteral("A1")), nullptr);
        QVERIFY(!folders.node(QStringLiteral("F3"))->isExpanded());
    }
};

QTEST_MAIN(TestSSTree)
#include "test_sstree.moc"
