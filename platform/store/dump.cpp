#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/folderlevels.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlQuery>
#include <QTime>

namespace store {

namespace {

/// 8-bit text as JSON carries it: one byte to one character.
QJsonValue text8(const QVariant &v)
{
    if (v.isNull())
        return QString();
    if (v.typeId() == QMetaType::QByteArray)
        return QString::fromLatin1(v.toByteArray());
    if (v.typeId() == QMetaType::QString)
        return v.toString();
    return v.toInt();
}

QString clock(int minutes)
{
    return QTime(0, 0).addSecs(minutes * 60).toString(QStringLiteral("HH:mm"));
}

class Dumper {
public:
    explicit Dumper(const Database &db) : m_db(db) {}

    QJsonObject dump()
    {
        QJsonObject root;
        root.insert(QStringLiteral("user"), m_db.meta(QStringLiteral("user")));
        root.insert(QStringLiteral("profile"), m_db.meta(QStringLiteral("profile")));
        QJsonArray hosts;
        QSqlQuery h = m_db.run(QStringLiteral("SELECT id, name, restricted FROM hosts ORDER BY id"));
        while (h.next()) {
            QJsonObject host;
            host.insert(QStringLiteral("name"), h.value(1).toString());
            if (h.value(2).toInt()) {
                QJsonArray authors;
                QSqlQuery a = m_db.run(
                    QStringLiteral("SELECT \"user\" FROM host_authors WHERE host = ? ORDER BY \"user\""),
                    {h.value(0)});
                while (a.next())
                    authors.append(a.value(0).toString());
                host.insert(QStringLiteral("authors"), authors);
            }
            QJsonArray handlers;
            QSqlQuery k = m_db.run(
                QStringLiteral("SELECT class_id, name FROM handlers WHERE host = ? ORDER BY seq, id"),
                {h.value(0)});
            while (k.next())
                handlers.append(QJsonObject{{QStringLiteral("class"), k.value(0).toString()},
                                            {QStringLiteral("name"), k.value(1).toString()}});
            host.insert(QStringLiteral("handlers"), handlers);
            hosts.append(host);
        }
        root.insert(QStringLiteral("hosts"), hosts);
        QJsonArray stores;
        QSqlQuery s =
            m_db.run(QStringLiteral("SELECT id, name, provider, host FROM stores ORDER BY seq, id"));
        while (s.next()) {
            QJsonObject store{{QStringLiteral("name"), s.value(1).toString()},
                              {QStringLiteral("provider"), s.value(2).toString()},
                              {QStringLiteral("host"), s.value(3).toString()}};
            const QVariant rootFolder = m_db.scalar(
                QStringLiteral("SELECT id FROM folders WHERE store = ? AND parent IS NULL"), {s.value(0)});
            store.insert(QStringLiteral("folders"), folders(rootFolder));
            stores.append(store);
        }
        root.insert(QStringLiteral("stores"), stores);
        return root;
    }

private:
    QJsonArray folders(const QVariant &parent)
    {
        QJsonArray list;
        QSqlQuery f = m_db.run(
            QStringLiteral(
                "SELECT id, name, access, event_source FROM folders WHERE parent = ? ORDER BY seq, id"),
            {parent});
        while (f.next()) {
            QJsonObject folder{{QStringLiteral("name"), f.value(1).toString()},
                               {QStringLiteral("access"), f.value(2).toInt()},
                               {QStringLiteral("eventSource"), f.value(3).toInt() != 0}};
            const QVariant id = f.value(0);
            folder.insert(QStringLiteral("agents"), agents(id));
            folder.insert(QStringLiteral("messages"), messages(id, false));
            folder.insert(QStringLiteral("hidden"), messages(id, true));
            folder.insert(QStringLiteral("folders"), folders(id));
            list.append(folder);
        }
        return list;
    }

    QVariant field(const QVariant &message, uint32_t tag)
    {
        return m_db.scalar(QStringLiteral("SELECT value FROM fields WHERE message = ? AND tag = ?"),
                           {message, mapi::tagKey(tag)});
    }

