#pragma once

#include "platform/mapi/message.h"
#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QVector>

#include <cstdint>
#include <memory>

namespace mapi {

/// The ordinary or the hidden messages of a folder. `Filter().Type` limits
/// the collection to one message class and `Sort` orders it; `Count`, `Item`
/// and iteration honour both. A collection reads the store when first
/// counted (the number of each class) and when first enumerated (the
/// messages, kept until the filter or the order changes); a new collection
/// from the folder sees what has changed since. Copies of a list share one
/// collection, as references to one object do.
class MessageList {
public:
    MessageList(StatePtr state, qint64 folderRow, bool hidden);

    /// The collection's filter; what is set on it applies at once.
    class FilterRef {
    public:
        explicit FilterRef(MessageList &list) : m_list(list) {}
        QString Type() const;
        /// One message class; the empty text shows every class again.
        void setType(const QString &messageClass);

    private:
        MessageList &m_list;
    };

    FilterRef Filter() { return FilterRef(*this); }

    /// Order 1 ascending, 2 descending, on one tag; messages that tie keep
    /// the order in which they were made (reversed when descending).
    void Sort(int order, uint32_t tag);

    int Count() const;
    /// From 1; an index outside 1 to Count raises 0x8004010F.
    Message Item(int index) const;

    QVector<Message> all() const;
    auto begin() const { return load().begin(); }
    auto end() const { return load().end(); }

private:
    struct Data;
    const QVector<Message> &load() const;
    QString where() const;
    QVariantList whereValues() const;

    std::shared_ptr<Data> d;
};

} // namespace mapi
