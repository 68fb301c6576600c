#include "platform/os/system.h"

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
    QStringList args = QProcess::splitCommand(commandLine);
    if (args.isEmpty())
        return -1;
    const QString program = args.takeFirst();
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, args);
    if (!process.waitForStarted(-1))
        return -1;
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace os
