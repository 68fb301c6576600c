#include "platform/controls/sstree.h"

#include "platform/com/comerror.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <numeric>
#include <utility>

namespace controls {

namespace {
constexpr int KeyRole = Qt::UserRole + 1;
constexpr int TagRole = Qt::UserRole + 2;
constexpr int ImageRole = Qt::UserRole + 3;
const QString kSource = QStringLiteral("SSTree");

/// A node: it shows a row of the tree's node table, which holds its text,
/// key and tag, so that a node costs the view's own item and little more.
/// A value set afterwards is kept by the item itself.
class Item : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 1;

    Item(const SSTreeNodes &nodes, qint32 index)
        : QTreeWidgetItem(Type), m_nodes(nodes), m_index(index), m_image(nodes.image(index))
    {
    }

    qint32 index() const { return m_index; }

    QVariant data(int column, int role) const override
    {
        if (column == 0) {
            switch (role) {
            case Qt::DisplayRole:
            case Qt::EditRole:
                return (m_set & TextSet) ? QTreeWidgetItem::data(0, Qt::DisplayRole)
                                         : QVariant(m_nodes.text(m_index).toString());
            case KeyRole:
                return m_nodes.key(m_index);
            case TagRole:
                return (m_set & TagSet) ? QTreeWidgetItem::data(0, TagRole) : QVariant(m_nodes.tag(m_index));
            case ImageRole:
                return m_image;
            case Qt::DecorationRole:
                if (const auto *tree = qobject_cast<const SSTree *>(treeWidget()))
                    return tree->icon(m_image);
                return QVariant();
            default:
                break;
            }
        }
        return QTreeWidgetItem::data(column, role);
    }

    void setData(int column, int role, const QVariant &value) override
    {
        if (column == 0 && role == ImageRole) {
            m_image = value.toInt();
            emitDataChanged();
            return;
        }
        if (column == 0 && (role == Qt::DisplayRole || role == Qt::EditRole))
            m_set |= TextSet;
        if (column == 0 && role == TagRole)
            m_set |= TagSet;
        QTreeWidgetItem::setData(column, role == Qt::EditRole ? Qt::DisplayRole : role, value);
    }

    /// The tree's order: by text, case counting, as the item view compares texts.
    bool operator<(const QTreeWidgetItem &other) const override
    {
        const QTreeWidget *tree = treeWidget();
        if (other.type() != Type || (tree && tree->sortColumn() != 0))
            return QTreeWidgetItem::operator<(other);
        return text(0).compare(other.text(0), Qt::CaseSensitive) < 0;
    }

private:
    enum : quint8 { TextSet = 1, TagSet = 2 };
    const SSTreeNodes &m_nodes;
    qint32 m_index;
    qint8 m_image;
    quint8 m_set = 0;
};

} // namespace

SSTree::SSTree(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    setIconSize(QSize(16, 16));
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QTreeWidget::itemExpanded, this, &SSTree::itemOpened);
}

void SSTree::setImageList(QVector<QIcon> icons)
{
    m_icons = std::move(icons);
}

void SSTree::setNodesWhenNeeded(std::shared_ptr<const SSTreeNodes> nodes, qsizetype count)
{
    clearNodes();
    m_pending = std::move(nodes);
    m_pendingCount = count;
    if (isVisible())
        makePendingNodes();
}

void SSTree::makePendingNodes() const
{
    if (!m_pending)
        return;
    auto *self = const_cast<SSTree *>(this); // the nodes were set before; this only makes them
    self->setNodes(std::move(self->m_pending), m_pendingCount);
}

void SSTree::showEvent(QShowEvent *event)
{
    makePendingNodes();
    QTreeWidget::showEvent(event);
}

int SSTree::count() const
{
    makePendingNodes();
    return static_cast<int>(m_order.size());
}

SSTree::Node *SSTree::selectedItem() const
{
    makePendingNodes();
    return currentItem();
}

