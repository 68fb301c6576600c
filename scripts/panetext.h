#pragma once

#include <QString>
#include <QStringList>

namespace scripts {

/// The line ends of a script as it was loaded: each line's own, and the one
/// most lines had, for the lines the user adds.
struct LineEnds {
    QStringList ends;
    QString usual = QStringLiteral("\r\n");

    static LineEnds of(const QString &text);

    /// A line end as a small number that a line of the pane can carry
    /// (1 CR LF, 2 LF, 3 CR), and back; any other number is the usual end.
    static int code(const QString &end);
    QString end(int code) const;
};

/// The script's text as the pane shows it: every line end a plain line
/// break, and the control characters that an edit control would swallow or
/// turn into something else shown as their visible symbols (U+2400...).
QString toDisplay(const QString &text);

/// Shown text back as the script's: the symbols go back to the characters
/// they stand for, and line breaks become `lineEnd`.
QString fromDisplay(const QString &shown, const QString &lineEnd);

} // namespace scripts
