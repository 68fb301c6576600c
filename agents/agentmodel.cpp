#include "agents/agentmodel.h"

namespace agents {

AgentFolder openMessageFolder(mapi::Session &session, events::Events &events, const mapi::Message &message)
{
    mapi::Folder folder = session.GetFolder(message.FolderID(), message.StoreID());
    events::EventSource source = events.GetEventSource(folder, true);
    return AgentFolder{message, std::move(folder), std::move(source)};
}

AgentFolder openAgentFolder(mapi::Session &session, events::Events &events, const QString &entryId,
                            const QString &storeId)
{
    return openMessageFolder(session, events, session.GetMessage(entryId, storeId));
}

std::optional<events::Binding> findBinding(events::Bindings &bindings, const QString &entryId)
{
    const int count = bindings.Count();
    for (int i = 1; i <= count; ++i) {
        events::Binding binding = bindings.Item(i);
        if (binding.EntryID() == entryId)
            return binding;
    }
    return std::nullopt;
}

std::optional<Agent> findAgent(mapi::Session &session, events::Events &events, const QString &entryId,
                               const QString &storeId)
{
    try {
        AgentFolder folder = openAgentFolder(session, events, entryId, storeId);
        std::optional<events::Binding> binding = findBinding(folder.bindings(), entryId);
        if (!binding)
            return std::nullopt;
        return Agent{std::move(folder), *binding};
    } catch (const com::ComError &) {
        return std::nullopt;
    }
}

QString handlerName(events::Events &events, const events::EventSource &source, const events::Binding &binding)
{
    return handlerName(events.Hosts().Item(source.HostName()), binding);
}

QString handlerName(const events::Host &host, const events::Binding &binding)
{
    const events::Handlers &handlers = host.Handlers();
    for (int j = 1; j <= handlers.Count(); ++j) {
        const events::Handler handler = handlers.Item(j);
        if (handler.ClassID == binding.HandlerClassID())
            return handler.Name;
    }
    return QString();
}

} // namespace agents
