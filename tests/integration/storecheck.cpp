#include "storecheck.h"

#include "platform/store/database.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>

namespace testsupport {

namespace {

const std::pair<const char *, const char *> kHalfAgentQueries[] = {
    {"binding without its binding message",
     "SELECT b.name FROM bindings b LEFT JOIN messages m ON m.entry_id = b.message"
     " AND m.class = 'IPC.Microsoft.EventBinding' WHERE m.id IS NULL"},
    {"binding without its state message",
     "SELECT b.name FROM bindings b LEFT JOIN messages m ON m.entry_id = b.state_message"
     " AND m.class = 'IPC.Microsoft.ICS.EventBinding' WHERE m.id IS NULL"},
    {"binding without a script", "SELECT b.name FROM bindings b JOIN messages m ON m.entry_id = b.message"
                                 " LEFT JOIN fields f ON f.message = m.id AND f.tag = '0x7102001E'"
                                 " WHERE f.message IS NULL"},
    {"binding message without a binding",
     "SELECT m.subject FROM messages m WHERE m.class = 'IPC.Microsoft.EventBinding'"
     " AND NOT EXISTS (SELECT 1 FROM bindings b WHERE b.message = m.entry_id)"},
    {"state message without a binding",
     "SELECT m.subject FROM messages m WHERE m.class = 'IPC.Microsoft.ICS.EventBinding'"
     " AND NOT EXISTS (SELECT 1 FROM bindings b WHERE b.state_message = m.entry_id)"},
};

/// Every query above through `run`, which gives the query it ran.
template <class Run> QSet<QString> findHalfAgents(Run run)
{
    QSet<QString> found;
    for (const auto &[what, sql] : kHalfAgentQueries) {
        QSqlQuery q = run(QString::fromLatin1(sql));
        if (!q.isActive())
            found << QString::fromLatin1(what) + QStringLiteral(": ") + q.lastError().text();
        while (q.next())
            found << QString::fromLatin1(what) + QStringLiteral(": ") + q.value(0).toString();
    }
    return found;
}

} // namespace

StoreCheck StoreCheck::of(const QString &path)
{
    static std::atomic<int> counter{0};
    const QString name = QStringLiteral("storecheck-%1").arg(counter++);
    StoreCheck check;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=30000"));
        if (!db.open()) {
            check.integrity = db.lastError().text();
        } else {
            QSqlQuery q(db);
            check.integrity = q.exec(QStringLiteral("PRAGMA integrity_check")) && q.next()
                                  ? q.value(0).toString()
                                  : q.lastError().text();
            q.finish();
            check.halfAgents = findHalfAgents([&](const QString &sql) {
                QSqlQuery query(db);
                query.exec(sql);
                return query;
            });
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return check;
}

QSet<QString> StoreCheck::halfAgentsIn(const store::Database &db)
{
    return findHalfAgents([&](const QString &sql) { return db.run(sql); });
}

} // namespace testsupport
