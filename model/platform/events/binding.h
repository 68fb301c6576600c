#pragma once

#include "platform/events/schedule.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace mapi {
class Message;
}

namespace events {

struct BindingData;

/// The bits of a binding's event mask.
enum EventBit : int16_t {
    kEventScheduled = 1,
    kEventNewItem = 2,
    kEventChangedItem = 4,
    kEventDeletedItem = 8,
    kEventAll = 15,
};

/// The mask of an agent that runs on each event whose flag is set.
constexpr int16_t eventMask(bool scheduled, bool newItem, bool changedItem, bool deletedItem)
{
    return static_cast<int16_t>((scheduled ? kEventScheduled : 0) | (newItem ? kEventNewItem : 0) |
                                (changedItem ? kEventChangedItem : 0) |
                                (deletedItem ? kEventDeletedItem : 0));
}

/// One event binding of a folder: which events start which handler. What is
/// set on it stays pending until `SaveChanges`. Copies of a handle share one
/// binding. Every write by a user who is no author on the folder's host
/// raises 70 and writes nothing.
class Binding {
public:
    explicit Binding(std::shared_ptr<BindingData> data);

    /// The binding message's entry identifier; empty until the first save.
    QString EntryID() const;
    /// The state message's entry identifier; empty until the first save.
    QString StateMessageID() const;
    QString Name() const;
    void setName(const QString &name);
    bool Active() const;
    void setActive(bool active);
    /// The `EventBit`s the agent runs on.
    int16_t EventMask() const;
    void setEventMask(int16_t mask);
    /// The handler's class identifier in registry form, with braces.
    QString HandlerClassID() const;
    void setHandlerClassID(const QString &classId);
    events::Schedule Schedule() const;

    /// Stores the binding; a new one gets its binding message and state
    /// message in the same transaction.
    void SaveChanges();
    /// Announces a change of the binding message of a stored binding.
    void PrepareCustomChanges();
    /// Takes back the binding message whose fields were changed and stored;
    /// raises for a message that isn't this binding's.
    void SaveCustomChanges(const mapi::Message &message);

    const std::shared_ptr<BindingData> &data() const { return d; }

private:
    std::shared_ptr<BindingData> d;
};

} // namespace events
