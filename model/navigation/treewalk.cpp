#include "navigation/treewalk.h"

#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstreenodes.h"
#include "platform/events/events.h"
#include "platform/mapi/folderscan.h"
#include "platform/mapi/session.h"
#include "platform/store/folderlevels.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace navigation {

namespace {

using controls::SSTreeNodes;

/// The nodes in the order a refresh adds them, each key once.
class Builder {
public:
    Builder(mapi::Session &session, events::Events &events) : m_session(session), m_events(events) {}

    void addRoot()
    {
        const QString user = m_routine.value<QString>([&] { return m_session.CurrentUser(); });
        add(SSTreeNodes::kNone, QStringLiteral("root"), rootText(user), QString(), kImageRoot, true);
    }

    void addStores()
    {
        const auto stores = m_routine.value<QVector<mapi::InfoStore>>([&] { return m_session.InfoStores(); });
        m_routine.step([&] { m_scan.emplace(m_session.MAPIOBJECT()); });
        if (!m_scan)
            return;
        const qsizetype expected =
            m_nodes->size() + stores.size() + m_scan->folderCount() + m_scan->bindingCount();
        m_nodes->reserve(expected, m_scan->keyBytes(), m_scan->textUnits());
        m_folderOf.reserve(expected);
        for (const mapi::InfoStore &store : stores) {
            if (store.ProviderName() != kExchangeProvider)
                continue;
            const Folder root = m_scan->rootFolder(store.row());
            if (root == mapi::FolderScan::kNone)
                continue; // a store without a root folder isn't shown
            const qint32 node =
                add(rootNode(), store.Name(), store.Name(), m_scan->storeId(root), kImageStore, false);
            addFolders(root, node == SSTreeNodes::kNone ? m_nodes->find(store.Name()) : node);
        }
    }

    /// Agents below the folders found to hold them; the nodes added here
    /// come after `count` and are not visited again.
    void addAgents()
    {
        const auto count = qint32(m_nodes->size());
        for (qint32 i = 0; i < count; ++i) {
            if (m_nodes->image(i) != kImageFolderWithAgents)
                continue;
            const Folder folder = m_folderOf.at(i);
            const qint32 tag = tagOf(folder);
            for (const qint32 number : m_scan->bindings(folder)) {
                const mapi::FolderScan::Binding binding = m_scan->binding(number);
                m_nodes->addUtf8(i, binding.id, binding.subject, tag, classifyHandlerField(binding.handler),
                                 false);
            }
        }
    }

    TreeTable result()
    {
        m_folderOf = {};
        m_scan.reset(); // what was read goes before the table is sorted
        m_nodes->sortChildren();
        return TreeTable{std::move(m_nodes), m_folderNodes, m_tooDeep};
    }

    void endFolders() { m_folderNodes = m_nodes->size(); }

private:
    using Folder = mapi::FolderScan::Index;

    qint32 rootNode() const { return m_nodes->find(QStringLiteral("root")); }

    /// The folders below a store's root, depth first, each before its
    /// subfolders; without recursion, so that no depth of nesting can
    /// exhaust the stack.
    void addFolders(Folder root, qint32 storeNode)
    {
        struct Pending {
            Folder folder;
            qint32 parent;
            int level;
        };
        QVector<Pending> stack;
        const auto push = [&](Folder parent, qint32 parentNode, int level) {
            const auto folders = m_scan->subfolders(parent);
            if (!folders.empty() && level > store::kMaxFolderLevels) {
                m_tooDeep = true;
                return;
            }
            for (auto it = folders.rbegin(); it != folders.rend(); ++it)
                stack.append(Pending{*it, parentNode, level});
        };
        push(root, storeNode, 1);
        while (!stack.isEmpty()) {
            const Pending p = stack.takeLast();
            const QByteArrayView id = m_scan->id(p.folder);
            qint32 node = m_nodes->addUtf8(p.parent, id, m_scan->name(p.folder), tagOf(p.folder),
                                           classify(p.folder), true);
            if (node == SSTreeNodes::kNone)
                node =
                    m_nodes->find(QString::fromUtf8(id)); // its subfolders go below the node that has the key
            else
                m_folderOf.append(p.folder);
            push(p.folder, node, p.level + 1);
        }
    }

    int classify(Folder folder)
    {
        const int access = m_scan->access(folder);
        const bool asked = access == mapi::kFullAccess && m_scan->hasEventSource(folder);
        return classifyFolder(access, asked && eventSourcesReached(folder), m_scan->hiddenCounts(folder));
    }

