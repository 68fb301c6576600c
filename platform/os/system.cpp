#include "platform/os/system.h"

#include "platform/com/comerror.h"
#include "platform/os/commandline.h"

#include <QDir>
#include <QOperatingSystemVersion>
#include <QProcess>

namespace os {

bool GetVersionEx(OsVersionInfo &info)
{
    if (info.dwOSVersionInfoSize != 148)
        return false;
    const QOperatingSystemVersion v = QOperatingSystemVersion::current();
    info.dwMajorVersion = v.majorVersion();
    info.dwMinorVersion = v.minorVersion();
    info.dwPlatformId = v.type() == QOperatingSystemVersion::Windows ? 2 : 0;
    return true;
}

QString GetTempPath()
{
    return QDir::toNativeSeparators(QDir::tempPath() + QLatin1Char('/'));
}

int ExecCmd(const QString &commandLine)
{
    QStringList args = splitCommandLine(commandLine);
    const QString program = args.isEmpty() ? QString() : args.takeFirst();
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    if (!program.isEmpty())
        process.start(program, args);
    if (program.isEmpty() || !process.waitForStarted(-1))
        throw com::ComError(com::err::FileNotFound, QStringLiteral("Sorrelin"),
                            QStringLiteral("File not found: %1").arg(program));
    // An editor or viewer reads no input from us.
    process.closeWriteChannel();
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace os
