#pragma once

#include <QString>

namespace com {

/// One line for a text that may hold line breaks: backslash, CR, LF, tab
/// and NUL written as \\ \r \n \t \0.
QString escapeLine(const QString &text);
/// The text back from such a line; an unknown escape stands for its letter.
QString unescapeLine(const QString &line);

} // namespace com
