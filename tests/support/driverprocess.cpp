#include "driverprocess.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace testsupport {

QStringList asUserCommand(const QString &program, int asUser)
{
    if (asUser < 0)
        return {program};
    return {u"setpriv"_s, u"--reuid=%1"_s.arg(asUser), u"--regid=%1"_s.arg(asUser), u"--clear-groups"_s,
            program};
}

DriverProcess::DriverProcess(const QString &home, int asUser)
    : DriverProcess(asUserCommand(QStringLiteral(SORRELIN_DRIVER), asUser) + QStringList{u"--keep"_s, home},
                    QProcess::SeparateChannels)
{
}

DriverProcess::DriverProcess(const QStringList &command, QProcess::ProcessChannelMode channels)
{
    m_process.setProcessChannelMode(channels);
    m_process.start(command.first(), command.mid(1));
    m_process.waitForStarted();
}

DriverProcess::~DriverProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        kill();
}

QJsonObject DriverProcess::send(const QString &line, int timeoutMs)
{
    m_process.write(line.toUtf8() + '\n');
    m_answered = false;
    while (!m_process.canReadLine())
        if (!m_process.waitForReadyRead(timeoutMs))
            return QJsonObject{{u"ok"_s, false}, {u"error"_s, u"no answer to: "_s + line}};
    m_answered = true;
    return QJsonDocument::fromJson(m_process.readLine()).object();
}

void DriverProcess::post(const QStringList &lines)
{
    for (const QString &line : lines)
        m_process.write(line.toUtf8() + '\n');
    // QProcess keeps what is written until its event loop or a wait runs.
    m_process.waitForBytesWritten(10000);
}

bool DriverProcess::finish(int timeoutMs)
{
    m_process.closeWriteChannel();
    return m_process.waitForFinished(timeoutMs);
}

bool DriverProcess::quit()
{
    send(u"quit"_s);
    return finish();
}

void DriverProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(10000);
}

ToolRun runProgram(const QStringList &command, const QByteArray &input, const std::function<void()> &inChild)
{
    QProcess p;
    if (inChild)
        p.setChildProcessModifier(inChild);
    p.start(command.first(), command.mid(1));
    p.write(input);
    p.closeWriteChannel();
    p.waitForFinished(-1);
    return ToolRun{p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
                   p.readAllStandardError()};
}

ToolRun runStoreTool(const QStringList &arguments, int asUser)
{
    return runProgram(asUserCommand(QStringLiteral(SORRELIN_STORE_TOOL), asUser) + arguments);
}

} // namespace testsupport
