#pragma once

#include <QString>

namespace app {

struct Program;

/// Writes one event to the application log. The first time in a run that
/// the log can't be written, the user is told once, with the log's path,
/// and the program goes on.
void logEvent(Program &program, const QString &text, int type);

} // namespace app
