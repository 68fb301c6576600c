#pragma once

#include "tools/sorrelin-store/commands.h"

/// The commands on the history of the agents' changes.
namespace storetool {

/// history [--keep DAYS] STORE [PATH]: lists the changes, newest first, or
/// forgets those older than DAYS days.
int history(const QStringList &a, Output io);
/// show STORE CHANGE: the script before the change, as it was, byte for byte.
int show(const QStringList &a, Output io);
/// restore STORE CHANGE: the agent as it was before the change, as a new change.
int restore(const QStringList &a, Output io);

} // namespace storetool
