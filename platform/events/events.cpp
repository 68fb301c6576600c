#include "platform/events/events.h"

#include "platform/events/guid.h"
#include "platform/mapi/tags.h"

namespace events {

namespace {
const QString kSource = QStringLiteral("MSExchange.Events");

int minutesOf(const QTime &t)
{
    return t.isValid() ? t.hour() * 60 + t.minute() : 0;
}

QTime timeOf(int minutes)
{
    return QTime(0, 0).addSecs(qBound(0, minutes, 24 * 60 - 1) * 60);
}
} // namespace

struct BindingData {
    mapi::StatePtr state;
    qint64 row = 0; ///< 0 until stored
    qint64 folder = 0;
    QString host;
    QString entryId, stateId;
    QString name;
    bool active = false;
    int16_t mask = 0;
    QString handler;
    int16_t schedType = 0, interval = 0, days = 0;
    QTime start, end, at;
};

void checkAuthor(const mapi::StatePtr &state, const QString &host)
{
    const QVariant allowed = state->db->scalar(
        QStringLiteral("SELECT CASE WHEN h.restricted = 0 THEN 1 ELSE"
                       " EXISTS(SELECT 1 FROM host_authors a WHERE a.host = h.id AND a.user = ?) END"
                       " FROM hosts h WHERE h.name = ?"),
        {state->user, host});
    if (allowed.isValid() && allowed.toInt() == 0)
        throw com::ComError(com::err::PermissionDenied, kSource, QStringLiteral("Permission denied"));
}

// ---- Schedule ----

void Schedule::Clear()
{
    d->schedType = 0;
    d->interval = 0;
    d->days = 0;
    d->start = d->end = d->at = QTime(0, 0);
}
QTime Schedule::At() const
{
    return d->at;
}
void Schedule::setAt(const QTime &at)
{
    d->at = at;
}
int16_t Schedule::Days() const
{
    return d->days;
}
void Schedule::setDays(int16_t days)
{
    d->days = days;
}
QTime Schedule::StartTime() const
{
    return d->start;
}
void Schedule::setStartTime(const QTime &time)
{
    d->start = time;
}
QTime Schedule::EndTime() const
{
    return d->end;
}
void Schedule::setEndTime(const QTime &time)
{
    d->end = time;
}
int16_t Schedule::interval() const
{
    return d->interval;
}
void Schedule::setInterval(int16_t minutes)
{
    d->interval = minutes;
}
int16_t Schedule::Type() const
{
    return d->schedType;
}
void Schedule::setType(int16_t type)
{
    d->schedType = type;
}

// ---- Binding ----

Binding::Binding(std::shared_ptr<BindingData> data) : d(std::move(data)) {}

QString Binding::EntryID() const
{
    return d->entryId;
}
QString Binding::StateMessageID() const
{
    return d->stateId;
}
QString Binding::Name() const
{
    return d->name;
}
void Binding::setName(const QString &name)
{
    d->name = name;
}
bool Binding::Active() const
{
    return d->active;
}
void Binding::setActive(bool active)
{
    d->active = active;
}
int16_t Binding::EventMask() const
{
    return d->mask;
}
void Binding::setEventMask(int16_t mask)
{
    d->mask = mask;
}
QString Binding::HandlerClassID() const
{
    return d->handler;
}
void Binding::setHandlerClassID(const QString &classId)
{
    d->handler = classId;
}
events::Schedule Binding::Schedule() const
{
    return events::Schedule(d);
}

void Binding::SaveChanges()
{
    store::Database &db = *d->state->db;
    d->state->check();
    checkAuthor(d->state, d->host);
    const QString now = store::Database::now();
    const QByteArray user = d->state->user.toLatin1();
    const QVariantList schedule = {d->schedType,      d->interval, minutesOf(d->start),
                                   minutesOf(d->end), d->days,     minutesOf(d->at)};
    db.transaction([&] {
        const qint64 storeRow =
            db.scalar(QStringLiteral("SELECT store FROM folders WHERE id = ?"), {d->folder}).toLongLong();
        qint64 messageRow = 0;
        if (d->row == 0) {
            // The binding message and the state message, as the service makes them.
            const auto hiddenMessage = [&](const QString &cls, const QString &subject) {
                QSqlQuery q =
                    db.run(QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created,"
                                          " modified) VALUES(?, 1, ?, ?, ?, ?)"),
                           {d->folder, cls, subject, now, now});
                const qint64 row = q.lastInsertId().toLongLong();
                return std::make_pair(row, db.assignEntryId(store::IdKind::Message, storeRow, row));
            };
            const auto binding = hiddenMessage(mapi::kBindingClass, d->name);
            const auto state = hiddenMessage(mapi::kStateClass, d->name);
            messageRow = binding.first;
            for (const auto &[tag, value] :
                 {std::pair{mapi::PR_CREATOR_NAME, user}, {mapi::PR_LAST_MODIFIER_NAME, user}})
                db.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"),
                       {messageRow, mapi::tagKey(tag), value});
            db.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"),
                   {state.first, mapi::tagKey(mapi::PR_AGENT_LOG), QByteArray("")});
            QSqlQuery q =
                db.run(QStringLiteral("INSERT INTO bindings(folder, message, state_message) VALUES(?, ?, ?)"),
                       {d->folder, binding.second, state.second});
            d->row = q.lastInsertId().toLongLong();
            d->entryId = binding.second;
            d->stateId = state.second;
        } else {
            messageRow = db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {d->entryId})
                             .toLongLong();
            if (messageRow)
                db.run(QStringLiteral("UPDATE messages SET subject = ?, modified = ? WHERE id = ?"),
                       {d->name, now, messageRow});
            if (messageRow)
                db.run(QStringLiteral(
                           "INSERT INTO fields(message, tag, value) VALUES(?, ?, ?) ON CONFLICT(message,"
                           " tag) DO UPDATE SET value = excluded.value"),
                       {messageRow, mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME), user});
        }
        QVariantList values = {d->name, d->active ? 1 : 0, d->mask, d->handler};
        values += schedule;
        values << d->row;
        QSqlQuery updated =
            db.run(QStringLiteral(
                       "UPDATE bindings SET name = ?, active = ?, event_mask = ?, handler_class = ?,"
                       " sched_type = ?, sched_interval = ?, sched_start = ?, sched_end = ?, sched_days = ?,"
                       " sched_at = ? WHERE id = ?"),
                   values);
        if (updated.numRowsAffected() == 0)
            throw com::ComError(com::err::NotFound, kSource, QStringLiteral("The binding no longer exists."));
        if (messageRow) {
            const QString field = memoryOrderHex(d->handler);
            db.run(QStringLiteral(
                       "INSERT INTO fields(message, tag, value) VALUES(?, ?, ?) ON CONFLICT(message, tag)"
                       " DO UPDATE SET value = excluded.value"),
                   {messageRow, mapi::tagKey(mapi::PR_HANDLER),
                    field.isEmpty() ? d->handler.toLatin1() : field.toLatin1()});
        }
    });
}

