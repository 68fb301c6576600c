#include "storecheck.h"

#include "platform/com/comerror.h"
#include "platform/store/database.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

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

} // namespace

StoreCheck StoreCheck::of(const QString &path)
{
    StoreCheck check;
    try {
        const auto db = store::Database::open(path);
        QSqlQuery q = db->run(u"PRAGMA integrity_check"_s);
        check.integrity = q.next() ? q.value(0).toString() : u"no answer to the integrity check"_s;
        q.finish();
        check.halfAgents = halfAgentsIn(*db);
    } catch (const com::ComError &e) {
        check.integrity = e.description();
    }
    return check;
}

QSet<QString> StoreCheck::halfAgentsIn(const store::Database &db)
{
    QSet<QString> found;
    for (const auto &[what, sql] : kHalfAgentQueries) {
        QSqlQuery q = db.run(QString::fromLatin1(sql));
        while (q.next())
            found << QString::fromLatin1(what) + u": "_s + q.value(0).toString();
    }
    return found;
}

} // namespace testsupport
