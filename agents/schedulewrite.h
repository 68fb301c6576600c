#pragma once

namespace events {
class Binding;
}

namespace agents {

/// Writes the program's schedule record to a binding's schedule: `Clear`,
/// then At, Days, EndTime, StartTime, interval, and the type, a record
/// that never passed through the dialog (type 0) becoming hourly.
void writeSchedule(events::Binding &binding);

/// Reads a binding's schedule into the program's record.
void readSchedule(const events::Binding &binding);

} // namespace agents
