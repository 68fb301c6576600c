#pragma once

#include <QStringList>

namespace driver {

/// Splits off the first `count` - 1 words of a command's arguments; the
/// rest of the line is the last. A word in double quotes may hold blanks.
QStringList words(const QString &text, int count);

} // namespace driver
