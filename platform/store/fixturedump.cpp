#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QSet>
#include <QSqlQuery>
#include <QTime>

#include <vector>

namespace store {

namespace {

/// A field's value as a fixture carries it: 8-bit text one byte to one
/// character, numbers as numbers.
QJsonValue fieldValue(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::QByteArray:
        return QString::fromLatin1(v.toByteArray());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return v.toLongLong();
    case QMetaType::Double:
        return v.toDouble();
    default:
        return v.isNull() ? QString() : v.toString();
    }
}

QString text8(const QMap<QString, QVariant> &fields, uint32_t tag)
{
    const QVariant v = fields.value(mapi::tagKey(tag));
    return v.typeId() == QMetaType::QByteArray ? QString::fromLatin1(v.toByteArray()) : v.toString();
}

QString clock(int minutes)
{
    return QTime(0, 0).addSecs(minutes * 60).toString(QStringLiteral("HH:mm"));
}

/// One message row of a folder.
struct MessageRow {
    qint64 id = 0;
    QString entryId;
    QString cls;
    QString subject;
    QString created;
    QString modified;
    QVariant received;
};

class Dumper {
public:
    explicit Dumper(const Database &db) : m_db(db)
    {
        m_children = db.prepare(QStringLiteral(
            "SELECT id, name, access, event_source FROM folders WHERE parent = ? ORDER BY seq, id"));
        m_messages = db.prepare(QStringLiteral("SELECT id, entry_id, class, subject, created, modified, received"
                                               " FROM messages WHERE folder = ? AND hidden = ? ORDER BY id"));
        m_fields = db.prepare(QStringLiteral("SELECT tag, value FROM fields WHERE message = ? ORDER BY tag"));
        m_binding = db.prepare(QStringLiteral(
            "SELECT active, event_mask, handler_class, COALESCE(state_message, ''), sched_type, sched_interval,"
            " sched_start, sched_end, sched_days, sched_at FROM bindings WHERE message = ? ORDER BY id LIMIT 1"));
        m_map = db.prepare(
            QStringLiteral("SELECT activity, action, flags, args FROM map_rows WHERE message = ? ORDER BY row"));
        m_instance = db.prepare(QStringLiteral("SELECT rui, status, row FROM instances WHERE message = ?"));
        m_votes = db.prepare(QStringLiteral("SELECT name, status, at FROM votes WHERE message = ? ORDER BY seq"));
    }

    QJsonObject dump()
    {
        QJsonObject root;
        root.insert(QStringLiteral("user"), m_db.meta(QStringLiteral("user")));
        root.insert(QStringLiteral("profile"), m_db.meta(QStringLiteral("profile")));
        root.insert(QStringLiteral("hosts"), hosts());
        QJsonArray stores;
        QSqlQuery s = m_db.run(QStringLiteral("SELECT id, name, provider, host FROM stores ORDER BY seq, id"));
        std::vector<std::pair<qint64, QJsonObject>> list;
        while (s.next())
            list.push_back({s.value(0).toLongLong(),
                            QJsonObject{{QStringLiteral("name"), s.value(1).toString()},
                                        {QStringLiteral("provider"), s.value(2).toString()},
                                        {QStringLiteral("host"), s.value(3).toString()}}});
        for (auto &[id, store] : list) {
            const QVariant top =
                m_db.scalar(QStringLiteral("SELECT id FROM folders WHERE store = ? AND parent IS NULL ORDER BY id"), {id});
            store.insert(QStringLiteral("folders"), top.isValid() ? folders(top.toLongLong()) : QJsonArray());
            stores.append(store);
        }
        root.insert(QStringLiteral("stores"), stores);
        return root;
    }

private:
    QJsonArray hosts()
    {
        QJsonArray list;
        QSqlQuery h = m_db.run(QStringLiteral("SELECT id, name, restricted FROM hosts ORDER BY id"));
        while (h.next()) {
            QJsonObject host{{QStringLiteral("name"), h.value(1).toString()}};
            if (h.value(2).toInt()) {
                QJsonArray authors;
                QSqlQuery a = m_db.run(QStringLiteral("SELECT user FROM host_authors WHERE host = ? ORDER BY user"),
                                       {h.value(0)});
                while (a.next())
                    authors.append(a.value(0).toString());
                host.insert(QStringLiteral("authors"), authors);
            }
            QJsonArray handlers;
            QSqlQuery k = m_db.run(QStringLiteral("SELECT class_id, name FROM handlers WHERE host = ? ORDER BY seq, id"),
                                   {h.value(0)});
            while (k.next())
                handlers.append(QJsonObject{{QStringLiteral("class"), k.value(0).toString()},
                                            {QStringLiteral("name"), k.value(1).toString()}});
            host.insert(QStringLiteral("handlers"), handlers);
            list.append(host);
        }
        return list;
    }

