#pragma once

#include <QString>
#include <QVector>

namespace mapi {
class Session;
}
namespace events {
class Events;
}

namespace navigation {

/// One node of the folder tree as a refresh builds it.
struct TreeNode {
    QString parentKey; ///< empty for the root
    QString key;
    QString text;
    QString tag;
    int image = 0;
    int depth = 0;
};

/// Walks the session's stores as the tree's refresh does: the root, the
/// stores of the mail server's provider, their folders depth first, and,
/// with `withAgents`, the agents of every folder that holds binding messages.
/// Nodes come in the order they are added.
QVector<TreeNode> walkTree(mapi::Session &session, events::Events &events, bool withAgents);

/// The same nodes in display order (children sorted by text, case ignored),
/// each with its path below the root ("\Mailbox - Alice Admin\Inbox").
struct DisplayNode {
    TreeNode node;
    QString path;
};
QVector<DisplayNode> displayOrder(const QVector<TreeNode> &nodes);

/// The provider whose stores the tree shows.
inline const QString kExchangeProvider = QStringLiteral("Microsoft Exchange Server");

} // namespace navigation
