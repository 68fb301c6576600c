#include "storecheck.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>

namespace testsupport {

namespace {

void collect(QSqlDatabase &db, const QString &what, const QString &sql, QSet<QString> &into)
{
    QSqlQuery q(db);
    if (!q.exec(sql)) {
        into << what + QStringLiteral(": ") + q.lastError().text();
        return;
    }
    while (q.next())
        into << what + QStringLiteral(": ") + q.value(0).toString();
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
            collect(
                db, QStringLiteral("binding without its binding message"),
                QStringLiteral("SELECT b.name FROM bindings b LEFT JOIN messages m ON m.entry_id = b.message"
                               " AND m.class = 'IPC.Microsoft.EventBinding' WHERE m.id IS NULL"),
                check.halfAgents);
            collect(db, QStringLiteral("binding without its state message"),
                    QStringLiteral("SELECT b.name FROM bindings b LEFT JOIN messages m ON m.entry_id ="
                                   " b.state_message AND m.class = 'IPC.Microsoft.ICS.EventBinding'"
                                   " WHERE m.id IS NULL"),
                    check.halfAgents);
            collect(db, QStringLiteral("binding without a script"),
                    QStringLiteral("SELECT b.name FROM bindings b JOIN messages m ON m.entry_id = b.message"
                                   " LEFT JOIN fields f ON f.message = m.id AND f.tag = '0x7102001E'"
                                   " WHERE f.message IS NULL"),
                    check.halfAgents);
            collect(
                db, QStringLiteral("binding message without a binding"),
                QStringLiteral("SELECT m.subject FROM messages m WHERE m.class = 'IPC.Microsoft.EventBinding'"
                               " AND NOT EXISTS (SELECT 1 FROM bindings b WHERE b.message = m.entry_id)"),
                check.halfAgents);
            collect(db, QStringLiteral("state message without a binding"),
                    QStringLiteral("SELECT m.subject FROM messages m WHERE m.class = "
                                   "'IPC.Microsoft.ICS.EventBinding' AND NOT EXISTS (SELECT 1 FROM bindings b"
                                   " WHERE b.state_message = m.entry_id)"),
                    check.halfAgents);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return check;
}

} // namespace testsupport
