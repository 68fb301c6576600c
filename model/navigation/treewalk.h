#pragma once

#include <QString>
#include <QVector>

#include <memory>

namespace mapi {
class Session;
}
namespace events {
class Events;
}
namespace controls {
class SSTreeNodes;
}

namespace navigation {

/// One node of the folder tree as a refresh builds it.
struct TreeNode {
    QString parentKey; ///< empty for the root
    QString key;       ///< "root", a store's name, a folder's or agent message's ID
    QString text;
    QString tag;   ///< the StoreID behind the node; empty for the root
    int image = 0; ///< the node's kind, see nodekinds.h
    int depth = 0; ///< 0 the root, 1 a store, 2 a store's top folders, ...
};

/// The tree's nodes, and whether folders deeper than store::kMaxFolderLevels
/// were left out.
struct TreeWalk {
    QVector<TreeNode> nodes;
    bool tooDeep = false;
};

/// The tree's nodes as one table that both trees show: the root, stores and
/// folders come first, the agents after `folderNodes`. The root and the
/// folders are marked to open, the stores and agents not; each node's
/// children are in text order.
struct TreeTable {
    std::shared_ptr<controls::SSTreeNodes> nodes;
    qsizetype folderNodes = 0;
    bool tooDeep = false;
};

/// Walks a logged-on session as the tree's refresh does, from one read of
/// the store, and gives the nodes in the order the refresh adds them: the
/// root; the stores of provider "Microsoft Exchange Server" in the
/// session's order, each followed by its folders depth first, each
/// classified; and, with `withAgents`, the agents of every folder of image
/// 7. As in the tree, a node whose key is already there is not added again
/// (its subfolders go below the node that has the key), and a step that
/// fails is passed over.
TreeTable buildTree(mapi::Session &session, events::Events &events, bool withAgents);

/// The same nodes as a list.
TreeWalk walkTree(mapi::Session &session, events::Events &events, bool withAgents);

/// A node and its path below the root.
struct DisplayNode {
    TreeNode node;
    QString path; ///< "\Mailbox - Alice Admin\Inbox\Auto Reply"; "" for the root
};

/// Nodes in the order the tree shows them, from nodes in any order in
/// which parents come before their children: siblings sorted by text, case
/// ignored, equal texts in the order in which they were added.
QVector<DisplayNode> displayOrder(const QVector<TreeNode> &nodes);

/// The provider whose stores the tree shows.
inline const QString kExchangeProvider = QStringLiteral("Microsoft Exchange Server");

} // namespace navigation
