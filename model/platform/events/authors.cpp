#include "platform/events/authors.h"

#include "platform/events/errors.h"

namespace events {

bool isAuthor(const mapi::StatePtr &state, const QString &host)
{
    QSqlQuery &q =
        state->run(QStringLiteral("SELECT h.restricted = 0 OR EXISTS(SELECT 1 FROM host_authors a"
                                  " WHERE a.host = h.id AND a.\"user\" = ?) FROM hosts h WHERE h.name = ?"),
                   {state->user, host});
    const bool allowed = !q.next() || q.value(0).toInt() != 0;
    q.finish();
    return allowed;
}

void checkAuthor(const mapi::StatePtr &state, const QString &host)
{
    state->check();
    if (!isAuthor(state, host))
        throw eventsError(com::err::PermissionDenied, QStringLiteral("Permission denied"));
}

} // namespace events
