#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <optional>

/// sorrelin-driver as a child process: one command a line in, one JSON
/// answer a line out.
class DriverProcess {
public:
    /// Starts the driver; false when it can't be run.
    bool start(const QString &program)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(program, {});
        return m_process.waitForStarted();
    }

    /// The answer to one command, or nothing when none came within a minute.
    std::optional<QJsonObject> send(const QString &command)
    {
        m_process.write(command.toUtf8() + '\n');
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(60000))
                return std::nullopt;
        return QJsonDocument::fromJson(m_process.readLine()).object();
    }

    /// Ends the input and waits for the driver to end: true when it ended
    /// by itself with the code 0.
    bool finish()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(30000)) {
            m_process.kill();
            m_process.waitForFinished();
            return false;
        }
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

private:
    QProcess m_process;
};
