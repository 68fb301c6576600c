#pragma once

#include "platform/mapi/sessionstate.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVector>

#include <cstdint>
#include <memory>

namespace mapi {

struct MessageData;

/// One field of a message, by tag or by name: its value is read from the
/// store, and a value written stays with the message until its `Update`.
class Field {
public:
    Field(std::shared_ptr<MessageData> message, QString key, uint32_t tag);

    /// Texts of 8-bit tags and named fields are QByteArray; numbers int; an
    /// empty variant when the message has no such field.
    QVariant Value() const;
    void setValue(const QVariant &value);

private:
    std::shared_ptr<MessageData> m_message;
    QString m_key;
    uint32_t m_tag;
};

/// A message of a folder, ordinary or hidden.
class Message {
public:
    explicit Message(std::shared_ptr<MessageData> data);

    QString ID() const;
    QString StoreID() const;
    QString FolderID() const;
    QString Class() const;
    QString Subject() const;
    void setSubject(const QString &subject);
    QDateTime TimeCreated() const;
    QDateTime TimeLastModified() const;
    QDateTime TimeReceived() const;

    Field Fields(uint32_t tag) const;
    Field Fields(const QString &name) const;

    /// Stores the changed subject and fields in one go; the modification
    /// time and modifier follow.
    void Update();
    /// Removes the message and everything on it.
    void Delete();

    /// The store's own row of the message (for the platform's other objects).
    qint64 row() const;
    const StatePtr &state() const;

private:
    std::shared_ptr<MessageData> d;
};

/// Reads a message by its store row.
Message loadMessage(const StatePtr &state, qint64 row);

/// The ordinary or the hidden messages of a folder. `Filter().Type` limits
/// the collection to one message class; `Sort` orders it.
class MessageList {
public:
    MessageList(StatePtr state, qint64 folderRow, bool hidden);

    class FilterRef {
    public:
        explicit FilterRef(MessageList &list) : m_list(list) {}
        QString Type() const;
        void setType(const QString &messageClass);

    private:
        MessageList &m_list;
    };

    FilterRef Filter() { return FilterRef(*this); }
    /// Order 1 ascending, 2 descending, on one tag.
    void Sort(int order, uint32_t tag);

    int Count() const;
    /// From 1.
    Message Item(int index) const;

    QVector<Message> all() const;
    auto begin() const { return load().begin(); }
    auto end() const { return load().end(); }

private:
    struct Data {
        StatePtr state;
        qint64 folder = 0;
        bool hidden = false;
        QString type;
        QString orderBy = QStringLiteral("m.id");
        mutable std::unique_ptr<QVector<Message>> loaded;
    };
    const QVector<Message> &load() const;
    QString where() const;

    std::shared_ptr<Data> d;
};

} // namespace mapi
