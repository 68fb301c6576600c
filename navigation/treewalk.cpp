#include "navigation/treewalk.h"

#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/events/events.h"
#include "platform/mapi/folderscan.h"
#include "platform/mapi/session.h"
#include "platform/store/folderlevels.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace navigation {

namespace {

/// The nodes in the order a refresh adds them, each key once.
class Builder {
public:
    Builder(mapi::Session &session, events::Events &events) : m_session(session), m_events(events) {}

    void addRoot()
    {
        const QString user = m_routine.value<QString>([&] { return m_session.CurrentUser(); });
        add(QString(), QStringLiteral("root"), rootText(user), QString(), kImageRoot);
    }

    void addStores()
    {
        const auto stores = m_routine.value<QVector<mapi::InfoStore>>([&] { return m_session.InfoStores(); });
        m_routine.step([&] { m_scan.emplace(m_session.MAPIOBJECT()); });
        if (!m_scan)
            return;
        const qsizetype expected =
            m_nodes.size() + stores.size() + m_scan->folderCount() + m_scan->bindingCount();
        m_nodes.reserve(expected);
        m_folders.reserve(expected);
        m_index.reserve(expected);
        for (const mapi::InfoStore &store : stores) {
            if (store.ProviderName() != kExchangeProvider)
                continue;
            const mapi::Folder *root = m_scan->rootFolder(store.row());
            if (!root)
                continue; // a store without a root folder isn't shown
            add(QStringLiteral("root"), store.Name(), store.Name(), root->StoreID(), kImageStore);
            addFolders(*root, store.Name());
        }
    }

    /// Agents below the folders found to hold them; the nodes added here
    /// come after `count` and are not visited again.
    void addAgents()
    {
        const qsizetype count = m_nodes.size();
        for (qsizetype i = 0; i < count; ++i) {
            if (m_nodes.at(i).image != kImageFolderWithAgents)
                continue;
            const mapi::Folder *folder = m_folders.at(i);
            for (const mapi::BindingRow &binding : m_scan->bindings(*folder))
                add(m_nodes.at(i).key, binding.id, binding.subject, folder->StoreID(),
                    classifyHandlerField(binding.handler));
        }
    }

    TreeWalk result() { return TreeWalk{std::move(m_nodes), m_tooDeep}; }

private:
    /// The folders below a store's root, depth first, each before its
    /// subfolders; without recursion, so that no depth of nesting can
    /// exhaust the stack.
    void addFolders(const mapi::Folder &root, const QString &storeKey)
    {
        struct Pending {
            const mapi::Folder *folder;
            QString parentKey;
            int level;
        };
        QVector<Pending> stack;
        const auto push = [&](const mapi::Folder &parent, const QString &parentKey, int level) {
            const auto folders = m_scan->subfolders(parent);
            if (!folders.empty() && level > store::kMaxFolderLevels) {
                m_tooDeep = true;
                return;
            }
            for (auto it = folders.rbegin(); it != folders.rend(); ++it)
                stack.append(Pending{&*it, parentKey, level});
        };
        push(root, storeKey, 1);
        while (!stack.isEmpty()) {
            const Pending p = stack.takeLast();
            const mapi::Folder &folder = *p.folder;
            add(p.parentKey, folder.ID(), folder.Name(), folder.StoreID(),
                classifyFolder(folder, m_events, *m_scan), &folder);
            push(folder, folder.ID(), p.level + 1);
        }
    }

    void add(const QString &parentKey, const QString &key, const QString &text, const QString &tag, int image,
             const mapi::Folder *folder = nullptr)
    {
        if (m_index.contains(key))
            return;
        TreeNode node{parentKey, key, text, tag, image, 0};
        if (!parentKey.isEmpty()) {
            const auto parent = m_index.constFind(parentKey);
            if (parent == m_index.constEnd())
                return; // the tree refuses a node whose parent isn't there
            node.depth = m_nodes.at(*parent).depth + 1;
        }
        m_index.insert(key, m_nodes.size());
        m_nodes.append(node);
        m_folders.append(folder);
    }

    mapi::Session &m_session;
    events::Events &m_events;
    com::ResumeNext m_routine;
    std::optional<mapi::FolderScan> m_scan;
    QVector<TreeNode> m_nodes;
    QVector<const mapi::Folder *> m_folders; ///< the folder behind each node, null for others
    QHash<QString, qsizetype> m_index;
    bool m_tooDeep = false;
};

} // namespace

TreeWalk walkTree(mapi::Session &session, events::Events &events, bool withAgents)
{
    // The tree is a snapshot of one moment of the store. A store that can't
    // be read leaves the root alone.
    com::ResumeNext routine;
    std::unique_ptr<store::Database::Transaction> snapshot;
    routine.step([&] { snapshot = session.BeginRead(); });
    Builder builder(session, events);
    builder.addRoot();
    builder.addStores();
    if (withAgents)
        builder.addAgents();
    routine.step([&] {
        if (snapshot)
            snapshot->commit();
    });
    return builder.result();
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
