#include "platform/routing/processinstance.h"

#include "platform/routing/errors.h"

namespace routing {

void ProcessInstance::attach(const mapi::Message &message)
{
    m_message = message;
}

void ProcessInstance::Open()
{
    m_status.clear();
    if (!m_message)
        throw routingError(com::err::InvalidParameter, QStringLiteral("No message is attached."));
    QSqlQuery &q = m_message->state()->run(
        QStringLiteral("SELECT rui, status, row FROM instances WHERE message = ?"), {m_message->row()});
    if (!q.next())
        throw routingError(
            com::err::NotFound,
            QStringLiteral("The message \"%1\" is no process instance.").arg(m_message->Subject()));
    m_rui = q.value(0).toInt();
    m_status = q.value(1).toString();
    m_row = q.value(2).toInt();
    q.finish();
}

} // namespace routing