void SSTree::setNodes(std::shared_ptr<const SSTreeNodes> nodes, qsizetype count)
{
    setUpdatesEnabled(false);
    clearNodes();
    m_nodes = std::move(nodes);
    m_count = qint32(count < 0 ? m_nodes->size() : std::min(count, m_nodes->size()));
    m_items.fill(nullptr, m_count);
    m_made.fill(false, m_count + 1);
    m_gone.fill(false, m_count);
    m_order.resize(m_count);
    std::iota(m_order.begin(), m_order.end(), 0);
    // Only the top nodes and what open branches show get items.
    makeChildren(kNone);
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->isExpanded())
            reveal(topLevelItem(i));
    if (m_count > 0) {
        Node *first = item(0);
        select(first);
        first->setExpanded(true);
    }
    setUpdatesEnabled(true);
}

bool SSTree::hasChildren(Id node) const
{
    for (const qint32 child : m_nodes->children(node))
        if (child < m_count && !m_gone.at(child)) // the nodes of the table's rest have indexes above
            return true;
    return false;
}

QVector<SSTree::Id> SSTree::nodeChildren(Id parent) const
{
    makePendingNodes();
    QVector<Id> out;
    if (!m_nodes || (parent != kNone && (parent < 0 || parent >= m_count || m_gone.at(parent))))
        return out;
    for (const qint32 child : m_nodes->children(parent))
        if (child < m_count && !m_gone.at(child))
            out.append(child);
    return out;
}

void SSTree::makeChildren(Id parent)
{
    if (m_made.at(parent == kNone ? m_count : parent))
        return;
    m_made[parent == kNone ? m_count : parent] = true;
    const QVector<Id> children = nodeChildren(parent);
    QList<Node *> list;
    list.reserve(children.size());
    for (const Id child : children) {
        auto *made = new Item(*m_nodes, child); // owned by its parent once added below
        if (hasChildren(child))
            made->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        m_items[child] = made;
        list.append(made);
    }
    if (parent == kNone) {
        addTopLevelItems(list); // owned by the tree
    } else {
        m_items.at(parent)->addChildren(list);
        m_items.at(parent)->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    }
    // Opening a node only records it here; what it shows is made by reveal().
    const bool making = std::exchange(m_making, true);
    for (int i = 0; i < children.size(); ++i)
        if (m_nodes->expanded(children.at(i)) &&
            list.at(i)->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator)
            list.at(i)->setExpanded(true);
    m_making = making;
}

void SSTree::reveal(Node *node)
{
    // With a layout pending, opening a node only records it.
    scheduleDelayedItemsLayout();
    QVector<Node *> open{node};
    while (!open.isEmpty()) {
        Node *n = open.takeLast();
        makeChildren(id(n));
        for (int i = 0; i < n->childCount(); ++i)
            if (n->child(i)->isExpanded())
                open.append(n->child(i));
    }
}

void SSTree::itemOpened(Node *node)
{
    if (m_making)
        return;
    for (const Node *above = node->parent(); above; above = above->parent())
        if (!above->isExpanded())
            return; // not shown: made when the branch above is opened
    reveal(node);
}

SSTree::Node *SSTree::item(Id node) const
{
    makePendingNodes();
    if (!m_nodes || node < 0 || node >= m_count || m_gone.at(node))
        return nullptr;
    if (!m_items.at(node)) {
        // The nodes above first, from the highest one without its children made.
        QVector<Id> above;
        for (Id p = m_nodes->parent(node); p != kNone && !m_made.at(p); p = m_nodes->parent(p))
            above.prepend(p);
        auto *self = const_cast<SSTree *>(this); // the nodes are set; this only makes their items
        if (!above.isEmpty())
            self->makeChildren(m_nodes->parent(above.constFirst()));
        for (const Id p : above)
            self->makeChildren(p);
        self->makeChildren(m_nodes->parent(node));
    }
    return m_items.at(node);
}

