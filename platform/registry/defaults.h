#pragma once

#include <QString>

#include <functional>

namespace registry {

class Registry;

/// Finds a program by name on the system; empty when there is none.
using ProgramLookup = std::function<QString(const QString &name)>;

/// Looks programs up in the PATH.
ProgramLookup defaultProgramLookup();

/// Fills a new registry with the open commands of the editor and viewer
/// classes and the system information program, from the desktop's own
/// programs: each command takes the file as "%1" and returns only when the
/// user has closed the program.
void fillDesktopDefaults(Registry &registry, const ProgramLookup &lookup);

} // namespace registry
