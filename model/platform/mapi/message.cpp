#include "platform/mapi/message.h"

#include "platform/mapi/messagedata.h"
#include "platform/mapi/tags.h"
#include "platform/store/agentchanges.h"

namespace mapi {

namespace {
const QString kTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");
}

QDateTime storeTime(const QVariant &value)
{
    return value.isNull() || !value.isValid() ? QDateTime()
                                              : QDateTime::fromString(value.toString(), kTimeFormat);
}

const QString &messageSelect()
{
    static const QString sql = QStringLiteral(
        "SELECT m.id, m.entry_id, s.store_id, f.entry_id, m.class, m.subject, m.created, m.modified,"
        " m.received FROM messages m JOIN folders f ON f.id = m.folder JOIN stores s ON s.id = f.store");
    return sql;
}

std::shared_ptr<MessageData> messageFromQuery(const StatePtr &state, const QSqlQuery &q)
{
    auto d = std::make_shared<MessageData>();
    d->state = state;
    d->row = q.value(0).toLongLong();
    d->id = q.value(1).toString();
    d->storeId = q.value(2).toString();
    d->folderId = q.value(3).toString();
    d->cls = q.value(4).toString();
    d->subject = q.value(5).toString();
    d->created = q.value(6);
    d->modified = q.value(7);
    d->received = q.value(8);
    return d;
}

Message loadMessage(const StatePtr &state, qint64 row)
{
    QSqlQuery &q = state->run(messageSelect() + QStringLiteral(" WHERE m.id = ?"), {row});
    if (!q.next())
        throw notFound(QStringLiteral("No message has that identifier."));
    Message message(messageFromQuery(state, q));
    q.finish();
    return message;
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
}

QDateTime Message::TimeCreated() const
{
    return storeTime(d->created);
}

QDateTime Message::TimeLastModified() const
{
    return storeTime(d->modified);
}

QDateTime Message::TimeReceived() const
{
    return storeTime(d->received);
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
    QHash<QString, QVariant> fields = d->pending;
    fields.insert(tagKey(PR_LAST_MODIFIER_NAME), st.user.toLatin1());
    st.db->transaction([&] {
        const bool agent = d->cls == kBindingClass;
        const store::AgentImage before =
            agent ? store::agentImage(st.statements(), d->id) : store::AgentImage();
        QSqlQuery &touch =
            st.run(QStringLiteral("UPDATE messages SET subject = ?, modified = ? WHERE id = ?"),
                   {d->subject, now, d->row});
        if (touch.numRowsAffected() == 0)
            throw notFound(QStringLiteral("The message has been deleted."));
        if (agent)
            store::raiseAgentChange(st.statements(), d->id, st.user,
                                    fields.contains(tagKey(PR_SCRIPT)) ? store::ChangeKind::Script
                                                                       : store::ChangeKind::Properties,
                                    before);
        for (auto it = fields.constBegin(); it != fields.constEnd(); ++it) {
            if (it.value().isValid())
                st.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"
                                      " ON CONFLICT(message, tag) DO UPDATE SET value = excluded.value"),
                       {d->row, it.key(), it.value()});
            else
                st.run(QStringLiteral("DELETE FROM fields WHERE message = ? AND tag = ?"),
                       {d->row, it.key()});
        }
    });
    d->pending.clear();
    d->modified = now;
}

void Message::Delete()
{
    SessionState &st = *d->state;
    st.check();
    st.db->transaction([&] {
        const bool agent = d->cls == kBindingClass;
        const store::AgentImage before =
            agent ? store::agentImage(st.statements(), d->id) : store::AgentImage();
        QSqlQuery &q = st.run(QStringLiteral("DELETE FROM messages WHERE id = ?"), {d->row});
        if (q.numRowsAffected() == 0)
            throw notFound(QStringLiteral("The message has already been deleted."));
        if (agent)
            store::raiseAgentChange(st.statements(), d->id, st.user, store::ChangeKind::Deleted, before);
    });
    d->pending.clear();
}

} // namespace mapi
