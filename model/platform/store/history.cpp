#include "platform/store/history.h"

#include "platform/mapi/tags.h"
#include "platform/store/agentchanges.h"
#include "platform/store/database.h"
#include "platform/store/servicewrites.h"

#include <QJsonDocument>

namespace store {

namespace {

const QString kSource = QStringLiteral("sorrelin-store");

/// The binding's columns that make the agent, as kept and as put back.
const QStringList kBindingColumns = {
    QStringLiteral("name"),           QStringLiteral("active"),        QStringLiteral("event_mask"),
    QStringLiteral("handler_class"),  QStringLiteral("state_message"), QStringLiteral("sched_type"),
    QStringLiteral("sched_interval"), QStringLiteral("sched_start"),   QStringLiteral("sched_end"),
    QStringLiteral("sched_days"),     QStringLiteral("sched_at")};

const QStringList kMessageColumns = {QStringLiteral("subject"), QStringLiteral("created"),
                                     QStringLiteral("modified"), QStringLiteral("received"),
                                     QStringLiteral("delivered")};

const QString kChangeColumns =
    QStringLiteral("id, agent, change_no, at, by_user, what, name, folder, before, script");

/// A field's value in words that give back the same value: bytes, a whole
/// number or a text (the engine's own types), or null.
QJsonValue fieldJson(const QVariant &v)
{
    if (v.isNull())
        return QJsonValue::Null;
    switch (v.typeId()) {
    case QMetaType::QByteArray:
        return QJsonObject{{QStringLiteral("bytes"), QString::fromLatin1(v.toByteArray().toBase64())}};
    case QMetaType::LongLong:
    case QMetaType::Int:
        return QJsonObject{{QStringLiteral("int"), QString::number(v.toLongLong())}};
    default:
        return QJsonObject{{QStringLiteral("text"), v.toString()}};
    }
}

QVariant fieldValue(const QJsonValue &json)
{
    const QJsonObject o = json.toObject();
    if (o.contains(QStringLiteral("bytes")))
        return QByteArray::fromBase64(o.value(QStringLiteral("bytes")).toString().toLatin1());
    if (o.contains(QStringLiteral("int")))
        return o.value(QStringLiteral("int")).toString().toLongLong();
    if (o.contains(QStringLiteral("text")))
        return o.value(QStringLiteral("text")).toString();
    return QVariant(QMetaType(QMetaType::QByteArray));
}

QJsonValue columnJson(const QVariant &v)
{
    if (v.isNull())
        return QJsonValue::Null;
    if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int)
        return v.toLongLong();
    return v.toString();
}

QVariant columnValue(const QJsonValue &v)
{
    if (v.isNull() || v.isUndefined())
        return QVariant(QMetaType(QMetaType::QString));
    if (v.isDouble())
        return static_cast<qlonglong>(v.toDouble());
    return v.toString();
}

Change changeOf(const QSqlQuery &q)
{
    Change c;
    c.id = q.value(0).toLongLong();
    c.agent = q.value(1).toString();
    c.number = q.value(2).toLongLong();
    c.at = q.value(3).toString();
    c.user = q.value(4).toString();
    c.what = q.value(5).toString();
    c.name = q.value(6).toString();
    c.folder = q.value(7).toString();
    c.before = QJsonDocument::fromJson(q.value(8).toString().toUtf8()).object();
    c.script = q.value(9);
    return c;
}

com::ComError noChange(qint64 id)
{
    return com::ComError(com::err::NotFound, kSource,
                         QStringLiteral("The history of the store keeps no change %1.").arg(id));
}

/// `columns` of a row as an object.
QJsonObject rowJson(const QSqlQuery &q, const QStringList &columns, int first)
{
    QJsonObject o;
    for (int i = 0; i < columns.size(); ++i)
        o.insert(columns.at(i), columnJson(q.value(first + i)));
    return o;
}

/// The binding image to put back for change `c`: its own, or for a binding
/// message deleted after its binding, the binding as the change before kept it.
QJsonObject bindingToRestore(const Database &db, const Change &c)
{
    const QJsonObject own = c.before.value(QStringLiteral("binding")).toObject();
    if (!own.isEmpty())
        return own;
    QSqlQuery q = db.run(QStringLiteral("SELECT before FROM agent_history WHERE agent = ? AND id < ?"
                                        " ORDER BY id DESC"),
                         {c.agent, c.id});
    while (q.next()) {
        const QJsonObject binding = QJsonDocument::fromJson(q.value(0).toString().toUtf8())
                                        .object()
                                        .value(QStringLiteral("binding"))
                                        .toObject();
        if (!binding.isEmpty())
            return binding;
    }
    return {};
}

void putFields(const Database &db, qint64 message, const QJsonObject &fields, const QString &user)
{
    db.run(QStringLiteral("DELETE FROM fields WHERE message = ?"), {message});
    QJsonObject all = fields;
    all.insert(mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME), fieldJson(QVariant(user.toLatin1())));
    for (auto it = all.constBegin(); it != all.constEnd(); ++it)
        db.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"),
               {message, it.key(), fieldValue(it.value())});
}

