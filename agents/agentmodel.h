#pragma once

#include "platform/events/events.h"
#include "platform/mapi/session.h"

#include <QString>

#include <optional>

namespace agents {

/// An agent's folder as every command on one agent reaches it: the binding
/// message, its folder, the folder's event source and its bindings.
struct AgentFolder {
    mapi::Message message;
    mapi::Folder folder;
    events::EventSource source;
    events::Bindings &bindings() { return source.Bindings(); }
};

/// Opens the folder of the agent whose binding message has these
/// identifiers. Raises what the store raises.
AgentFolder openAgentFolder(mapi::Session &session, events::Events &events, const QString &entryId,
                            const QString &storeId);
/// The same from a binding message already in hand.
AgentFolder openMessageFolder(mapi::Session &session, events::Events &events, const mapi::Message &message);

/// The binding whose `EntryID` is `entryId`: the first match in the
/// collection's own order, or nothing.
std::optional<events::Binding> findBinding(events::Bindings &bindings, const QString &entryId);

/// An agent's folder and its binding.
struct Agent {
    AgentFolder folder;
    events::Binding binding;
};

/// Opens the agent's folder and finds its binding; nothing when either
/// can't be had.
std::optional<Agent> findAgent(mapi::Session &session, events::Events &events, const QString &entryId,
                               const QString &storeId);

/// The display name of a binding's handler on the source's host; empty when
/// no handler there has its class.
QString handlerName(events::Events &events, const events::EventSource &source,
                    const events::Binding &binding);
/// The same on a host in hand.
QString handlerName(const events::Host &host, const events::Binding &binding);

} // namespace agents
