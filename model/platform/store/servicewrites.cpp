#include "platform/store/servicewrites.h"

#include "platform/mapi/tags.h"
#include "platform/store/database.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace store {

namespace {

const QString kSource = QStringLiteral("sorrelin-store");

} // namespace

qint64 folderOfPath(Database &db, const QStringList &parts)
{
    if (parts.size() < 2)
        return 0;
    qint64 folder = db.scalar(QStringLiteral("SELECT f.id FROM folders f JOIN stores s ON s.id = f.store"
                                             " WHERE s.name = ? AND f.parent IS NULL ORDER BY s.seq, f.id"),
                              {parts.at(0)})
                        .toLongLong();
    for (int i = 1; folder && i < parts.size(); ++i)
        folder =
            db.scalar(QStringLiteral("SELECT id FROM folders WHERE parent = ? AND name = ? ORDER BY seq, id"),
                      {folder, parts.at(i)})
                .toLongLong();
    return folder;
}

namespace {

/// A text member of a row ("" when absent); anything else is refused with
/// the member's path, so that a number never goes in as an empty text.
QString rowText(const QJsonObject &row, const QString &name, const QString &path)
{
    const QJsonValue v = row.value(name);
    if (v.isUndefined())
        return QStringLiteral("");
    if (!v.isString())
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1.%2: expected a text").arg(path, name));
    return v.toString();
}

qint64 find(Database &db, const QString &name, bool agent)
{
    QVariant row = db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {name});
    if (!row.isValid() && name.startsWith(QLatin1Char('\\'))) {
        QStringList parts = name.mid(1).split(QLatin1Char('\\'));
        const QString subject = parts.takeLast();
        const qint64 folder = folderOfPath(db, parts);
        if (folder)
            row = agent
                      ? db.scalar(QStringLiteral("SELECT id FROM messages WHERE folder = ? AND hidden = 1 AND"
                                                 " class = ? AND subject = ? ORDER BY id"),
                                  {folder, mapi::kBindingClass, subject})
                      : db.scalar(QStringLiteral("SELECT id FROM messages WHERE folder = ? AND subject = ?"
                                                 " ORDER BY hidden, id"),
                                  {folder, subject});
    }
    if (!row.isValid())
        throw com::ComError(com::err::NotFound, kSource,
                            QStringLiteral("No %1 is named \"%2\".")
                                .arg(agent ? QStringLiteral("agent") : QStringLiteral("message"), name));
    return row.toLongLong();
}

} // namespace

qint64 findAgentMessage(Database &db, const QString &agent)
{
    return find(db, agent, true);
}

qint64 findMessage(Database &db, const QString &message)
{
    return find(db, message, false);
}

void setAgentLog(Database &db, const QString &agent, const QByteArray &log)
{
    db.transaction([&] {
        const qint64 message = findAgentMessage(db, agent);
        const QVariant stateId = db.scalar(
            QStringLiteral("SELECT b.state_message FROM bindings b JOIN messages m ON m.entry_id = b.message"
                           " WHERE m.id = ?"),
            {message});
        const QVariant state =
            stateId.isNull()
                ? QVariant()
                : db.scalar(QStringLiteral("SELECT id FROM messages WHERE entry_id = ?"), {stateId});
        if (!state.isValid())
            throw com::ComError(
                com::err::NotFound, kSource,
                QStringLiteral("The agent \"%1\" has no state message to hold a log.").arg(agent));
        db.run(
            QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?) ON CONFLICT(message, tag)"
                           " DO UPDATE SET value = excluded.value"),
            {state, mapi::tagKey(mapi::PR_AGENT_LOG), log.isNull() ? QByteArray("") : log});
    });
}

void setMap(Database &db, const QString &message, const QJsonArray &rows)
{
    db.transaction([&] {
        const qint64 row = findMessage(db, message);
        db.run(QStringLiteral("DELETE FROM map_rows WHERE message = ?"), {row});
        for (int i = 0; i < rows.size(); ++i) {
            const QJsonObject r = rows.at(i).toObject();
            const QJsonValue args = r.value(QStringLiteral("args"));
            if (!rows.at(i).isObject() || (!args.isArray() && !args.isUndefined()))
                throw com::ComError(
                    com::err::InvalidParameter, kSource,
                    QStringLiteral("map[%1]: expected {\"activity\", \"action\", \"flags\", \"args\"}")
                        .arg(i));
            const QString path = QStringLiteral("map[%1]").arg(i);
            for (const QJsonValue &arg : args.toArray())
                if (!arg.isString())
                    throw com::ComError(com::err::InvalidParameter, kSource,
                                        QStringLiteral("%1.args: expected a list of texts").arg(path));
            db.run(QStringLiteral("INSERT INTO map_rows(message, row, activity, action, flags, args)"
                                  " VALUES(?, ?, ?, ?, ?, ?)"),
                   {row, i, rowText(r, QStringLiteral("activity"), path),
                    rowText(r, QStringLiteral("action"), path), rowText(r, QStringLiteral("flags"), path),
                    QString::fromUtf8(QJsonDocument(r.value(QStringLiteral("args")).toArray())
                                          .toJson(QJsonDocument::Compact))});
        }
    });
}

void setInstance(Database &db, const QString &message, int rui, const QString &status, int row)
{
    db.transaction([&] {
        const qint64 m = findMessage(db, message);
        db.run(
            QStringLiteral("INSERT INTO instances(message, rui, status, row) VALUES(?, ?, ?, ?)"
                           " ON CONFLICT(message) DO UPDATE SET rui = excluded.rui, status = excluded.status,"
                           " row = excluded.row"),
            {m, rui, status, row});
    });
}

void setVotes(Database &db, const QString &message, const QJsonArray &votes)
{
    db.transaction([&] {
        const qint64 m = findMessage(db, message);
        db.run(QStringLiteral("DELETE FROM votes WHERE message = ?"), {m});
        for (int i = 0; i < votes.size(); ++i) {
            const QJsonObject v = votes.at(i).toObject();
            if (!votes.at(i).isObject())
                throw com::ComError(
                    com::err::InvalidParameter, kSource,
                    QStringLiteral("votes[%1]: expected {\"name\", \"status\", \"at\"}").arg(i));
            db.run(QStringLiteral("INSERT INTO votes(message, seq, name, status, at) VALUES(?, ?, ?, ?, ?)"),
                   {m, i, rowText(v, QStringLiteral("name"), QStringLiteral("votes[%1]").arg(i)),
                    rowText(v, QStringLiteral("status"), QStringLiteral("votes[%1]").arg(i)),
                    rowText(v, QStringLiteral("at"), QStringLiteral("votes[%1]").arg(i))});
        }
    });
}

} // namespace store
