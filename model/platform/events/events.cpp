#include "platform/events/events.h"

#include "platform/events/errors.h"

namespace events {

void Events::SetSession(mapi::StatePtr session)
{
    m_state = std::move(session);
}

void Events::check() const
{
    if (!m_state)
        throw eventsError(com::err::NotLoggedOn, QStringLiteral("No session has been set."));
    m_state->check();
}

EventSource Events::GetEventSource(const mapi::Folder &folder, bool create)
{
    Q_UNUSED(create);
    check();
    const mapi::Folder::Row &row = folder.row();
    if (!row.eventSource)
        throw eventsError(com::err::NoEventSource,
                          QStringLiteral("The folder \"%1\" has no event source.").arg(folder.Name()));
    return EventSource(m_state, SourceRef{row.row, row.storeRow, row.host});
}

events::Hosts Events::Hosts() const
{
    check();
    return events::Hosts(m_state);
}

} // namespace events
