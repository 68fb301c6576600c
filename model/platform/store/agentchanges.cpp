#include "platform/store/agentchanges.h"

#include "platform/store/database.h"

namespace store {

namespace {

AgentChange read(const Database &db, const QString &agent, const QString &suffix)
{
    QSqlQuery q = db.run(
        QStringLiteral("SELECT change_no, by_user, at FROM agent_changes WHERE agent = ?") + suffix, {agent});
    AgentChange change;
    if (q.next()) {
        change.number = q.value(0).toLongLong();
        change.user = q.value(1).toString();
        change.at = q.value(2).toString();
    }
    return change;
}

} // namespace

void addAgentChanges(Database &db)
{
    addHistory(db);
    if (db.hasTable(QStringLiteral("agent_changes")))
        return;
    db.transaction([&] {
        db.run(db.onServer()
                   ? QStringLiteral("CREATE TABLE agent_changes(agent TEXT COLLATE \"C\" PRIMARY KEY,"
                                    " change_no BIGINT NOT NULL, by_user TEXT NOT NULL,"
                                    " at TEXT NOT NULL)")
                   : QStringLiteral("CREATE TABLE agent_changes(agent TEXT PRIMARY KEY,"
                                    " change_no INTEGER NOT NULL, by_user TEXT NOT NULL,"
                                    " at TEXT NOT NULL) WITHOUT ROWID"));
    });
}

AgentChange agentChange(const Database &db, const QString &agent)
{
    // A store opened for reading only may be older than the count.
    if (db.access() == Database::Access::ReadOnly && !db.hasTable(QStringLiteral("agent_changes")))
        return {};
    return read(db, agent, QString());
}

AgentChange holdAgentChange(const Database &db, const QString &agent)
{
    // The row must exist for the server to hold it; a store file is held
    // whole by its write transaction already.
    db.run(QStringLiteral("INSERT INTO agent_changes(agent, change_no, by_user, at) VALUES(?, 0, '', '')"
                          " ON CONFLICT(agent) DO NOTHING"),
           {agent});
    return read(db, agent, db.onServer() ? QStringLiteral(" FOR UPDATE") : QString());
}

void raiseAgentChange(const RunStatement &run, const QString &agent, const QString &user, ChangeKind what,
                      const AgentImage &before)
{
    const QString at = Database::now();
    QSqlQuery &q =
        run(QStringLiteral("INSERT INTO agent_changes(agent, change_no, by_user, at) VALUES(?, 1, ?, ?)"
                           " ON CONFLICT(agent) DO UPDATE SET change_no = agent_changes.change_no + 1,"
                           " by_user = excluded.by_user, at = excluded.at RETURNING change_no"),
            {agent, user, at});
    const qint64 number = q.next() ? q.value(0).toLongLong() : 0;
    q.finish();
    keepChange(run, agent, number, at, user, what, before);
}

} // namespace store
