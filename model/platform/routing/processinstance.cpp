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
    // A listing opens every message of one folder: their states come in one
    // read, at the first open in that folder.
    const QString folder = m_message->FolderID();
    if (folder != m_folder) {
        m_states.clear();
        QSqlQuery &q = m_message->state()->run(
            QStringLiteral("SELECT i.message, i.rui, i.status, i.row FROM instances i"
                           " JOIN messages m ON m.id = i.message JOIN folders f ON f.id = m.folder"
                           " WHERE f.entry_id = ?"),
            {folder});
        while (q.next())
            m_states.insert(q.value(0).toLongLong(),
                            State{q.value(1).toInt(), q.value(2).toString(), q.value(3).toInt()});
        m_folder = folder;
    }
    const auto it = m_states.constFind(m_message->row());
    if (it == m_states.constEnd())
        throw routingError(
            com::err::NotFound,
            QStringLiteral("The message \"%1\" is no process instance.").arg(m_message->Subject()));
    m_rui = it->rui;
    m_status = it->status;
    m_row = it->row;
}

} // namespace routing
