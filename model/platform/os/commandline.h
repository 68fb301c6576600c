#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace os {

/// Whether a word of a command line names a program that can be started.
using ProgramCheck = std::function<bool(const QString &word)>;

/// A program path, or a name found in the PATH, that is an executable file.
bool isStartable(const QString &word);

/// A command line as program and arguments: words split as a shell splits
/// them, double quotes keeping blanks inside a word. A program path with
/// blanks that isn't quoted is found as the system finds it: when the first
/// word names no program, ever longer runs of the line up to a blank are
/// tried, shortest first, as in "/opt/my tools/edit file.txt". Empty for an
/// empty line.
QStringList splitCommandLine(const QString &commandLine, const ProgramCheck &startable = isStartable);

} // namespace os
