#pragma once

#include "platform/store/history.h"

#include <QString>

namespace store {

class Database;

/// The last change of an agent, its binding and binding message together:
/// a number that every write of the agent raises, whoever writes it, with
/// the user who made the change and when. Agents are named by the entry
/// identifier of their binding message.
struct AgentChange {
    qint64 number = 0; ///< 0 for an agent not written since the store began counting
    QString user;
    QString at; ///< the store's time ("yyyy-MM-dd HH:mm:ss")
};

/// Gives a store made before agents' changes were counted the table that
/// counts them, and one made before they were kept the history; nothing
/// happens to a store that has both.
void addAgentChanges(Database &db);

/// The agent's last change as the store has it now.
AgentChange agentChange(const Database &db, const QString &agent);

/// The same inside a write transaction, and held: no other program writes
/// the agent until the transaction ends, so that what is written next is
/// written over exactly this change.
AgentChange holdAgentChange(const Database &db, const QString &agent);

/// Raises the agent's number as a write by `user`, now, and keeps in the
/// history what the write changed and the agent `before` it (read with
/// agentImage before the write touched it); run inside the write's own
/// transaction.
void raiseAgentChange(const RunStatement &run, const QString &agent, const QString &user, ChangeKind what,
                      const AgentImage &before);

} // namespace store