    /// Whether the event configuration gives a folder that has an event
    /// source its source: the same answer for every such folder, so asked
    /// once a walk.
    bool eventSourcesReached(Folder folder)
    {
        if (!m_eventSources) {
            try {
                m_events.GetEventSource(m_scan->folder(folder), true);
                m_eventSources = true;
            } catch (const com::ComError &) {
                m_eventSources = false;
            }
        }
        return *m_eventSources;
    }

    /// The tag number of a folder's store.
    qint32 tagOf(Folder folder)
    {
        const qint32 store = m_scan->store(folder);
        if (store >= m_storeTags.size())
            m_storeTags.resize(store + 1, SSTreeNodes::kNone);
        if (m_storeTags.at(store) == SSTreeNodes::kNone)
            m_storeTags[store] = m_nodes->tag(m_scan->storeId(folder));
        return m_storeTags.at(store);
    }

    /// The node's index, or kNone when the tree refuses it: its key stands
    /// already, or its parent isn't there.
    qint32 add(qint32 parent, const QString &key, const QString &text, const QString &tag, int image,
               bool open)
    {
        const qint32 node = m_nodes->add(parent, key, text, m_nodes->tag(tag), image, open);
        if (node != SSTreeNodes::kNone)
            m_folderOf.append(mapi::FolderScan::kNone);
        return node;
    }

    mapi::Session &m_session;
    events::Events &m_events;
    com::ResumeNext m_routine;
    std::optional<mapi::FolderScan> m_scan;
    std::shared_ptr<SSTreeNodes> m_nodes = std::make_shared<SSTreeNodes>();
    QVector<Folder> m_folderOf;  ///< the folder behind each node up to the agents, kNone for others
    QVector<qint32> m_storeTags; ///< each store's tag number, kNone until first asked
    std::optional<bool> m_eventSources;
    qsizetype m_folderNodes = 0;
    bool m_tooDeep = false;
};

} // namespace

TreeTable buildTree(mapi::Session &session, events::Events &events, bool withAgents)
{
    // The tree is a snapshot of one moment of the store. A store that can't
    // be read leaves the root alone.
    com::ResumeNext routine;
    std::unique_ptr<store::Database::Transaction> snapshot;
    routine.step([&] { snapshot = session.BeginRead(); });
    Builder builder(session, events);
    builder.addRoot();
    builder.addStores();
    builder.endFolders();
    if (withAgents)
        builder.addAgents();
    routine.step([&] {
        if (snapshot)
            snapshot->commit();
    });
    return builder.result();
}

TreeWalk walkTree(mapi::Session &session, events::Events &events, bool withAgents)
{
    const TreeTable table = buildTree(session, events, withAgents);
    const SSTreeNodes &nodes = *table.nodes;
    TreeWalk walk{{}, table.tooDeep};
    walk.nodes.reserve(nodes.size());
    for (qint32 i = 0; i < nodes.size(); ++i) {
        const qint32 parent = nodes.parent(i);
        const bool top = parent == SSTreeNodes::kNone;
        walk.nodes.append(TreeNode{top ? QString() : nodes.key(parent), nodes.key(i),
                                   nodes.text(i).toString(), nodes.tag(i), nodes.image(i),
                                   top ? 0 : walk.nodes.at(parent).depth + 1});
    }
    return walk;
}

QVector<DisplayNode> displayOrder(const QVector<TreeNode> &nodes)
{
    QHash<QString, QVector<qsizetype>> children;
    for (qsizetype i = 0; i < nodes.size(); ++i)
        children[nodes.at(i).parentKey].append(i);
    for (QVector<qsizetype> &list : children)
        std::stable_sort(list.begin(), list.end(), [&](qsizetype a, qsizetype b) {
            return nodes.at(a).text.compare(nodes.at(b).text, Qt::CaseInsensitive) < 0;
        });

    // Depth first, without recursion: a stack of the siblings still to visit.
    QVector<DisplayNode> ordered;
    ordered.reserve(nodes.size());
    QVector<std::pair<qsizetype, QString>> stack; // node index, parent's path
    const auto push = [&](const QString &parentKey, const QString &parentPath) {
        const QVector<qsizetype> list = children.value(parentKey);
        for (auto it = list.crbegin(); it != list.crend(); ++it)
            stack.append({*it, parentPath});
    };
    QVector<bool> visited(nodes.size(), false); // each node once, whatever keys repeat
    push(QString(), QString());
    while (!stack.isEmpty()) {
        const auto [index, parentPath] = stack.takeLast();
        if (visited.at(index))
            continue;
        visited[index] = true;
        const TreeNode &node = nodes.at(index);
        const QString path =
            node.parentKey.isEmpty() ? QString() : parentPath + QLatin1Char('\\') + node.text;
        ordered.append(DisplayNode{node, path});
        push(node.key, path);
    }
    return ordered;
}

} // namespace navigation
