#pragma once

#include <QString>

namespace os {

/// What the version query reports: the platform family (2 is the NT family,
/// which no system here belongs to) and the version numbers.
struct OsVersionInfo {
    int dwOSVersionInfoSize = 148;
    int dwMajorVersion = 0;
    int dwMinorVersion = 0;
    int dwPlatformId = 0;
};

/// Fills `info`; false when the record's size field isn't 148.
bool GetVersionEx(OsVersionInfo &info);

/// The temporary folder, with its separator at the end.
QString GetTempPath();

/// Starts a command line (split by splitCommandLine) and returns when the
/// process has ended, without a time limit; gives its exit code, or -1 when
/// it crashed. The process has our environment, working folder, output and
/// error channels, and an input that is at its end. Raises a ComError
/// (53, file not found) when the program can't be started.
int ExecCmd(const QString &commandLine);

} // namespace os