void Binding::PrepareCustomChanges()
{
    d->state->check();
    checkAuthor(d->state, d->host);
}

void Binding::SaveCustomChanges(const mapi::Message &message)
{
    d->state->check();
    checkAuthor(d->state, d->host);
    if (message.ID() != d->entryId)
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("The message is not this binding's message."));
}

// ---- Bindings ----

Bindings::Bindings(mapi::StatePtr state, qint64 folderRow, QString host)
    : m_state(std::move(state)), m_folder(folderRow), m_host(std::move(host))
{
}

void Bindings::load() const
{
    if (m_loaded)
        return;
    auto list = std::make_unique<QVector<Binding>>();
    QSqlQuery &q = m_state->query(QStringLiteral(
        "SELECT id, COALESCE(message, ''), COALESCE(state_message, ''), name, active, event_mask,"
        " handler_class, sched_type, sched_interval, sched_start, sched_end, sched_days, sched_at"
        " FROM bindings WHERE folder = ? ORDER BY id"));
    q.addBindValue(m_folder);
    m_state->db->exec(q);
    while (q.next()) {
        auto d = std::make_shared<BindingData>();
        d->state = m_state;
        d->folder = m_folder;
        d->host = m_host;
        d->row = q.value(0).toLongLong();
        d->entryId = q.value(1).toString();
        d->stateId = q.value(2).toString();
        d->name = q.value(3).toString();
        d->active = q.value(4).toInt() != 0;
        d->mask = static_cast<int16_t>(q.value(5).toInt());
        d->handler = q.value(6).toString();
        d->schedType = static_cast<int16_t>(q.value(7).toInt());
        d->interval = static_cast<int16_t>(q.value(8).toInt());
        d->start = timeOf(q.value(9).toInt());
        d->end = timeOf(q.value(10).toInt());
        d->days = static_cast<int16_t>(q.value(11).toInt());
        d->at = timeOf(q.value(12).toInt());
        list->append(Binding(d));
    }
    m_loaded = std::move(list);
}