    /// A message's fields by tag or name, but for those told apart.
    QJsonObject fields(const QVariant &message, const QList<uint32_t> &apart)
    {
        QStringList skip;
        for (const uint32_t tag : apart)
            skip << mapi::tagKey(tag);
        QJsonObject list;
        QSqlQuery f = m_db.run(QStringLiteral("SELECT tag, value FROM fields WHERE message = ? ORDER BY tag"),
                               {message});
        while (f.next())
            if (!skip.contains(f.value(0).toString()))
                list.insert(f.value(0).toString(), text8(f.value(1)));
        return list;
    }

    /// The route map on a message, row by row.
    QJsonArray map(const QVariant &message)
    {
        QJsonArray rows;
        QSqlQuery r =
            m_db.run(QStringLiteral(
                         "SELECT activity, action, flags, args FROM map_rows WHERE message = ? ORDER BY row"),
                     {message});
        while (r.next())
            rows.append(QJsonObject{
                {QStringLiteral("activity"), r.value(0).toString()},
                {QStringLiteral("action"), r.value(1).toString()},
                {QStringLiteral("flags"), r.value(2).toString()},
                {QStringLiteral("args"), QJsonDocument::fromJson(r.value(3).toString().toUtf8()).array()}});
        return rows;
    }

    QJsonArray agents(const QVariant &folder)
    {
        QJsonArray list;
        QSqlQuery m = m_db.run(QStringLiteral("SELECT id, entry_id, subject, created, modified FROM messages"
                                              " WHERE folder = ? AND hidden = 1 AND class = ? ORDER BY id"),
                               {folder, mapi::kBindingClass});
        while (m.next()) {
            const QVariant id = m.value(0);
            QJsonObject agent{
                {QStringLiteral("name"), m.value(2).toString()},
                {QStringLiteral("script"), text8(field(id, mapi::PR_SCRIPT))},
                {QStringLiteral("createdBy"), text8(field(id, mapi::PR_CREATOR_NAME))},
                {QStringLiteral("created"), m.value(3).toString()},
                {QStringLiteral("modifiedBy"), text8(field(id, mapi::PR_LAST_MODIFIER_NAME))},
                {QStringLiteral("modified"), m.value(4).toString()},
                {QStringLiteral("fields"), fields(id, {mapi::PR_SCRIPT, mapi::PR_HANDLER,
                                                       mapi::PR_CREATOR_NAME, mapi::PR_LAST_MODIFIER_NAME})},
                {QStringLiteral("map"), map(id)}};
            QSqlQuery b =
                m_db.run(QStringLiteral("SELECT name, active, event_mask, handler_class, state_message,"
                                        " sched_type, sched_interval, sched_start, sched_end, sched_days,"
                                        " sched_at FROM bindings WHERE message = ?"),
                         {m.value(1)});
            QVariant stateId;
            if (b.next()) {
                agent.insert(QStringLiteral("binding"), true);
                agent.insert(QStringLiteral("handler"), b.value(3).toString());
                agent.insert(QStringLiteral("mask"), b.value(2).toInt());
                agent.insert(QStringLiteral("active"), b.value(1).toInt() != 0);
                agent.insert(QStringLiteral("schedule"),
                             QJsonObject{{QStringLiteral("type"), b.value(5).toInt()},
                                         {QStringLiteral("interval"), b.value(6).toInt()},
                                         {QStringLiteral("start"), clock(b.value(7).toInt())},
                                         {QStringLiteral("end"), clock(b.value(8).toInt())},
                                         {QStringLiteral("days"), b.value(9).toInt()},
                                         {QStringLiteral("at"), clock(b.value(10).toInt())}});
                stateId = b.value(4);
            } else {
                // Without a binding the class is known only from the handler
                // field; one that doesn't read back the same stays a plain
                // hidden message.
                const QString handlerField = QString::fromLatin1(field(id, mapi::PR_HANDLER).toByteArray());
                const QString classId = events::registryForm(handlerField);
                if (classId.isEmpty() || events::memoryOrderHex(classId) != handlerField)
                    continue;
                agent.insert(QStringLiteral("binding"), false);
                agent.insert(QStringLiteral("handler"), classId);
            }
            m_claimed.insert(id.toLongLong());
            const QVariant state =
                stateId.isNull()
                    ? QVariant()
                    : m_db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {stateId});
            agent.insert(QStringLiteral("stateMessage"), state.isValid());
            agent.insert(QStringLiteral("log"),
                         state.isValid() ? text8(field(state, mapi::PR_AGENT_LOG)) : QString());
            if (state.isValid())
                m_claimed.insert(state.toLongLong());
            list.append(agent);
        }
        return list;
    }

