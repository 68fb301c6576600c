#pragma once

#include "platform/mapi/sessionstate.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <optional>

namespace catalogue {

/// What the agent walk reads of one agent's binding message and folder.
struct AgentMessage {
    QString storeId;
    qint64 folderRow = 0;
    QString folderId;
    bool eventSource = false;
    QString host;
    QVariant created, modified; ///< as the store keeps them
    QString createdBy, modifiedBy;
};

/// What the walk takes of a binding.
struct AgentBinding {
    int16_t mask = 0;
    QString handlerClass;
};

/// Every binding message of a store with its folder's path, and every
/// binding, read in three passes over the store's rows instead of a handful
/// of reads for each agent. Read inside the walk's snapshot, it answers as
/// the lookups one by one would.
class AgentIndex {
public:
    explicit AgentIndex(const mapi::StatePtr &state);

    /// The binding message with these identifiers; null where the store has
    /// no binding message of that name (the walk then asks the store itself).
    const AgentMessage *message(const QString &entryId, const QString &storeId) const;

    /// The first binding of the folder's event source whose entry id is
    /// `entryId`, in the source's order.
    std::optional<AgentBinding> binding(qint64 folderRow, const QString &entryId) const;

    /// The mail client's path of a folder that holds a binding message.
    QString folderPath(qint64 folderRow) const { return m_paths.value(folderRow); }

    /// A time as a message gives it, each distinct time read once (agents
    /// installed together share theirs, and local time costs).
    QDateTime time(const QVariant &stored) const;

private:
    void readMessages(mapi::SessionState &state);
    void readBindings(mapi::SessionState &state);
    void readPaths(mapi::SessionState &state);

    QHash<QString, AgentMessage> m_messages;
    QHash<std::pair<qint64, QString>, AgentBinding> m_bindings;
    QHash<qint64, QString> m_paths;
    mutable QHash<QString, QDateTime> m_times;
};

} // namespace catalogue
