#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QString>

namespace store {

class Database;

/// What the event service itself writes, for an administrator's tests: an
/// agent's log, a map on a message, a message's process instance and votes.
/// Agents and messages are named by entry identifier or by their path below
/// the tree's root ("\Mailbox - Alice Admin\Inbox\Auto Reply").

/// The row of the binding message an agent is named by; raises if none.
qint64 findAgentMessage(Database &db, const QString &agent);

/// The folder row at the end of a path below the tree's root, its parts
/// ("Store", "Folder", "Sub"), or 0 when a part names nothing.
qint64 folderOfPath(Database &db, const QStringList &parts);

/// The row of an ordinary or hidden message; raises if none.
qint64 findMessage(Database &db, const QString &message);

void setAgentLog(Database &db, const QString &agent, const QByteArray &log);
/// `rows`: [{"activity","action","flags","args":[...]}]; replaces any map.
void setMap(Database &db, const QString &message, const QJsonArray &rows);
void setInstance(Database &db, const QString &message, int rui, const QString &status, int row);
/// `votes`: [{"name","status","at"}]; replaces any votes.
void setVotes(Database &db, const QString &message, const QJsonArray &votes);

} // namespace store