/// The binding message back in `folder`, under its own entry identifier.
void putMessage(Database &db, const QString &agent, qint64 folder, const QJsonObject &image,
                const QVariant &script, const QString &user)
{
    const QString now = Database::now();
    const QVariant row = db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {agent});
    const QString subject = image.value(QStringLiteral("subject")).toString();
    qint64 message = row.toLongLong();
    if (row.isValid()) {
        db.run(QStringLiteral("UPDATE messages SET subject = ?, modified = ? WHERE id = ?"),
               {subject, now, message});
    } else {
        message = db.insert(QStringLiteral("INSERT INTO messages(entry_id, folder, hidden, class, subject,"
                                           " created, modified, received, delivered)"
                                           " VALUES(?, ?, 1, ?, ?, ?, ?, ?, ?)"),
                            {agent, folder, mapi::kBindingClass, subject,
                             image.value(QStringLiteral("created")).toString(now), now,
                             columnValue(image.value(QStringLiteral("received"))),
                             columnValue(image.value(QStringLiteral("delivered")))});
    }
    QJsonObject fields = image.value(QStringLiteral("fields")).toObject();
    if (!script.isNull())
        fields.insert(mapi::tagKey(mapi::PR_SCRIPT), fieldJson(QVariant(script.toByteArray())));
    putFields(db, message, fields, user);
}

/// A state message for the binding: its own when still there, else a new one
/// with an empty log.
QString stateMessage(Database &db, qint64 folder, qint64 storeRow, const QJsonObject &binding)
{
    const QString kept = binding.value(QStringLiteral("state_message")).toString();
    if (!kept.isEmpty() &&
        db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {kept}).isValid())
        return kept;
    const QString now = Database::now();
    const qint64 row =
        db.insert(QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created,"
                                 " modified) VALUES(?, 1, ?, ?, ?, ?)"),
                  {folder, mapi::kStateClass, binding.value(QStringLiteral("name")).toString(), now, now});
    db.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"),
           {row, mapi::tagKey(mapi::PR_AGENT_LOG), QByteArray("")});
    return db.assignEntryId(IdKind::Message, storeRow, row);
}

void putBinding(Database &db, const QString &agent, qint64 folder, qint64 storeRow, QJsonObject binding)
{
    binding.insert(QStringLiteral("state_message"), stateMessage(db, folder, storeRow, binding));
    QVariantList values;
    for (const QString &column : kBindingColumns)
        values << columnValue(binding.value(column));
    const QVariant row = db.scalar(QStringLiteral("SELECT id FROM bindings WHERE message = ?"), {agent});
    if (row.isValid()) {
        db.run(QStringLiteral("UPDATE bindings SET %1 = ? WHERE id = ?").arg(kBindingColumns.join(" = ?, ")),
               values + QVariantList{row});
        return;
    }
    db.run(QStringLiteral("INSERT INTO bindings(%1, folder, message) VALUES(%2?, ?)")
               .arg(kBindingColumns.join(QStringLiteral(", ")),
                    QStringLiteral("?, ").repeated(kBindingColumns.size())),
           values + QVariantList{folder, agent});
}

} // namespace

