#include "platform/events/eventsource.h"

#include "platform/events/authors.h"

namespace events {

EventSource::EventSource(mapi::StatePtr state, SourceRef source)
    : m_state(state), m_source(source), m_bindings(std::move(state), std::move(source))
{
}

void EventSource::SaveChanges()
{
    checkAuthor(m_state, m_source.host);
}

} // namespace events
