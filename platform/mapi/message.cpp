#include "platform/mapi/message.h"

#include "platform/mapi/tags.h"

namespace mapi {

struct MessageData {
    StatePtr state;
    qint64 row = 0;
    QString id, storeId, folderId, cls, subject;
    QDateTime created, modified, received;
    bool subjectChanged = false;
    QHash<QString, QVariant> pending;
};

namespace {

const QString kSelect = QStringLiteral(
    "SELECT m.id, m.entry_id, s.store_id, f.entry_id, m.class, m.subject, m.created, m.modified, m.received"
    " FROM messages m JOIN folders f ON f.id = m.folder JOIN stores s ON s.id = f.store");

QDateTime storeTime(const QVariant &v)
{
    return v.isNull() ? QDateTime()
                      : QDateTime::fromString(v.toString(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

std::shared_ptr<MessageData> fromRow(const StatePtr &state, const QSqlQuery &q)
{
    auto d = std::make_shared<MessageData>();
    d->state = state;
    d->row = q.value(0).toLongLong();
    d->id = q.value(1).toString();
    d->storeId = q.value(2).toString();
    d->folderId = q.value(3).toString();
    d->cls = q.value(4).toString();
    d->subject = q.value(5).toString();
    d->created = storeTime(q.value(6));
    d->modified = storeTime(q.value(7));
    d->received = storeTime(q.value(8));
    return d;
}

/// What a stored field value is to the caller: numbers stay numbers, texts
/// are bytes.
QVariant fieldValue(const QVariant &stored, uint32_t tag)
{
    if (stored.isNull())
        return QVariant();
    if (tag != 0 && (tag & 0xFFFF) == 0x0003)
        return stored.toInt();
    if (stored.typeId() == QMetaType::QByteArray)
        return stored;
    if (stored.typeId() == QMetaType::QString)
        return stored.toString().toLatin1();
    return stored;
}

QVariant storedValue(const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return value.toString().toLatin1();
    return value;
}

} // namespace

Field::Field(std::shared_ptr<MessageData> message, QString key, uint32_t tag)
    : m_message(std::move(message)), m_key(std::move(key)), m_tag(tag)
{
}

QVariant Field::Value() const
{
    const auto it = m_message->pending.constFind(m_key);
    if (it != m_message->pending.constEnd())
        return it.value();
    QSqlQuery &q =
        m_message->state->query(QStringLiteral("SELECT value FROM fields WHERE message = ? AND tag = ?"));
    q.addBindValue(m_message->row);
    q.addBindValue(m_key);
    m_message->state->db->exec(q);
    return q.next() ? fieldValue(q.value(0), m_tag) : QVariant();
}

void Field::setValue(const QVariant &value)
{
    m_message->pending.insert(m_key, value);
}

Message::Message(std::shared_ptr<MessageData> data) : d(std::move(data)) {}

QString Message::ID() const
{
    return d->id;
}
QString Message::StoreID() const
{
    return d->storeId;
}
QString Message::FolderID() const
{
    return d->folderId;
}
QString Message::Class() const
{
    return d->cls;
}
QString Message::Subject() const
{
    return d->subject;
}
void Message::setSubject(const QString &subject)
{
    d->subject = subject;
    d->subjectChanged = true;
}
QDateTime Message::TimeCreated() const
{
    return d->created;
}
QDateTime Message::TimeLastModified() const
{
    return d->modified;
}
QDateTime Message::TimeReceived() const
{
    return d->received;
}
qint64 Message::row() const
{
    return d->row;
}
const StatePtr &Message::state() const
{
    return d->state;
}

Field Message::Fields(uint32_t tag) const
{
    return Field(d, tagKey(tag), tag);
}

Field Message::Fields(const QString &name) const
{
    return Field(d, name, 0);
}

void Message::Update()
{
    SessionState &st = *d->state;
    st.check();
    const QString now = store::Database::now();
    st.db->transaction([&] {
        if (!st.db->scalar(QStringLiteral("SELECT 1 FROM messages WHERE id = ?"), {d->row}).isValid())
            throw notFound(QStringLiteral("The message has been deleted."));
        st.db->run(QStringLiteral("UPDATE messages SET subject = ?, modified = ? WHERE id = ?"),
                   {d->subject, now, d->row});
        d->pending.insert(tagKey(PR_LAST_MODIFIER_NAME), st.user.toLatin1());
        for (auto it = d->pending.constBegin(); it != d->pending.constEnd(); ++it) {
            if (it.value().isNull())
                st.db->run(QStringLiteral("DELETE FROM fields WHERE message = ? AND tag = ?"),
                           {d->row, it.key()});
            else
                st.db->run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"
                                          " ON CONFLICT(message, tag) DO UPDATE SET value = excluded.value"),
                           {d->row, it.key(), storedValue(it.value())});
        }
    });
    d->pending.clear();
    d->subjectChanged = false;
    d->modified = QDateTime::fromString(now, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

void Message::Delete()
{
    SessionState &st = *d->state;
    st.check();
    st.db->transaction([&] {
        QSqlQuery q = st.db->run(QStringLiteral("DELETE FROM messages WHERE id = ?"), {d->row});
        if (q.numRowsAffected() == 0)
            throw notFound(QStringLiteral("The message has already been deleted."));
    });
}

Message loadMessage(const StatePtr &state, qint64 row)
{
    QSqlQuery &q = state->query(kSelect + QStringLiteral(" WHERE m.id = ?"));
    q.addBindValue(row);
    state->db->exec(q);
    if (!q.next())
        throw notFound(QStringLiteral("No message has that identifier."));
    return Message(fromRow(state, q));
}

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
    QString column;
    switch (tag) {
    case PR_MESSAGE_DELIVERY_TIME:
        column = QStringLiteral("COALESCE(m.delivered, m.received, m.created)");
        break;
    case 0x00390040: // the time it was sent
        column = QStringLiteral("m.received");
        break;
    case 0x30070040:
        column = QStringLiteral("m.created");
        break;
    case 0x30080040:
        column = QStringLiteral("m.modified");
        break;
    case 0x0037001E:
        column = QStringLiteral("m.subject");
        break;
    default:
        column =
            QStringLiteral("(SELECT value FROM fields WHERE message = m.id AND tag = '%1')").arg(tagKey(tag));
        break;
    }
    d->orderBy =
        column + (order == 2 ? QStringLiteral(" DESC, m.id DESC") : QStringLiteral(" ASC, m.id ASC"));
    d->loaded.reset();
}

QString MessageList::where() const
{
    return d->type.isEmpty() ? QStringLiteral(" WHERE m.folder = ? AND m.hidden = ?")
                             : QStringLiteral(" WHERE m.folder = ? AND m.hidden = ? AND m.class = ?");
}

int MessageList::Count() const
{
    if (d->loaded)
        return static_cast<int>(d->loaded->size());
    QSqlQuery &q = d->state->query(QStringLiteral("SELECT COUNT(*) FROM messages m") + where());
    q.addBindValue(d->folder);
    q.addBindValue(d->hidden ? 1 : 0);
    if (!d->type.isEmpty())
        q.addBindValue(d->type);
    d->state->db->exec(q);
    return q.next() ? q.value(0).toInt() : 0;
}

const QVector<Message> &MessageList::load() const
{
    if (!d->loaded) {
        auto rows = std::make_unique<QVector<Message>>();
        QSqlQuery &q = d->state->query(kSelect + where() + QStringLiteral(" ORDER BY ") + d->orderBy);
        q.addBindValue(d->folder);
        q.addBindValue(d->hidden ? 1 : 0);
        if (!d->type.isEmpty())
            q.addBindValue(d->type);
        d->state->db->exec(q);
        while (q.next())
            rows->append(Message(fromRow(d->state, q)));
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
        throw com::ComError(com::err::NotFound, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("[Collaboration Data Objects - [E_INVALIDARG(80070057)]] "
                                           "Index %1 is out of range.")
                                .arg(index));
    return rows.at(index - 1);
}

} // namespace mapi
