#include "platform/events/binding.h"

#include "platform/events/authors.h"
#include "platform/events/bindingdata.h"
#include "platform/events/bindingwrite.h"
#include "platform/events/errors.h"
#include "platform/mapi/message.h"

namespace events {

Binding::Binding(std::shared_ptr<BindingData> data) : d(std::move(data)) {}

QString Binding::EntryID() const
{
    return d->entryId;
}

QString Binding::StateMessageID() const
{
    return d->stateId;
}

QString Binding::Name() const
{
    return d->name;
}

void Binding::setName(const QString &name)
{
    d->name = name;
}

bool Binding::Active() const
{
    return d->active;
}

void Binding::setActive(bool active)
{
    d->active = active;
}

int16_t Binding::EventMask() const
{
    return d->mask;
}

void Binding::setEventMask(int16_t mask)
{
    d->mask = mask;
}

QString Binding::HandlerClassID() const
{
    return d->handler;
}

void Binding::setHandlerClassID(const QString &classId)
{
    d->handler = classId;
}

events::Schedule Binding::Schedule() const
{
    return events::Schedule(d);
}

void Binding::SaveChanges()
{
    checkAuthor(d->state, d->source.host);
    writeBinding(*d);
}

void Binding::PrepareCustomChanges()
{
    checkAuthor(d->state, d->source.host);
}

void Binding::SaveCustomChanges(const mapi::Message &message)
{
    checkAuthor(d->state, d->source.host);
    if (d->row == 0 || message.ID() != d->entryId)
        throw eventsError(com::err::InvalidParameter,
                          QStringLiteral("The message \"%1\" is not the message of the binding \"%2\".")
                              .arg(message.Subject(), d->name));
}

} // namespace events
