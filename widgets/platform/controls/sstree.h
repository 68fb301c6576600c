#pragma once

#include "platform/controls/sstreenodes.h"

#include <QIcon>
#include <QTreeWidget>
#include <QVector>

#include <functional>
#include <memory>

namespace controls {

/// The folder tree control: nodes found by a unique `Key`, each with a
/// `Text`, an `Image` (index from 1 into the tree's image list, and the
/// node's kind), a `Tag`, and the derived `FullPath`. Children of a node are
/// kept in `Text` order. A user's click on a node raises NodeClick.
///
/// A node is a row of the node table; its widget item is made only when a
/// branch above it is opened or the node is reached (by key, by position,
/// by selection). What is asked of every node goes through the `Id`
/// functions, which answer from the table and make no item.
class SSTree : public QTreeWidget {
    Q_OBJECT

public:
    using Node = QTreeWidgetItem;
    /// A node's row in the node table; kNone for none (the top, as a parent).
    using Id = qint32;
    static constexpr Id kNone = SSTreeNodes::kNone;

    explicit SSTree(QWidget *parent = nullptr);

    /// The pictures behind `Image` numbers (index 1 is the first).
    void setImageList(QVector<QIcon> icons);

    /// Replaces every node with the nodes of `nodes` whose index is below
    /// `count` (all when negative), each below its parent, in the table's
    /// order of children (by `Text`). Those marked expanded are open when
    /// they have nodes below them; the first node ends up selected (without
    /// NodeClick) and open. The nodes show the table's values, which are
    /// shared, not copied; nothing is drawn meanwhile.
    void setNodes(std::shared_ptr<const SSTreeNodes> nodes, qsizetype count = -1);

    /// The same, kept until the tree is first shown or asked for a node: a
    /// tree that stays hidden costs nothing to refill.
    void setNodesWhenNeeded(std::shared_ptr<const SSTreeNodes> nodes, qsizetype count);

    /// The picture of an `Image` number; none outside the image list.
    QIcon icon(int image) const;

    /// The node with `key`, or null.
    Node *node(const QString &key) const;

    /// The number of nodes and the node at a 1-based index, in the order in
    /// which they were added.
    int count() const;
    Node *nodeAt(int index) const;

    /// The node at a 1-based index, as an `Id`.
    Id idAt(int index) const;
    /// The node of an item; kNone for none.
    static Id id(const Node *node);
    /// The nodes below `parent` (kNone: the top nodes), in their order.
    QVector<Id> nodeChildren(Id parent) const;
    QString nodeKey(Id node) const;
    QString nodeText(Id node) const;
    QString nodeTag(Id node) const;
    int nodeImage(Id node) const;
    bool nodeExpanded(Id node) const;
    bool nodeSelected(Id node) const;
    /// The node's item, made (with those above it) when it isn't yet.
    Node *item(Id node) const;

    /// Removes one node and what is below it.
    void remove(Node *node);
    /// Removes every node.
    void clearNodes();

    static QString key(const Node *node);
    static QString text(const Node *node);
    static int image(const Node *node);
    static QString tag(const Node *node);
    void setImage(Node *node, int image);
    /// The `Text` of every node from the top down, joined by "\".
    static QString fullPath(const Node *node);

    Node *selectedItem() const;
    /// Makes `node` the selected node without raising NodeClick.
    void select(Node *node);

    /// What a user's mouse click on `node` does: the tree takes the focus
    /// (so that the control that had it loses it first), the node becomes
    /// the selected one, and NodeClick is raised.
    void clickNode(Node *node, bool withCtrl = false);

    /// Whether the user may select several nodes with Ctrl+Click.
    void setMultiSelect(bool on);
    /// The selected nodes in the order the user picked them.
    QList<Node *> selectedNodes() const;

Q_SIGNALS:
    void NodeClick(QTreeWidgetItem *node);
    void DblClick();
    void KeyDown(int keyCode, int shift, bool &swallow);
    void KeyUp(int keyCode, int shift);
    void MouseUp(int button, const QPoint &globalPos);
    void GotFocus();
    void LostFocus();

protected:
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void forget(Id node);
    /// Makes the nodes of a snapshot kept by `setNodesWhenNeeded`.
    void makePendingNodes() const;
    /// Whether `node` has nodes below it in this tree.
    bool hasChildren(Id node) const;
    /// Makes the items of the nodes below `parent`, each open as the table
    /// says; nothing when they are made already.
    void makeChildren(Id parent);
    /// Makes what an open, shown `node` shows: its children, and theirs
    /// where those are open.
    void reveal(Node *node);
    void itemOpened(Node *node);

    QVector<QIcon> m_icons;
    std::shared_ptr<const SSTreeNodes> m_nodes;
    qint32 m_count = 0;      ///< the table's nodes this tree shows: those below this index
    QVector<Node *> m_items; ///< by index in m_nodes; null for a node removed or not made yet
    QVector<bool> m_made;    ///< by index in m_nodes, and one for the top: its children's items are made
    QVector<bool> m_gone;    ///< by index in m_nodes: removed
    QVector<Id> m_order;     ///< the nodes not removed, in the order they were added
    bool m_making = false;
    QList<Node *> m_picked;
    bool m_multiSelect = false;
    std::shared_ptr<const SSTreeNodes> m_pending;
    qsizetype m_pendingCount = 0;
};

/// Key codes and shift bits as the program's handlers see them.
int vbKeyCode(const QKeyEvent *event);
int vbShift(Qt::KeyboardModifiers modifiers);

} // namespace controls