int Bindings::Count() const
{
    load();
    return static_cast<int>(m_loaded->size());
}

Binding Bindings::Item(int index) const
{
    load();
    if (index < 1 || index > m_loaded->size())
        throw com::ComError(com::err::SubscriptOutOfRange, kSource, QStringLiteral("Subscript out of range"));
    return m_loaded->at(index - 1);
}

Binding Bindings::Add()
{
    m_state->check();
    auto d = std::make_shared<BindingData>();
    d->state = m_state;
    d->folder = m_folder;
    d->host = m_host;
    return Binding(d);
}

void Bindings::Remove(const Binding &binding)
{
    m_state->check();
    checkAuthor(m_state, m_host);
    const qint64 row = binding.data()->row;
    m_state->db->transaction([&] {
        QSqlQuery q = m_state->db->run(QStringLiteral("DELETE FROM bindings WHERE id = ? AND folder = ?"),
                                       {row, m_folder});
        if (q.numRowsAffected() == 0)
            throw com::ComError(com::err::NotFound, kSource,
                                QStringLiteral("The binding is not in this folder."));
    });
    m_loaded.reset();
}

// ---- EventSource, hosts, root ----

EventSource::EventSource(mapi::StatePtr state, qint64 folderRow, QString host)
    : m_state(state), m_folder(folderRow), m_host(host), m_bindings(state, folderRow, host)
{
}

void EventSource::SaveChanges()
{
    m_state->check();
    checkAuthor(m_state, m_host);
}

Handler Handlers::Item(int index) const
{
    if (index < 1 || index > m_handlers.size())
        throw com::ComError(com::err::SubscriptOutOfRange, kSource, QStringLiteral("Subscript out of range"));
    return m_handlers.at(index - 1);
}

Host Hosts::Item(const QString &name) const
{
    m_state->check();
    const QVariant id = m_state->db->scalar(QStringLiteral("SELECT id FROM hosts WHERE name = ?"), {name});
    if (!id.isValid())
        throw com::ComError(com::err::NotFound, kSource,
                            QStringLiteral("There is no host named \"%1\".").arg(name));
    QSqlQuery q = m_state->db->run(
        QStringLiteral("SELECT class_id, name FROM handlers WHERE host = ? ORDER BY seq, id"), {id});
    QVector<Handler> handlers;
    while (q.next())
        handlers.append(Handler{q.value(0).toString(), q.value(1).toString()});
    return Host(name, events::Handlers(std::move(handlers)));
}

void Events::SetSession(mapi::StatePtr session)
{
    m_state = std::move(session);
}

void Events::check() const
{
    if (!m_state)
        throw com::ComError(com::err::NotLoggedOn, kSource, QStringLiteral("No session has been set."));
    m_state->check();
}

EventSource Events::GetEventSource(const mapi::Folder &folder, bool create)
{
    Q_UNUSED(create);
    check();
    if (!folder.row().eventSource)
        throw com::ComError(com::err::NoEventSource, kSource,
                            QStringLiteral("The folder %1 has no event source.").arg(folder.Name()));
    return EventSource(m_state, folder.row().row, folder.row().host);
}

events::Hosts Events::Hosts() const
{
    check();
    return events::Hosts(m_state);
}

} // namespace events
