#include "agents/schedulewrite.h"

#include "agents/schedule.h"
#include "platform/events/events.h"

namespace agents {

void writeSchedule(events::Binding &binding)
{
    udtSchedule &record = schedule();
    events::Schedule s = binding.Schedule();
    s.Clear();
    s.setAt(record.At);
    s.setDays(record.Days);
    s.setEndTime(record.EndTime);
    s.setStartTime(record.StartTime);
    s.setInterval(record.interval);
    if (record.Type == 0)
        record.Type = 1;
    s.setType(record.Type);
}

void readSchedule(const events::Binding &binding)
{
    const events::Schedule s = binding.Schedule();
    udtSchedule &record = schedule();
    record.interval = s.interval();
    record.StartTime = s.StartTime();
    record.EndTime = s.EndTime();
    record.Days = s.Days();
    record.At = s.At();
    record.Type = s.Type();
}

} // namespace agents
