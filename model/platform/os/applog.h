#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

namespace os {

/// Event types of the application log.
inline constexpr int kLogError = 1;
inline constexpr int kLogWarning = 2;
inline constexpr int kLogInformation = 4;

struct LogRecord {
    QDateTime time;
    int type = 0;
    QString source;
    QString text;
};

/// The application log: one line for each event, in a file of the user's
/// state folder, written and flushed at once; also to the system log where
/// the system has one.
class ApplicationLog {
public:
    /// The log of the current user ($XDG_STATE_HOME/sorrelin/application.log).
    static QString defaultPath();

    explicit ApplicationLog(QString path = defaultPath());

    /// Adds one event. Line breaks in `text` are kept (escaped in the file).
    bool LogEvent(const QString &text, int type, const QString &source = QStringLiteral("Sorrelin"));

    /// Every event in the file, oldest first; lines that aren't events (a
    /// line cut short by a crash, say) are passed over.
    QVector<LogRecord> read() const;

    const QString &path() const { return m_path; }

private:
    QString m_path;
};

/// One line of the file and back: time ("yyyy-MM-dd HH:mm:ss", local),
/// type, source and text, separated by tabs; line breaks, tabs, NULs and
/// backslashes of source and text are escaped (com::escapeLine).
QString formatLogLine(const LogRecord &record);
bool parseLogLine(const QString &line, LogRecord &record);

} // namespace os
