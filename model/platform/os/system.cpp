#include "platform/os/system.h"

#include "platform/com/comerror.h"
#include "platform/os/commandline.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QOperatingSystemVersion>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace os {

namespace {

quint64 currentUser()
{
#ifdef Q_OS_UNIX
    return ::getuid();
#else
    return 0;
#endif
}

/// A real folder (no link), the user's, that no one else may enter.
bool isUsersOwnFolder(const QString &folder)
{
#ifdef Q_OS_UNIX
    struct stat info {};
    return ::lstat(QFile::encodeName(folder).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == ::getuid() && (info.st_mode & 077) == 0;
#else
    return QFileInfo(folder).isDir();
#endif
}

/// While it lives, what the user does (clicks, keys, the close box) reaches
/// no window and is dropped, not kept for later; the windows still repaint.
class InputDropper : public QObject {
public:
    InputDropper() { QCoreApplication::instance()->installEventFilter(this); }
    ~InputDropper() override { QCoreApplication::instance()->removeEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::Drop:
            return true;
        case QEvent::Close:
            return event->spontaneous();
        default:
            return QObject::eventFilter(watched, event);
        }
    }
};

} // namespace

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
    // The session's runtime folder is the user's alone; without one, a
    // folder of the user's in the system's temporary folder.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString folder =
        !runtime.isEmpty() && isUsersOwnFolder(runtime)
            ? runtime + QStringLiteral("/sorrelin")
            : QDir::tempPath() + QStringLiteral("/sorrelin-") + QString::number(currentUser());
    const QFileDevice::Permissions own =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    QDir().mkdir(folder, own);
    if (!isUsersOwnFolder(folder))
        throw com::ComError(com::err::PathNotFound, QStringLiteral("Sorrelin"),
                            QStringLiteral("The temporary folder %1 belongs to another user or is open to "
                                           "others; remove it, and Sorrelin makes it again.")
                                .arg(QDir::toNativeSeparators(folder)));
    return QDir::toNativeSeparators(folder + QLatin1Char('/'));
}

qint64 writeTempFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    const QFileDevice::Permissions own = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate, own))
        return -1;
    file.setPermissions(own);
    file.write(bytes);
    file.close();
    return file.size();
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
    if (QCoreApplication::instance()) {
        const InputDropper dropper;
        QEventLoop loop;
        QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        if (process.state() != QProcess::NotRunning)
            loop.exec();
    } else {
        process.waitForFinished(-1);
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace os
