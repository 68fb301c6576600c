#include "platform/events/bindingwrite.h"

#include "platform/events/bindingdata.h"
#include "platform/events/errors.h"
#include "platform/events/guid.h"
#include "platform/events/schedule.h"
#include "platform/mapi/tags.h"
#include "platform/store/agentchanges.h"

namespace events {

namespace {

const QString kSetField = QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"
                                         " ON CONFLICT(message, tag) DO UPDATE SET value = excluded.value");

/// The handler field of a class identifier: its memory-order digits, or the
/// text as it stands when it is no class identifier.
QByteArray handlerField(const QString &classId)
{
    const QString field = memoryOrderHex(classId);
    return (field.isEmpty() ? classId : field).toLatin1();
}

/// The binding's own columns, in the order of the statements below.
QVariantList bindingValues(const BindingData &d)
{
    const ScheduleData &s = d.schedule;
    return {d.name,     d.active ? 1 : 0,   d.mask,           d.handler, s.type,
            s.interval, minutesOf(s.start), minutesOf(s.end), s.days,    minutesOf(s.at)};
}

void setField(mapi::SessionState &st, qint64 message, uint32_t tag, const QByteArray &value)
{
    st.run(kSetField, {message, mapi::tagKey(tag), value});
}

/// A hidden message of the binding's folder; its row and entry identifier.
std::pair<qint64, QString> insertHiddenMessage(BindingData &d, const QString &cls, const QString &now)
{
    mapi::SessionState &st = *d.state;
    QSqlQuery &q = st.run(st.db->returningId(QStringLiteral(
                              "INSERT INTO messages(folder, hidden, class, subject, created, modified)"
                              " VALUES(?, 1, ?, ?, ?, ?)")),
                          {d.source.folder, cls, d.name, now, now});
    const qint64 row = st.db->insertedId(q);
    return {row, st.db->assignEntryId(store::IdKind::Message, d.source.storeRow, row)};
}

void insertBinding(BindingData &d, const QString &now)
{
    mapi::SessionState &st = *d.state;
    const QByteArray user = st.user.toLatin1();
    const auto [message, entryId] = insertHiddenMessage(d, mapi::kBindingClass, now);
    setField(st, message, mapi::PR_HANDLER, handlerField(d.handler));
    setField(st, message, mapi::PR_CREATOR_NAME, user);
    setField(st, message, mapi::PR_LAST_MODIFIER_NAME, user);
    const auto [state, stateId] = insertHiddenMessage(d, mapi::kStateClass, now);
    setField(st, state, mapi::PR_AGENT_LOG, QByteArray(""));
    QSqlQuery &q =
        st.run(st.db->returningId(QStringLiteral(
                   "INSERT INTO bindings(name, active, event_mask, handler_class, sched_type, sched_interval,"
                   " sched_start, sched_end, sched_days, sched_at, folder, message, state_message)"
                   " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
               bindingValues(d) + QVariantList{d.source.folder, entryId, stateId});
    d.row = st.db->insertedId(q);
    d.entryId = entryId;
    d.stateId = stateId;
    store::raiseAgentChange(st.statements(), entryId, st.user, store::ChangeKind::Created, {});
}

void updateBinding(BindingData &d, const QString &now)
{
    mapi::SessionState &st = *d.state;
    const store::AgentImage before = store::agentImage(st.statements(), d.entryId);
    QSqlQuery &q =
        st.run(QStringLiteral("UPDATE bindings SET name = ?, active = ?, event_mask = ?, handler_class = ?,"
                              " sched_type = ?, sched_interval = ?, sched_start = ?, sched_end = ?,"
                              " sched_days = ?, sched_at = ? WHERE id = ?"),
               bindingValues(d) + QVariantList{d.row});
    if (q.numRowsAffected() == 0)
        throw eventsError(com::err::NotFound,
                          QStringLiteral("The binding \"%1\" has been removed.").arg(d.name));
    store::raiseAgentChange(st.statements(), d.entryId, st.user, store::ChangeKind::Properties, before);
    // The binding message follows, if it is still there.
    QSqlQuery &m = st.run(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {d.entryId});
    const qint64 message = m.next() ? m.value(0).toLongLong() : 0;
    m.finish();
    if (message == 0)
        return;
    st.run(QStringLiteral("UPDATE messages SET subject = ?, modified = ? WHERE id = ?"),
           {d.name, now, message});
    setField(st, message, mapi::PR_HANDLER, handlerField(d.handler));
    setField(st, message, mapi::PR_LAST_MODIFIER_NAME, st.user.toLatin1());
}

} // namespace

void writeBinding(BindingData &data)
{
    const QString now = store::Database::now();
    // Identifiers are only taken over once the transaction has committed.
    BindingData staged = data;
    data.state->db->transaction([&] {
        if (staged.row == 0)
            insertBinding(staged, now);
        else
            updateBinding(staged, now);
    });
    data = std::move(staged);
}

} // namespace events
