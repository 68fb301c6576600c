#pragma once

#include "platform/mapi/folder.h"
#include "platform/mapi/message.h"
#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QTime>
#include <QVector>

#include <cstdint>
#include <memory>

namespace events {

struct BindingData;

/// A binding's timer settings. Changes travel with the binding's
/// `SaveChanges`.
class Schedule {
public:
    explicit Schedule(std::shared_ptr<BindingData> binding) : d(std::move(binding)) {}

    /// Forgets the old settings.
    void Clear();
    QTime At() const;
    void setAt(const QTime &at);
    int16_t Days() const;
    void setDays(int16_t days);
    QTime StartTime() const;
    void setStartTime(const QTime &time);
    QTime EndTime() const;
    void setEndTime(const QTime &time);
    int16_t interval() const;
    void setInterval(int16_t minutes);
    int16_t Type() const;
    void setType(int16_t type);

private:
    std::shared_ptr<BindingData> d;
};

/// One event binding of a folder: which events start which handler.
class Binding {
public:
    explicit Binding(std::shared_ptr<BindingData> data);

    /// The binding message's identifier; empty until the first save.
    QString EntryID() const;
    QString StateMessageID() const;
    QString Name() const;
    void setName(const QString &name);
    bool Active() const;
    void setActive(bool active);
    int16_t EventMask() const;
    void setEventMask(int16_t mask);
    QString HandlerClassID() const;
    void setHandlerClassID(const QString &classId);
    events::Schedule Schedule() const;

    /// Stores the binding; a new one gets its binding message and state
    /// message. A user who is no author on the host gets error 70.
    void SaveChanges();
    /// Before a change of the binding message of an existing binding.
    void PrepareCustomChanges();
    /// Takes the binding message's changed fields.
    void SaveCustomChanges(const mapi::Message &message);

    const std::shared_ptr<BindingData> &data() const { return d; }

private:
    std::shared_ptr<BindingData> d;
};

/// The bindings of one event source, in its order.
class Bindings {
public:
    Bindings(mapi::StatePtr state, qint64 folderRow, QString host);

    int Count() const;
    /// From 1.
    Binding Item(int index) const;
    /// A new, empty binding of this folder; stored by its `SaveChanges`.
    Binding Add();
    /// Takes the binding out at once.
    void Remove(const Binding &binding);

private:
    void load() const;

    mapi::StatePtr m_state;
    qint64 m_folder;
    QString m_host;
    mutable std::unique_ptr<QVector<Binding>> m_loaded;
};

/// The event source of a folder.
class EventSource {
public:
    EventSource(mapi::StatePtr state, qint64 folderRow, QString host);

    events::Bindings &Bindings() { return m_bindings; }
    QString HostName() const { return m_host; }
    /// Makes added and changed bindings lasting.
    void SaveChanges();

private:
    mapi::StatePtr m_state;
    qint64 m_folder;
    QString m_host;
    events::Bindings m_bindings;
};

struct Handler {
    QString ClassID;
    QString Name;
};

class Handlers {
public:
    explicit Handlers(QVector<Handler> handlers) : m_handlers(std::move(handlers)) {}
    int Count() const { return static_cast<int>(m_handlers.size()); }
    /// From 1.
    Handler Item(int index) const;

private:
    QVector<Handler> m_handlers;
};

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

class Hosts {
public:
    explicit Hosts(mapi::StatePtr state) : m_state(std::move(state)) {}
    /// The host of that name; raises when there is none.
    Host Item(const QString &name) const;

private:
    mapi::StatePtr m_state;
};

/// The event configuration root: made once, given the session, and asked
/// for the event source of a folder.
class Events {
public:
    Events() = default;

    /// Called once, before any other member.
    void SetSession(mapi::StatePtr session);
    /// Raises when agents can't be kept in this folder.
    EventSource GetEventSource(const mapi::Folder &folder, bool create);
    events::Hosts Hosts() const;

private:
    void check() const;
    mapi::StatePtr m_state;
};

/// Raises error 70 unless the session's user may write bindings on `host`.
void checkAuthor(const mapi::StatePtr &state, const QString &host);

} // namespace events