SSTree::Id SSTree::id(const Node *node)
{
    return node && node->type() == Item::Type ? static_cast<const Item *>(node)->index() : kNone;
}

SSTree::Id SSTree::idAt(int index) const
{
    makePendingNodes();
    if (index < 1 || index > m_order.size())
        throw com::ComError(35600, kSource, QStringLiteral("Index out of bounds"));
    return m_order.at(index - 1);
}

QString SSTree::nodeKey(Id node) const
{
    return m_nodes->key(node);
}

QString SSTree::nodeText(Id node) const
{
    const Node *made = m_items.at(node);
    return made ? made->text(0) : m_nodes->text(node).toString();
}

QString SSTree::nodeTag(Id node) const
{
    const Node *made = m_items.at(node);
    return made ? tag(made) : m_nodes->tag(node);
}

int SSTree::nodeImage(Id node) const
{
    const Node *made = m_items.at(node);
    return made ? image(made) : m_nodes->image(node);
}

bool SSTree::nodeExpanded(Id node) const
{
    const Node *made = m_items.at(node);
    return made ? made->isExpanded() : m_nodes->expanded(node) && hasChildren(node);
}

bool SSTree::nodeSelected(Id node) const
{
    const Node *made = m_items.at(node);
    return made && made->isSelected();
}

QIcon SSTree::icon(int image) const
{
    return image >= 1 && image <= m_icons.size() ? m_icons.at(image - 1) : QIcon();
}

SSTree::Node *SSTree::node(const QString &key) const
{
    makePendingNodes();
    return item(m_nodes ? m_nodes->find(key) : kNone);
}

SSTree::Node *SSTree::nodeAt(int index) const
{
    return item(idAt(index));
}

void SSTree::forget(Id node)
{
    QVector<Id> below{node};
    while (!below.isEmpty()) {
        const Id n = below.takeLast();
        for (const Id child : nodeChildren(n))
            below.append(child);
        if (Node *made = m_items.at(n))
            m_picked.removeAll(made);
        m_items[n] = nullptr;
        m_gone[n] = true;
    }
    m_order.removeIf([this](Id n) { return m_gone.at(n); });
}

void SSTree::remove(Node *node)
{
    if (!node)
        return;
    forget(id(node));
    delete node; // a tree item is owned by its parent; deleting detaches it
}

void SSTree::clearNodes()
{
    m_pending.reset();
    m_items.clear();
    m_made.clear();
    m_gone.clear();
    m_order.clear();
    m_picked.clear();
    m_count = 0;
    clear();
    m_nodes.reset(); // after the nodes that show it
}

QString SSTree::key(const Node *node)
{
    return node ? node->data(0, KeyRole).toString() : QString();
}

QString SSTree::text(const Node *node)
{
    return node ? node->text(0) : QString();
}

int SSTree::image(const Node *node)
{
    return node ? node->data(0, ImageRole).toInt() : 0;
}

QString SSTree::tag(const Node *node)
{
    return node ? node->data(0, TagRole).toString() : QString();
}

void SSTree::setImage(Node *node, int image)
{
    node->setData(0, ImageRole, image);
}

QString SSTree::fullPath(const Node *node)
{
    QString path;
    for (const Node *n = node; n; n = n->parent())
        path.prepend(n->parent() ? QLatin1Char('\\') + n->text(0) : n->text(0));
    return path;
}

void SSTree::select(Node *node)
{
    makePendingNodes();
    if (!node)
        return;
    if (!m_multiSelect)
        clearSelection();
    setCurrentItem(node);
    node->setSelected(true);
    if (!m_multiSelect)
        m_picked = {node};
}

void SSTree::setMultiSelect(bool on)
{
    m_multiSelect = on;
    setSelectionMode(on ? QAbstractItemView::MultiSelection : QAbstractItemView::SingleSelection);
}

