#pragma once

#include "platform/mapi/field.h"
#include "platform/mapi/sessionstate.h"

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <memory>

namespace mapi {

struct MessageData;

/// A message of a folder, ordinary or hidden. A handle keeps what the
/// message was read with; `Subject` and fields written through it reach the
/// store with `Update`. Copies of a handle share one message object.
class Message {
public:
    explicit Message(std::shared_ptr<MessageData> data);

    QString ID() const;
    QString StoreID() const;
    QString FolderID() const;
    /// The message class ("IPM.Note", "IPC.Microsoft.EventBinding", ...).
    QString Class() const;
    QString Subject() const;
    void setSubject(const QString &subject);
    QDateTime TimeCreated() const;
    QDateTime TimeLastModified() const;
    /// Invalid for a message that was never received (hidden messages).
    QDateTime TimeReceived() const;

    Field Fields(uint32_t tag) const;
    Field Fields(const QString &name) const;

    /// Stores the subject and the written fields in one transaction; the
    /// modification time moves on and PR_LAST_MODIFIER_NAME becomes the
    /// session's user. Raises 0x8004010F when the message has gone.
    void Update();
    /// Removes the message and everything on it; raises 0x8004010F when it
    /// has already gone.
    void Delete();

    /// The store's own row of the message, for the platform's other objects.
    qint64 row() const;
    const StatePtr &state() const;

private:
    std::shared_ptr<MessageData> d;
};

/// Reads a message by its store row; raises 0x8004010F when there is none.
Message loadMessage(const StatePtr &state, qint64 row);

} // namespace mapi
