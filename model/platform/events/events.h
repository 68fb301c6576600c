#pragma once

// The event configuration objects: the root, and every object it leads to.
#include "platform/events/binding.h"
#include "platform/events/bindings.h"
#include "platform/events/eventsource.h"
#include "platform/events/guid.h"
#include "platform/events/hosts.h"
#include "platform/events/schedule.h"
#include "platform/mapi/folder.h"
#include "platform/mapi/sessionstate.h"

namespace events {

/// The event configuration root: made once, given the session, then asked
/// for the event source of a folder and for the hosts.
class Events {
public:
    Events() = default;

    /// Called once, right after creation, before any other member.
    void SetSession(mapi::StatePtr session);
    /// The folder's event source; raises 0x80041001 for a folder that has
    /// none, where agents can't be kept. `create` is always passed true.
    EventSource GetEventSource(const mapi::Folder &folder, bool create);
    events::Hosts Hosts() const;

private:
    void check() const;
    mapi::StatePtr m_state;
};

} // namespace events
