#include "platform/mapi/messagelist.h"

#include "platform/mapi/messagedata.h"
#include "platform/mapi/tags.h"

#include <QHash>

#include <optional>
#include <utility>

namespace mapi {

struct MessageList::Data {
    StatePtr state;
    qint64 folder = 0;
    bool hidden = false;
    QString type;
    QString orderBy = QStringLiteral("m.id");
    std::optional<QVector<Message>> loaded;
    /// How many messages of each class the collection held when first
    /// counted, so that a count under another filter needs no new read.
    std::optional<QHash<QString, int>> classCounts;
};

namespace {

/// The column a sort on `tag` orders by.
QString sortColumn(uint32_t tag)
{
    switch (tag) {
    case PR_MESSAGE_DELIVERY_TIME:
        return QStringLiteral("COALESCE(m.delivered, m.received, m.created)");
    case PR_CLIENT_SUBMIT_TIME:
        return QStringLiteral("m.received");
    case PR_CREATION_TIME:
        return QStringLiteral("m.created");
    case PR_LAST_MODIFICATION_TIME:
        return QStringLiteral("m.modified");
    case PR_SUBJECT:
        return QStringLiteral("m.subject");
    default:
        // tagKey gives only hexadecimal digits, so the text is safe in SQL.
        return QStringLiteral("(SELECT value FROM fields WHERE message = m.id AND tag = '%1')")
            .arg(tagKey(tag));
    }
}

} // namespace

MessageList::MessageList(StatePtr state, qint64 folderRow, bool hidden) : d(std::make_shared<Data>())
{
    d->state = std::move(state);
    d->folder = folderRow;
    d->hidden = hidden;
}

QString MessageList::FilterRef::Type() const
{
    return m_list.d->type;
}

void MessageList::FilterRef::setType(const QString &messageClass)
{
    m_list.d->type = messageClass;
    m_list.d->loaded.reset();
}

void MessageList::Sort(int order, uint32_t tag)
{
    d->orderBy = sortColumn(tag) +
                 (order == 2 ? QStringLiteral(" DESC, m.id DESC") : QStringLiteral(" ASC, m.id ASC"));
    d->loaded.reset();
}

QString MessageList::where() const
{
    return d->type.isEmpty() ? QStringLiteral(" WHERE m.folder = ? AND m.hidden = ?")
                             : QStringLiteral(" WHERE m.folder = ? AND m.hidden = ? AND m.class = ?");
}

QVariantList MessageList::whereValues() const
{
    QVariantList values{d->folder, d->hidden ? 1 : 0};
    if (!d->type.isEmpty())
        values << d->type;
    return values;
}

int MessageList::Count() const
{
    if (d->loaded)
        return static_cast<int>(d->loaded->size());
    if (!d->classCounts) {
        QHash<QString, int> counts;
        QSqlQuery &q =
            d->state->run(QStringLiteral("SELECT class, COUNT(*) FROM messages WHERE folder = ? AND"
                                         " hidden = ? GROUP BY class"),
                          {d->folder, d->hidden ? 1 : 0});
        while (q.next())
            counts.insert(q.value(0).toString(), q.value(1).toInt());
        d->classCounts = std::move(counts);
    }
    if (!d->type.isEmpty())
        return d->classCounts->value(d->type);
    int count = 0;
    for (const int n : std::as_const(*d->classCounts))
        count += n;
    return count;
}

const QVector<Message> &MessageList::load() const
{
    if (!d->loaded) {
        QVector<Message> rows;
        QSqlQuery &q = d->state->run(messageSelect() + where() + QStringLiteral(" ORDER BY ") + d->orderBy,
                                     whereValues());
        while (q.next())
            rows.append(Message(messageFromQuery(d->state, q)));
        d->loaded = std::move(rows);
    }
    return *d->loaded;
}

QVector<Message> MessageList::all() const
{
    return load();
}

Message MessageList::Item(int index) const
{
    const QVector<Message> &rows = load();
    if (index < 1 || index > rows.size())
        throw notFound(QStringLiteral("The collection has no item %1.").arg(index));
    return rows.at(index - 1);
}

} // namespace mapi
