#pragma once

#include "platform/events/bindings.h"
#include "platform/events/sourceref.h"
#include "platform/mapi/sessionstate.h"

#include <QString>

namespace events {

/// The event source of a folder: its bindings and the host that runs them.
class EventSource {
public:
    EventSource(mapi::StatePtr state, SourceRef source);

    events::Bindings &Bindings() { return m_bindings; }
    const events::Bindings &Bindings() const { return m_bindings; }
    /// The name of the server that runs the folder's bindings.
    QString HostName() const { return m_source.host; }
    /// Makes added and changed bindings lasting. Each binding's own
    /// `SaveChanges` has stored it already; a user who is no author on the
    /// host gets 70 here too.
    void SaveChanges();

private:
    mapi::StatePtr m_state;
    SourceRef m_source;
    events::Bindings m_bindings;
};

} // namespace events
