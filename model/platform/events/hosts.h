#pragma once

#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QVector>

namespace events {

/// An event handler a host knows: its class identifier in registry form,
/// which a binding's `HandlerClassID` names, and its display name.
struct Handler {
    QString ClassID;
    QString Name;
};

/// The handlers of a host, in the host's order.
class Handlers {
public:
    explicit Handlers(QVector<Handler> handlers) : m_handlers(std::move(handlers)) {}
    int Count() const { return static_cast<int>(m_handlers.size()); }
    /// From 1; an index outside 1 to Count raises 9.
    Handler Item(int index) const;

private:
    QVector<Handler> m_handlers;
};

/// A server that runs event bindings.
class Host {
public:
    Host(QString name, events::Handlers handlers) : m_name(std::move(name)), m_handlers(std::move(handlers))
    {
    }
    QString Name() const { return m_name; }
    const events::Handlers &Handlers() const { return m_handlers; }

private:
    QString m_name;
    events::Handlers m_handlers;
};

/// The hosts the event configuration knows.
class Hosts {
public:
    explicit Hosts(mapi::StatePtr state) : m_state(std::move(state)) {}
    /// The host of that name (case ignored); raises 0x8004010F when there
    /// is none.
    Host Item(const QString &name) const;

private:
    mapi::StatePtr m_state;
};

} // namespace events