QString changeKindText(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Script:
        return QStringLiteral("script");
    case ChangeKind::Properties:
        return QStringLiteral("properties");
    case ChangeKind::Created:
        return QStringLiteral("created");
    case ChangeKind::Deleted:
        return QStringLiteral("deleted");
    case ChangeKind::Restored:
        return QStringLiteral("restored");
    }
    return QString();
}

AgentImage agentImage(const RunStatement &run, const QString &agent)
{
    // One statement: the message, its binding (found through its folder's
    // index) and a row for each of its fields.
    static const QString withMessage =
        QStringLiteral("SELECT fl.tag, fl.value, f.entry_id, m.%1, b.%2 FROM messages m"
                       " JOIN folders f ON f.id = m.folder"
                       " LEFT JOIN bindings b ON b.folder = m.folder AND b.message = m.entry_id"
                       " LEFT JOIN fields fl ON fl.message = m.id WHERE m.entry_id = ?")
            .arg(kMessageColumns.join(QStringLiteral(", m.")), kBindingColumns.join(QStringLiteral(", b.")));
    static const QString bindingAlone =
        QStringLiteral("SELECT f.entry_id, b.%1 FROM bindings b JOIN folders f ON f.id = b.folder"
                       " WHERE b.message = ?")
            .arg(kBindingColumns.join(QStringLiteral(", b.")));
    static const QString scriptTag = mapi::tagKey(mapi::PR_SCRIPT);
    constexpr int kFirstMessageColumn = 3;
    AgentImage image;
    QSqlQuery &m = run(withMessage, {agent});
    QJsonObject fields;
    for (bool first = true; m.next(); first = false) {
        if (first) {
            image.folder = m.value(2).toString();
            image.message = rowJson(m, kMessageColumns, kFirstMessageColumn);
            image.name = image.message.value(QStringLiteral("subject")).toString();
            const int binding = kFirstMessageColumn + static_cast<int>(kMessageColumns.size());
            if (!m.isNull(binding)) {
                image.binding = rowJson(m, kBindingColumns, binding);
                image.name = image.binding.value(QStringLiteral("name")).toString();
            }
        }
        if (m.isNull(0))
            continue;
        if (m.value(0).toString() == scriptTag)
            image.script = m.value(1);
        else
            fields.insert(m.value(0).toString(), fieldJson(m.value(1)));
    }
    m.finish();
    if (!image.message.isEmpty()) {
        image.message.insert(QStringLiteral("fields"), fields);
        return image;
    }
    QSqlQuery &b = run(bindingAlone, {agent});
    if (b.next()) {
        image.folder = b.value(0).toString();
        image.binding = rowJson(b, kBindingColumns, 1);
        image.name = image.binding.value(QStringLiteral("name")).toString();
    }
    b.finish();
    return image;
}

void addHistory(Database &db)
{
    if (db.hasTable(QStringLiteral("agent_history")))
        return;
    db.transaction([&] {
        db.run(
            db.onServer()
                ? QStringLiteral("CREATE TABLE agent_history(id BIGINT GENERATED BY DEFAULT AS IDENTITY"
                                 " PRIMARY KEY, agent TEXT COLLATE \"C\" NOT NULL, change_no BIGINT NOT NULL,"
                                 " at TEXT COLLATE \"C\" NOT NULL, by_user TEXT NOT NULL, what TEXT NOT NULL,"
                                 " name TEXT NOT NULL, folder TEXT COLLATE \"C\" NOT NULL, before TEXT,"
                                 " script BYTEA)")
                : QStringLiteral("CREATE TABLE agent_history(id INTEGER PRIMARY KEY, agent TEXT NOT NULL,"
                                 " change_no INTEGER NOT NULL, at TEXT NOT NULL, by_user TEXT NOT NULL,"
                                 " what TEXT NOT NULL, name TEXT NOT NULL, folder TEXT NOT NULL,"
                                 " before TEXT, script BLOB)"));
        db.run(QStringLiteral("CREATE INDEX agent_history_agent ON agent_history(agent, id)"));
    });
}

