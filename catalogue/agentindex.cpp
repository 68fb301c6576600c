#include "catalogue/agentindex.h"

#include "platform/mapi/field.h"
#include "platform/mapi/messagedata.h"
#include "platform/mapi/tags.h"

#include <vector>

namespace catalogue {

namespace {

/// A text field as the message's `Fields(tag).Value()` gives it, as text.
QString textField(const QVariant &stored, uint32_t tag)
{
    return QString::fromLatin1(mapi::fieldValue(stored, tag).toByteArray());
}

} // namespace

QDateTime AgentIndex::time(const QVariant &stored) const
{
    if (stored.isNull())
        return mapi::storeTime(stored);
    const QString text = stored.toString();
    auto it = m_times.constFind(text);
    if (it == m_times.cend()) {
        // Read field by field; a time the local clock skips, or anything
        // else that doesn't read back the same, goes through the message's
        // own reading.
        const QDate date = QDate::fromString(QStringView(text).left(10), Qt::ISODate);
        const bool shaped = text.size() == 19 && text.at(10) == QLatin1Char(' ') &&
                            text.at(13) == QLatin1Char(':') && text.at(16) == QLatin1Char(':');
        const QTime clock = shaped ? QTime::fromString(QStringView(text).mid(11), Qt::ISODate) : QTime();
        const QDateTime quick(date, clock);
        it = m_times.insert(text, date.isValid() && clock.isValid() && quick.isValid() &&
                                          quick.date() == date && quick.time() == clock
                                      ? quick
                                      : mapi::storeTime(stored));
    }
    return *it;
}

AgentIndex::AgentIndex(const mapi::StatePtr &state)
{
    state->check();
    readMessages(*state);
    readBindings(*state);
    readPaths(*state);
}

void AgentIndex::readMessages(mapi::SessionState &state)
{
    QSqlQuery &q = state.run(
        QStringLiteral("SELECT m.entry_id, s.store_id, f.id, f.entry_id, f.event_source, s.host, m.created,"
                       " m.modified, c.value, l.value FROM messages m JOIN folders f ON f.id = m.folder"
                       " JOIN stores s ON s.id = f.store"
                       " LEFT JOIN fields c ON c.message = m.id AND c.tag = ?"
                       " LEFT JOIN fields l ON l.message = m.id AND l.tag = ?"
                       " WHERE m.hidden = 1 AND m.class = ?"),
        {mapi::tagKey(mapi::PR_CREATOR_NAME), mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME),
         mapi::kBindingClass});
    while (q.next()) {
        AgentMessage m;
        m.storeId = q.value(1).toString();
        m.folderRow = q.value(2).toLongLong();
        m.folderId = q.value(3).toString();
        m.eventSource = q.value(4).toInt() != 0;
        m.host = q.value(5).toString();
        m.created = q.value(6);
        m.modified = q.value(7);
        m.createdBy = textField(q.value(8), mapi::PR_CREATOR_NAME);
        m.modifiedBy = textField(q.value(9), mapi::PR_LAST_MODIFIER_NAME);
        m_messages.insert(q.value(0).toString(), std::move(m));
    }
}

void AgentIndex::readBindings(mapi::SessionState &state)
{
    QSqlQuery &q = state.run(QStringLiteral("SELECT folder, COALESCE(message, ''), event_mask, handler_class"
                                            " FROM bindings ORDER BY id"),
                             {});
    while (q.next()) {
        // The first of the source's order wins, as a search from the front finds it.
        const std::pair<qint64, QString> key{q.value(0).toLongLong(), q.value(1).toString()};
        if (!m_bindings.contains(key))
            m_bindings.insert(key,
                              AgentBinding{static_cast<int16_t>(q.value(2).toInt()), q.value(3).toString()});
    }
}

void AgentIndex::readPaths(mapi::SessionState &state)
{
    // The folders of binding messages and every folder above them; a top
    // folder goes by its store's name.
    struct Above {
        qint64 parent = 0;
        QString name;
    };
    QHash<qint64, Above> folders;
    QSqlQuery &q = state.run(
        QStringLiteral("WITH RECURSIVE up(id) AS (SELECT DISTINCT folder FROM messages WHERE hidden = 1 AND"
                       " class = ? UNION SELECT f.parent FROM folders f JOIN up ON f.id = up.id"
                       " WHERE f.parent IS NOT NULL)"
                       " SELECT f.id, COALESCE(f.parent, 0), f.name, s.name FROM up"
                       " JOIN folders f ON f.id = up.id JOIN stores s ON s.id = f.store"),
        {mapi::kBindingClass});
    while (q.next()) {
        const qint64 parent = q.value(1).toLongLong();
        folders.insert(q.value(0).toLongLong(), Above{parent, q.value(parent == 0 ? 3 : 2).toString()});
    }
    std::vector<qint64> chain;
    for (const AgentMessage &m : std::as_const(m_messages)) {
        // Up to the first folder whose path is known, then down again.
        chain.clear();
        for (qint64 row = m.folderRow; row != 0 && !m_paths.contains(row); row = folders.value(row).parent)
            chain.push_back(row);
        for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
            const Above &f = folders[*it];
            m_paths.insert(*it, m_paths.value(f.parent) + QLatin1Char('\\') + f.name);
        }
    }
}

const AgentMessage *AgentIndex::message(const QString &entryId, const QString &storeId) const
{
    const auto it = m_messages.constFind(entryId);
    return it != m_messages.cend() && it->storeId == storeId ? &*it : nullptr;
}

std::optional<AgentBinding> AgentIndex::binding(qint64 folderRow, const QString &entryId) const
{
    const auto it = m_bindings.constFind({folderRow, entryId});
    return it == m_bindings.cend() ? std::nullopt : std::optional<AgentBinding>(*it);
}

} // namespace catalogue
