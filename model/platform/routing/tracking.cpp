#include "platform/routing/tracking.h"

#include "platform/routing/errors.h"

namespace routing {

void Tracking::attach(const mapi::Message &message)
{
    m_records.clear();
    QSqlQuery &q = message.state()->run(
        QStringLiteral("SELECT status, at, name FROM votes WHERE message = ? ORDER BY seq"), {message.row()});
    while (q.next())
        m_records.append(TrackingRecord{q.value(0).toString(), q.value(1).toString(), q.value(2).toString()});
}

TrackingRecord Tracking::Record(int index) const
{
    if (index < 1 || index > m_records.size())
        throw routingError(com::err::SubscriptOutOfRange,
                           QStringLiteral("There is no record %1.").arg(index));
    return m_records.at(index - 1);
}

} // namespace routing