    QJsonArray folders(qint64 parent)
    {
        m_children.addBindValue(parent);
        m_db.exec(m_children);
        std::vector<std::pair<qint64, QJsonObject>> children;
        while (m_children.next())
            children.push_back({m_children.value(0).toLongLong(),
                                QJsonObject{{QStringLiteral("name"), m_children.value(1).toString()},
                                            {QStringLiteral("access"), m_children.value(2).toInt()},
                                            {QStringLiteral("eventSource"), m_children.value(3).toInt() != 0}}});
        QJsonArray list;
        for (auto &[id, folder] : children) {
            contents(id, folder);
            folder.insert(QStringLiteral("folders"), folders(id));
            list.append(folder);
        }
        return list;
    }

    std::vector<MessageRow> messageRows(qint64 folder, bool hidden)
    {
        m_messages.addBindValue(folder);
        m_messages.addBindValue(hidden ? 1 : 0);
        m_db.exec(m_messages);
        std::vector<MessageRow> rows;
        while (m_messages.next())
            rows.push_back({m_messages.value(0).toLongLong(), m_messages.value(1).toString(),
                            m_messages.value(2).toString(), m_messages.value(3).toString(),
                            m_messages.value(4).toString(), m_messages.value(5).toString(), m_messages.value(6)});
        return rows;
    }

    QMap<QString, QVariant> fields(qint64 message)
    {
        m_fields.addBindValue(message);
        m_db.exec(m_fields);
        QMap<QString, QVariant> map;
        while (m_fields.next())
            map.insert(m_fields.value(0).toString(), m_fields.value(1));
        return map;
    }

    /// Whether a binding message with no binding is still an agent of the
    /// fixture's kind: nothing on it but what loading an agent puts there,
    /// and its handler field in the form the service writes.
    static bool agentShaped(const QMap<QString, QVariant> &f)
    {
        static const QSet<QString> agentTags = {mapi::tagKey(mapi::PR_SCRIPT), mapi::tagKey(mapi::PR_HANDLER),
                                                mapi::tagKey(mapi::PR_CREATOR_NAME),
                                                mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME)};
        for (auto it = f.begin(); it != f.end(); ++it)
            if (!agentTags.contains(it.key()) || it.value().typeId() != QMetaType::QByteArray)
                return false;
        const QString field = text8(f, mapi::PR_HANDLER);
        return !field.isEmpty() && events::memoryOrderHex(events::registryForm(field)) == field;
    }

    /// A folder's agents, ordinary and hidden messages. An agent claims its
    /// binding message and its state message; every other hidden message is
    /// dumped as it is.
    void contents(qint64 folder, QJsonObject &out)
    {
        const std::vector<MessageRow> hidden = messageRows(folder, true);
        QSet<qint64> claimed;
        QHash<QString, qint64> byEntryId;
        for (const MessageRow &m : hidden)
            byEntryId.insert(m.entryId, m.id);

        struct Agent {
            const MessageRow *message;
            QJsonObject json;
            QMap<QString, QVariant> fields;
            qint64 state = 0;
            bool bound = false;
        };
        std::vector<Agent> agents;
        for (const MessageRow &m : hidden) {
            if (m.cls != mapi::kBindingClass)
                continue;
            Agent a{&m, agentBinding(m.entryId), fields(m.id)};
            a.bound = !a.json.isEmpty();
            if (!a.bound && !agentShaped(a.fields))
                continue;
            if (a.bound) {
                const qint64 state = byEntryId.value(a.json.take(QStringLiteral("stateId")).toString());
                if (state && !claimed.contains(state))
                    a.state = state;
            }
            claimed.insert(m.id);
            if (a.state)
                claimed.insert(a.state);
            agents.push_back(std::move(a));
        }
        // An agent that lost its binding also lost the link to its state
        // message: it is the next unclaimed one of the same name.
        for (Agent &a : agents) {
            if (a.bound)
                continue;
            for (const MessageRow &m : hidden)
                if (m.id > a.message->id && m.cls == mapi::kStateClass && m.subject == a.message->subject &&
                    !claimed.contains(m.id)) {
                    a.state = m.id;
                    claimed.insert(m.id);
                    break;
                }
        }
        QJsonArray agentList;
        for (Agent &a : agents)
            agentList.append(agentJson(a.message, a.json, a.fields, a.bound, a.state));
        out.insert(QStringLiteral("agents"), agentList);

        QJsonArray ordinary;
        for (const MessageRow &m : messageRows(folder, false))
            ordinary.append(message(m));
        out.insert(QStringLiteral("messages"), ordinary);
        QJsonArray others;
        for (const MessageRow &m : hidden)
            if (!claimed.contains(m.id))
                others.append(message(m));
        out.insert(QStringLiteral("hidden"), others);
    }

