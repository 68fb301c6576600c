#pragma once

// The state one message handle shares with its fields; private to the
// session's objects.

#include "platform/mapi/sessionstate.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariant>

#include <memory>

namespace mapi {

struct MessageData {
    StatePtr state;
    qint64 row = 0;
    QString id, storeId, folderId, cls, subject;
    /// Times as the store keeps them; read into dates only when asked for,
    /// since a listing seldom needs them and local time costs.
    QVariant created, modified, received;
    /// Fields written since the last Update, by their key in the store.
    QHash<QString, QVariant> pending;
};

/// A time as the store keeps it ("yyyy-MM-dd HH:mm:ss", local time).
QDateTime storeTime(const QVariant &value);

/// The columns a message handle is read with, and the joins they need;
/// callers add their WHERE and ORDER BY.
const QString &messageSelect();

/// A message's data from a row of `messageSelect()`.
std::shared_ptr<MessageData> messageFromQuery(const StatePtr &state, const QSqlQuery &q);

} // namespace mapi
