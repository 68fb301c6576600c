#include "platform/events/hosts.h"

#include "platform/events/errors.h"

namespace events {

Handler Handlers::Item(int index) const
{
    if (index < 1 || index > m_handlers.size())
        throw eventsError(com::err::SubscriptOutOfRange, QStringLiteral("Subscript out of range"));
    return m_handlers.at(index - 1);
}

Host Hosts::Item(const QString &name) const
{
    QSqlQuery &hosts = m_state->run(QStringLiteral("SELECT id, name FROM hosts WHERE name = ?"), {name});
    if (!hosts.next())
        throw eventsError(com::err::NotFound, QStringLiteral("There is no host named \"%1\".").arg(name));
    const qint64 id = hosts.value(0).toLongLong();
    const QString hostName = hosts.value(1).toString();
    hosts.finish();
    QSqlQuery &q = m_state->run(
        QStringLiteral("SELECT class_id, name FROM handlers WHERE host = ? ORDER BY seq, id"), {id});
    QVector<Handler> handlers;
    while (q.next())
        handlers.append(Handler{q.value(0).toString(), q.value(1).toString()});
    return Host(hostName, events::Handlers(std::move(handlers)));
}

} // namespace events