    QJsonArray messages(const QVariant &folder, bool hidden)
    {
        QJsonArray list;
        QSqlQuery m =
            m_db.run(QStringLiteral("SELECT id, class, subject, created, modified, received FROM messages"
                                    " WHERE folder = ? AND hidden = ? ORDER BY id"),
                     {folder, hidden ? 1 : 0});
        while (m.next()) {
            const qint64 id = m.value(0).toLongLong();
            const QString cls = m.value(1).toString();
            if (hidden && m_claimed.contains(id))
                continue; // part of an agent
            QJsonObject message{
                {QStringLiteral("subject"), m.value(2).toString()},
                {QStringLiteral("class"), cls},
                {QStringLiteral("created"), m.value(3).toString()},
                {QStringLiteral("modified"), m.value(4).toString()},
                {QStringLiteral("fields"), fields(id, {mapi::PR_SCRIPT, mapi::PR_HANDLER,
                                                       mapi::PR_CREATOR_NAME, mapi::PR_LAST_MODIFIER_NAME})},
                {QStringLiteral("map"), map(id)}};
            if (!m.value(5).isNull())
                message.insert(QStringLiteral("received"), m.value(5).toString());
            QJsonObject fieldList = fields(id, {mapi::PR_SENDER_NAME});
            const QVariant from = field(id, mapi::PR_SENDER_NAME);
            if (from.isValid())
                message.insert(QStringLiteral("from"), text8(from));
            message.insert(QStringLiteral("fields"), fieldList);
            message.insert(QStringLiteral("map"), map(id));
            QSqlQuery in =
                m_db.run(QStringLiteral("SELECT rui, status, row FROM instances WHERE message = ?"), {id});
            if (in.next())
                message.insert(QStringLiteral("instance"),
                               QJsonObject{{QStringLiteral("rui"), in.value(0).toInt()},
                                           {QStringLiteral("status"), in.value(1).toString()},
                                           {QStringLiteral("row"), in.value(2).toInt()}});
            QJsonArray votes;
            QSqlQuery v = m_db.run(
                QStringLiteral("SELECT name, status, at FROM votes WHERE message = ? ORDER BY seq"), {id});
            while (v.next())
                votes.append(QJsonObject{{QStringLiteral("name"), v.value(0).toString()},
                                         {QStringLiteral("status"), v.value(1).toString()},
                                         {QStringLiteral("at"), v.value(2).toString()}});
            message.insert(QStringLiteral("votes"), votes);
            list.append(message);
        }
        return list;
    }

    const Database &m_db;
    QSet<qint64> m_claimed;
};

} // namespace

QJsonObject dumpStore(const Database &db)
{
    // Checked before the walk, which goes down one level a call.
    if (folderLevels(db) > kMaxFolderLevels)
        throw com::ComError(
            com::err::InvalidParameter, QStringLiteral("sorrelin-store"),
            QStringLiteral("%1 holds folders more than %2 levels deep; a dump holds at most %2.")
                .arg(db.path())
                .arg(kMaxFolderLevels));
    return Dumper(db).dump();
}

} // namespace store
