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

/// The temporary folder, with its separator at the end: a folder of the
/// user's own in the system's one, that only the user may read or write.
/// Raises when a folder of that name is there and isn't the user's alone.
QString GetTempPath();

/// Writes `bytes` as the whole of a temporary file that only the user may
/// read and write; gives the file's size, or -1 when it can't be written.
qint64 writeTempFile(const QString &path, const QByteArray &bytes);

/// Starts a command line (split by splitCommandLine) and returns when the
/// process has ended, without a time limit; gives its exit code, or -1 when
/// it crashed. Meanwhile the windows repaint, and what the user does to
/// them is dropped. The process has our environment, working folder, output and
/// error channels, and an input that is at its end. Raises a ComError
/// (53, file not found) when the program can't be started.
int ExecCmd(const QString &commandLine);

} // namespace os