void keepChange(const RunStatement &run, const QString &agent, qint64 number, const QString &at,
                const QString &user, ChangeKind what, const AgentImage &before)
{
    // An agent that was not there before is named as the change made it.
    const AgentImage named = before.isEmpty() ? agentImage(run, agent) : before;
    QJsonObject image;
    if (!before.binding.isEmpty())
        image.insert(QStringLiteral("binding"), before.binding);
    if (!before.message.isEmpty())
        image.insert(QStringLiteral("message"), before.message);
    // The name and folder columns take no NULL: a text that was never set
    // goes in empty.
    const auto text = [](const QString &t) { return t.isNull() ? QStringLiteral("") : t; };
    run(QStringLiteral("INSERT INTO agent_history(agent, change_no, at, by_user, what, name, folder, before,"
                       " script) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        {agent, number, at, user, changeKindText(what), text(named.name), text(named.folder),
         image.isEmpty() ? QVariant(QMetaType(QMetaType::QString))
                         : QString::fromUtf8(QJsonDocument(image).toJson(QJsonDocument::Compact)),
         before.script.isNull() ? QVariant(QMetaType(QMetaType::QByteArray)) : before.script.toByteArray()});
}

QList<Change> changes(const Database &db, const QStringList &agents)
{
    QList<Change> found;
    const auto read = [&](QSqlQuery q) {
        while (q.next())
            found << changeOf(q);
    };
    if (agents.isEmpty()) {
        read(db.run(QStringLiteral("SELECT %1 FROM agent_history ORDER BY id DESC").arg(kChangeColumns)));
        return found;
    }
    for (const QString &agent : agents)
        read(db.run(QStringLiteral("SELECT %1 FROM agent_history WHERE agent = ? ORDER BY id DESC")
                        .arg(kChangeColumns),
                    {agent}));
    std::sort(found.begin(), found.end(), [](const Change &a, const Change &b) { return a.id > b.id; });
    return found;
}

Change change(const Database &db, qint64 id)
{
    QSqlQuery q =
        db.run(QStringLiteral("SELECT %1 FROM agent_history WHERE id = ?").arg(kChangeColumns), {id});
    if (!q.next())
        throw noChange(id);
    return changeOf(q);
}

QStringList agentsNamed(Database &db, const QString &path)
{
    QStringList agents;
    const auto add = [&](QSqlQuery q) {
        while (q.next())
            if (!agents.contains(q.value(0).toString()))
                agents << q.value(0).toString();
    };
    add(db.run(QStringLiteral("SELECT DISTINCT agent FROM agent_history WHERE agent = ?"), {path}));
    QStringList parts =
        path.startsWith(QLatin1Char('\\')) ? path.mid(1).split(QLatin1Char('\\')) : QStringList();
    if (parts.size() > 2) {
        const QString name = parts.takeLast();
        const qint64 folder = folderOfPath(db, parts);
        if (folder) {
            const QString entry =
                db.scalar(QStringLiteral("SELECT entry_id FROM folders WHERE id = ?"), {folder}).toString();
            add(db.run(QStringLiteral("SELECT message FROM bindings WHERE folder = ? AND name = ?"),
                       {folder, name}));
            add(db.run(
                QStringLiteral("SELECT DISTINCT agent FROM agent_history WHERE folder = ? AND name = ?"),
                {entry, name}));
        }
        parts << name;
    }
    if (agents.isEmpty()) {
        // A folder: every agent it holds or held.
        if (const qint64 folder = folderOfPath(db, parts)) {
            const QString entry =
                db.scalar(QStringLiteral("SELECT entry_id FROM folders WHERE id = ?"), {folder}).toString();
            add(db.run(QStringLiteral("SELECT message FROM bindings WHERE folder = ?"), {folder}));
            add(db.run(QStringLiteral("SELECT DISTINCT agent FROM agent_history WHERE folder = ?"), {entry}));
            if (agents.isEmpty())
                agents << QString(); // a folder without agents has no changes
        }
    }
    if (agents.isEmpty()) {
        add(db.run(QStringLiteral("SELECT entry_id FROM messages WHERE entry_id = ? AND class = ?"),
                   {path, mapi::kBindingClass}));
    }
    if (agents.isEmpty())
        throw com::ComError(com::err::NotFound, kSource,
                            QStringLiteral("No agent or folder is named \"%1\".").arg(path));
    return agents;
}

