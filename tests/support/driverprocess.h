#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

namespace testsupport {

/// sorrelin-driver in a process of its own, as a script would run it: one
/// command a line, one JSON answer a line.
class DriverProcess {
public:
    /// Starts the driver in a home of the caller's; `asUser` runs it under
    /// that numeric user id (for tests run by root that need permissions to bite).
    explicit DriverProcess(const QString &home, int asUser = -1);
    /// Starts `command` (a driver and its arguments), its errors shown as ours.
    explicit DriverProcess(const QStringList &command,
                           QProcess::ProcessChannelMode channels = QProcess::ForwardedErrorChannel);
    ~DriverProcess();

    /// Whether the driver started.
    bool started() const { return m_process.state() == QProcess::Running; }
    /// Sends one command and waits for its answer.
    QJsonObject send(const QString &line, int timeoutMs = 60000);
    /// Whether the last command had an answer.
    bool answered() const { return m_answered; }
    /// Sends one command; whether the driver answered that it went well.
    bool ok(const QString &line) { return send(line).value(QLatin1String("ok")).toBool(); }
    /// Sends commands without waiting for their answers.
    void post(const QStringList &lines);
    /// Ends the input and waits for the driver's end.
    bool finish(int timeoutMs = 60000);
    /// Ends the input: whether the driver then ended by itself with the code 0.
    bool finishWithZero()
    {
        return finish() && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }
    /// Quits the program and waits for the driver's end.
    bool quit();
    /// Kills the driver at once, as a crash or a power switch would.
    void kill();

    QProcess &process() { return m_process; }

private:
    QProcess m_process;
    bool m_answered = true;
};

/// The command line that runs `program` as `asUser` (nothing changes for -1).
QStringList asUserCommand(const QString &program, int asUser);

/// A program's run to its end: its exit code (-1 for a crash), output and errors.
struct ToolRun {
    int code = -1;
    QByteArray out;
    QByteArray err;
};
/// Runs `command` (a program and its arguments) with `input` on its standard
/// input; `inChild` runs in the child before the program starts.
ToolRun runProgram(const QStringList &command, const QByteArray &input = {},
                   const std::function<void()> &inChild = {});
/// Runs sorrelin-store with `arguments`.
ToolRun runStoreTool(const QStringList &arguments, int asUser = -1);

} // namespace testsupport