    /// The binding of a binding message as agent members (with "stateId"
    /// for the caller), or empty when it has none.
    QJsonObject agentBinding(const QString &entryId)
    {
        m_binding.addBindValue(entryId);
        m_db.exec(m_binding);
        if (!m_binding.next())
            return {};
        const auto v = [this](int i) { return m_binding.value(i); };
        return QJsonObject{{QStringLiteral("handler"), v(2).toString()},
                           {QStringLiteral("mask"), v(1).toInt()},
                           {QStringLiteral("active"), v(0).toInt() != 0},
                           {QStringLiteral("schedule"),
                            QJsonObject{{QStringLiteral("type"), v(4).toInt()},
                                        {QStringLiteral("interval"), v(5).toInt()},
                                        {QStringLiteral("start"), clock(v(6).toInt())},
                                        {QStringLiteral("end"), clock(v(7).toInt())},
                                        {QStringLiteral("days"), v(8).toInt()},
                                        {QStringLiteral("at"), clock(v(9).toInt())}}},
                           {QStringLiteral("stateId"), v(3).toString()}};
    }

    QJsonObject agentJson(const MessageRow *m, QJsonObject agent, const QMap<QString, QVariant> &f, bool bound,
                          qint64 state)
    {
        if (!bound) {
            agent.insert(QStringLiteral("handler"), events::registryForm(text8(f, mapi::PR_HANDLER)));
            agent.insert(QStringLiteral("mask"), 0);
            agent.insert(QStringLiteral("active"), false);
            agent.insert(QStringLiteral("schedule"),
                         QJsonObject{{QStringLiteral("type"), 0}, {QStringLiteral("interval"), 0},
                                     {QStringLiteral("start"), clock(0)}, {QStringLiteral("end"), clock(0)},
                                     {QStringLiteral("days"), 0}, {QStringLiteral("at"), clock(0)}});
        }
        agent.insert(QStringLiteral("name"), m->subject);
        agent.insert(QStringLiteral("script"), text8(f, mapi::PR_SCRIPT));
        agent.insert(QStringLiteral("log"), state ? text8(fields(state), mapi::PR_AGENT_LOG) : QString());
        agent.insert(QStringLiteral("createdBy"), text8(f, mapi::PR_CREATOR_NAME));
        agent.insert(QStringLiteral("created"), m->created);
        agent.insert(QStringLiteral("modifiedBy"), text8(f, mapi::PR_LAST_MODIFIER_NAME));
        agent.insert(QStringLiteral("modified"), m->modified);
        agent.insert(QStringLiteral("binding"), bound);
        agent.insert(QStringLiteral("stateMessage"), state != 0);
        return agent;
    }

    QJsonObject message(const MessageRow &m)
    {
        QJsonObject message{{QStringLiteral("subject"), m.subject},
                            {QStringLiteral("class"), m.cls},
                            {QStringLiteral("received"), m.received.isNull() ? QString() : m.received.toString()},
                            {QStringLiteral("created"), m.created},
                            {QStringLiteral("modified"), m.modified}};
        QJsonObject fieldList;
        const QMap<QString, QVariant> f = fields(m.id);
        const QString sender = mapi::tagKey(mapi::PR_SENDER_NAME);
        for (auto it = f.begin(); it != f.end(); ++it) {
            if (it.key() == sender && it.value().typeId() == QMetaType::QByteArray)
                message.insert(QStringLiteral("from"), fieldValue(it.value()));
            else
                fieldList.insert(it.key(), fieldValue(it.value()));
        }
        message.insert(QStringLiteral("fields"), fieldList);
        message.insert(QStringLiteral("map"), map(m.id));
        m_instance.addBindValue(m.id);
        m_db.exec(m_instance);
        if (m_instance.next())
            message.insert(QStringLiteral("instance"),
                           QJsonObject{{QStringLiteral("rui"), m_instance.value(0).toLongLong()},
                                       {QStringLiteral("status"), m_instance.value(1).toString()},
                                       {QStringLiteral("row"), m_instance.value(2).toLongLong()}});
        QJsonArray votes;
        m_votes.addBindValue(m.id);
        m_db.exec(m_votes);
        while (m_votes.next())
            votes.append(QJsonObject{{QStringLiteral("name"), m_votes.value(0).toString()},
                                     {QStringLiteral("status"), m_votes.value(1).toString()},
                                     {QStringLiteral("at"), m_votes.value(2).toString()}});
        message.insert(QStringLiteral("votes"), votes);
        return message;
    }

    QJsonArray map(qint64 message)
    {
        QJsonArray rows;
        m_map.addBindValue(message);
        m_db.exec(m_map);
        while (m_map.next())
            rows.append(QJsonObject{{QStringLiteral("activity"), m_map.value(0).toString()},
                                    {QStringLiteral("action"), m_map.value(1).toString()},
                                    {QStringLiteral("flags"), m_map.value(2).toString()},
                                    {QStringLiteral("args"),
                                     QJsonDocument::fromJson(m_map.value(3).toString().toUtf8()).array()}});
        return rows;
    }

    const Database &m_db;
    QSqlQuery m_children, m_messages, m_fields, m_binding, m_map, m_instance, m_votes;
};

} // namespace

QJsonObject dumpStore(const Database &db)
{
    return Dumper(db).dump();
}

} // namespace store
