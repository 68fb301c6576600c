#include "navigation/treewalk.h"

#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"

#include <QHash>

#include <algorithm>
#include <functional>

namespace navigation {

namespace {

void addFolders(const mapi::Folder &parent, const QString &parentKey, int depth, events::Events &events,
                QVector<TreeNode> &nodes)
{
    mapi::FolderList folders = parent.Folders();
    for (const mapi::Folder &folder : folders) {
        nodes.append(TreeNode{parentKey, folder.ID(), folder.Name(), folder.StoreID(),
                              classifyFolder(folder, events), depth});
        addFolders(folder, folder.ID(), depth + 1, events, nodes);
    }
}

} // namespace

QVector<TreeNode> walkTree(mapi::Session &session, events::Events &events, bool withAgents)
{
    QVector<TreeNode> nodes;
    nodes.append(TreeNode{QString(), QStringLiteral("root"), rootText(session.CurrentUser()), QString(),
                          kImageRoot, 0});
    for (const mapi::InfoStore &store : session.InfoStores()) {
        if (store.ProviderName() != kExchangeProvider)
            continue;
        const mapi::Folder root = store.RootFolder();
        nodes.append(
            TreeNode{QStringLiteral("root"), store.Name(), store.Name(), root.StoreID(), kImageStore, 1});
        addFolders(root, store.Name(), 2, events, nodes);
    }
    if (!withAgents)
        return nodes;
    const int count = static_cast<int>(nodes.size());
    for (int i = 0; i < count; ++i) {
        if (nodes.at(i).image != kImageFolderWithAgents)
            continue;
        const TreeNode folderNode = nodes.at(i);
        try {
            mapi::MessageList hidden = session.GetFolder(folderNode.key, folderNode.tag).HiddenMessages();
            hidden.Filter().setType(mapi::kBindingClass);
            for (const mapi::Message &message : hidden)
                nodes.append(
                    TreeNode{folderNode.key, message.ID(), message.Subject(), message.StoreID(),
                             classifyHandlerField(message.Fields(mapi::PR_HANDLER).Value().toByteArray()),
                             folderNode.depth + 1});
        } catch (const com::ComError &) {
            // The folder keeps its image with no agents below it.
        }
    }
    return nodes;
}

QVector<DisplayNode> displayOrder(const QVector<TreeNode> &nodes)
{
    QHash<QString, QVector<int>> children;
    for (int i = 0; i < nodes.size(); ++i)
        children[nodes.at(i).parentKey].append(i);
    QVector<DisplayNode> ordered;
    std::function<void(const QString &, const QString &)> visit = [&](const QString &parentKey,
                                                                      const QString &path) {
        QVector<int> list = children.value(parentKey);
        std::stable_sort(list.begin(), list.end(), [&](int a, int b) {
            return nodes.at(a).text.compare(nodes.at(b).text, Qt::CaseInsensitive) < 0;
        });
        for (int i : list) {
            const TreeNode &n = nodes.at(i);
            const QString own =
                n.key == QLatin1String("root") ? QString() : path + QLatin1Char('\\') + n.text;
            ordered.append(DisplayNode{n, own});
            visit(n.key, own);
        }
    };
    visit(QString(), QString());
    return ordered;
}

} // namespace navigation
