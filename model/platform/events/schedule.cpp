#include "platform/events/schedule.h"

#include "platform/events/bindingdata.h"

#include <QtGlobal>

namespace events {

QTime toMinute(const QTime &time)
{
    return time.isValid() ? QTime(time.hour(), time.minute()) : QTime(0, 0);
}

int minutesOf(const QTime &time)
{
    return time.isValid() ? time.hour() * 60 + time.minute() : 0;
}

QTime timeOfMinutes(int minutes)
{
    const int m = qBound(0, minutes, 24 * 60 - 1);
    return QTime(m / 60, m % 60);
}

void Schedule::Clear()
{
    d->schedule = ScheduleData{};
}

QTime Schedule::At() const
{
    return d->schedule.at;
}

void Schedule::setAt(const QTime &at)
{
    d->schedule.at = toMinute(at);
}

int16_t Schedule::Days() const
{
    return d->schedule.days;
}

void Schedule::setDays(int16_t days)
{
    d->schedule.days = days;
}

QTime Schedule::StartTime() const
{
    return d->schedule.start;
}

void Schedule::setStartTime(const QTime &time)
{
    d->schedule.start = toMinute(time);
}

QTime Schedule::EndTime() const
{
    return d->schedule.end;
}

void Schedule::setEndTime(const QTime &time)
{
    d->schedule.end = toMinute(time);
}

int16_t Schedule::interval() const
{
    return d->schedule.interval;
}

void Schedule::setInterval(int16_t minutes)
{
    d->schedule.interval = minutes;
}

int16_t Schedule::Type() const
{
    return d->schedule.type;
}

void Schedule::setType(int16_t type)
{
    d->schedule.type = type;
}

} // namespace events