QString folderPath(const Database &db, const QString &folder)
{
    QStringList names;
    QSqlQuery q =
        db.run(QStringLiteral("SELECT id, parent, name, store FROM folders WHERE entry_id = ?"), {folder});
    if (!q.next())
        return QString();
    QVariant parent = q.value(1);
    const qint64 storeRow = q.value(3).toLongLong();
    if (!parent.isNull())
        names.prepend(q.value(2).toString());
    q.finish();
    while (!parent.isNull()) {
        QSqlQuery up = db.run(QStringLiteral("SELECT parent, name FROM folders WHERE id = ?"), {parent});
        if (!up.next())
            break;
        parent = up.value(0);
        if (!parent.isNull())
            names.prepend(up.value(1).toString());
    }
    names.prepend(db.scalar(QStringLiteral("SELECT name FROM stores WHERE id = ?"), {storeRow}).toString());
    return QLatin1Char('\\') + names.join(QLatin1Char('\\'));
}

QByteArray scriptBefore(const Database &db, qint64 id)
{
    const Change c = change(db, id);
    if (c.script.isNull())
        throw com::ComError(com::err::NotFound, kSource,
                            QStringLiteral("The agent \"%1\" had no script before change %2 (%3).")
                                .arg(c.name)
                                .arg(id)
                                .arg(c.what));
    return c.script.toByteArray();
}

qint64 restoreChange(Database &db, qint64 id, const QString &user)
{
    return db.transaction([&] {
        const Change c = change(db, id);
        if (c.before.isEmpty())
            throw com::ComError(
                com::err::InvalidParameter, kSource,
                QStringLiteral("Change %1 created the agent \"%2\"; nothing was there before it.")
                    .arg(id)
                    .arg(c.name));
        const QJsonObject binding = bindingToRestore(db, c);
        const QJsonObject message = c.before.value(QStringLiteral("message")).toObject();
        if (binding.isEmpty() || message.isEmpty())
            throw com::ComError(
                com::err::NotFound, kSource,
                QStringLiteral(
                    "The history keeps too little of the agent \"%1\" before change %2 to restore it.")
                    .arg(c.name)
                    .arg(id));
        QSqlQuery f = db.run(QStringLiteral("SELECT id, store FROM folders WHERE entry_id = ?"), {c.folder});
        if (!f.next())
            throw com::ComError(
                com::err::NotFound, kSource,
                QStringLiteral("The folder of the agent \"%1\" is no longer in the store.").arg(c.name));
        const qint64 folder = f.value(0).toLongLong();
        const qint64 storeRow = f.value(1).toLongLong();
        f.finish();
        holdAgentChange(db, c.agent);
        Statements statements(db);
        const AgentImage now = agentImage(statements.runner(), c.agent);
        putMessage(db, c.agent, folder, message, c.script, user);
        putBinding(db, c.agent, folder, storeRow, binding);
        raiseAgentChange(statements.runner(), c.agent, user, ChangeKind::Restored, now);
        return db.scalar(QStringLiteral("SELECT max(id) FROM agent_history WHERE agent = ?"), {c.agent})
            .toLongLong();
    });
}

int pruneHistory(Database &db, const QString &cutoff)
{
    return db.transaction([&] {
        QSqlQuery q = db.run(QStringLiteral("DELETE FROM agent_history WHERE at < ?"), {cutoff});
        return q.numRowsAffected();
    });
}

} // namespace store