QList<SSTree::Node *> SSTree::selectedNodes() const
{
    makePendingNodes();
    QList<Node *> nodes;
    for (Node *n : m_picked)
        if (n->isSelected())
            nodes << n;
    // Nodes selected some other way come after the picked ones.
    for (Node *n : selectedItems())
        if (!nodes.contains(n))
            nodes << n;
    return nodes;
}

void SSTree::clickNode(Node *node, bool withCtrl)
{
    if (!node)
        return;
    setFocus(Qt::MouseFocusReason);
    if (m_multiSelect && withCtrl) {
        setCurrentItem(node, 0, QItemSelectionModel::Toggle);
        m_picked.removeAll(node);
        if (node->isSelected())
            m_picked << node;
    } else {
        clearSelection();
        setCurrentItem(node);
        node->setSelected(true);
        m_picked = {node};
    }
    Q_EMIT NodeClick(node);
}

void SSTree::mousePressEvent(QMouseEvent *event)
{
    // The right button selects nothing: the selection stays with the
    // current object, on which the context menu's commands act.
    if (event->button() == Qt::RightButton) {
        event->accept();
        return;
    }
    Node *item = itemAt(event->position().toPoint());
    if (!item || event->button() != Qt::LeftButton) {
        QTreeWidget::mousePressEvent(event);
        return;
    }
    // Clicks on the expand arrow open or close the node and select nothing.
    const QRect rect = visualItemRect(item);
    if (event->position().x() < rect.left()) {
        QTreeWidget::mousePressEvent(event);
        return;
    }
    clickNode(item, event->modifiers() & Qt::ControlModifier);
}

void SSTree::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::RightButton)
        QTreeWidget::mouseReleaseEvent(event);
    const int button = event->button() == Qt::RightButton ? 2 : event->button() == Qt::MiddleButton ? 4 : 1;
    Q_EMIT MouseUp(button, event->globalPosition().toPoint());
}

void SSTree::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTreeWidget::mouseDoubleClickEvent(event);
    Q_EMIT DblClick();
}

void SSTree::keyPressEvent(QKeyEvent *event)
{
    bool swallow = false;
    Q_EMIT KeyDown(vbKeyCode(event), vbShift(event->modifiers()), swallow);
    if (swallow)
        return;
    Node *before = currentItem();
    QTreeWidget::keyPressEvent(event);
    // Moving the selection with the keys is a click on the new node.
    if (currentItem() && currentItem() != before)
        Q_EMIT NodeClick(currentItem());
}

void SSTree::keyReleaseEvent(QKeyEvent *event)
{
    QTreeWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        Q_EMIT KeyUp(vbKeyCode(event), vbShift(event->modifiers()));
}

void SSTree::focusInEvent(QFocusEvent *event)
{
    QTreeWidget::focusInEvent(event);
    Q_EMIT GotFocus();
}

void SSTree::focusOutEvent(QFocusEvent *event)
{
    QTreeWidget::focusOutEvent(event);
    Q_EMIT LostFocus();
}

int vbKeyCode(const QKeyEvent *event)
{
    const int key = event->key();
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 112 + (key - Qt::Key_F1);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return key; // same codes as the letters' upper case
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return (event->modifiers() & Qt::KeypadModifier) ? 96 + (key - Qt::Key_0) : key;
    switch (key) {
    case Qt::Key_Delete:
        return 46;
    case Qt::Key_Insert:
        return 45;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Tab:
        return 9;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Space:
        return 32;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Asterisk:
        return 106;
    case Qt::Key_Plus:
        return (event->modifiers() & Qt::KeypadModifier) ? 107 : 187;
    case Qt::Key_Minus:
        return (event->modifiers() & Qt::KeypadModifier) ? 109 : 189;
    default:
        return 0;
    }
}

int vbShift(Qt::KeyboardModifiers modifiers)
{
    int shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= 1;
    if (modifiers & Qt::ControlModifier)
        shift |= 2;
    if (modifiers & Qt::AltModifier)
        shift |= 4;
    return shift;
}

} // namespace controls
