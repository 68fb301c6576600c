#include "navigation/treewalk.h"

#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"

#include <QHash>

#include <algorithm>

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
        for (const mapi::InfoStore &store : stores)
            m_routine.step([&] {
                if (store.ProviderName() != kExchangeProvider)
                    return;
                const mapi::Folder root = store.RootFolder();
                add(QStringLiteral("root"), store.Name(), store.Name(), root.StoreID(), kImageStore);
                addFolders(root, store.Name());
            });
    }

    /// Agents below the folders found to hold them; the nodes added here
    /// come after `count` and are not visited again.
    void addAgents()
    {
        const qsizetype count = m_nodes.size();
        for (qsizetype i = 0; i < count; ++i) {
            if (m_nodes.at(i).image != kImageFolderWithAgents)
                continue;
            const QString key = m_nodes.at(i).key;
            const QString tag = m_nodes.at(i).tag;
            m_routine.step([&] {
                mapi::MessageList hidden = m_session.GetFolder(key, tag).HiddenMessages();
                hidden.Filter().setType(mapi::kBindingClass);
                for (const mapi::Message &message : hidden)
                    add(key, message.ID(), message.Subject(), message.StoreID(),
                        classifyBindingMessage(message));
            });
        }
    }

    const QVector<TreeNode> &nodes() const { return m_nodes; }

private:
    void addFolders(const mapi::Folder &parent, const QString &parentKey)
    {
        const mapi::FolderList folders = parent.Folders();
        for (const mapi::Folder &folder : folders) {
            add(parentKey, folder.ID(), folder.Name(), folder.StoreID(), classifyFolder(folder, m_events));
            m_routine.step([&] { addFolders(folder, folder.ID()); });
        }
    }

    void add(const QString &parentKey, const QString &key, const QString &text, const QString &tag, int image)
    {
        if (m_index.contains(key))
            return;
        TreeNode node{parentKey, key, text, tag, image, 0, QString()};
        if (!parentKey.isEmpty()) {
            const auto parent = m_index.constFind(parentKey);
            if (parent == m_index.constEnd())
                return; // the tree refuses a node whose parent isn't there
            node.depth = m_nodes.at(*parent).depth + 1;
            node.path = m_nodes.at(*parent).path + QLatin1Char('\\') + text;
        }
        m_index.insert(key, m_nodes.size());
        m_nodes.append(node);
    }

    mapi::Session &m_session;
    events::Events &m_events;
    com::ResumeNext m_routine;
    QVector<TreeNode> m_nodes;
    QHash<QString, qsizetype> m_index;
};

} // namespace

QVector<TreeNode> walkTree(mapi::Session &session, events::Events &events, bool withAgents)
{
    Builder builder(session, events);
    builder.addRoot();
    builder.addStores();
    if (withAgents)
        builder.addAgents();
    QVector<TreeNode> ordered;
    for (const DisplayNode &n : displayOrder(builder.nodes()))
        ordered.append(n.node);
    return ordered;
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
