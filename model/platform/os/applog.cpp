#include "platform/os/applog.h"

#include "platform/com/escapes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#ifdef Q_OS_UNIX
#include <syslog.h>
#endif

namespace os {

QString ApplicationLog::defaultPath()
{
    QString state = QString::fromLocal8Bit(qgetenv("XDG_STATE_HOME"));
    if (state.isEmpty())
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/sorrelin/application.log");
}

ApplicationLog::ApplicationLog(QString path) : m_path(std::move(path)) {}

QString formatLogLine(const LogRecord &r)
{
    return r.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QLatin1Char('\t') +
           QString::number(r.type) + QLatin1Char('\t') + com::escapeLine(r.source) + QLatin1Char('\t') +
           com::escapeLine(r.text);
}

bool parseLogLine(const QString &line, LogRecord &r)
{
    const QStringList parts = line.split(QLatin1Char('\t'));
    if (parts.size() != 4)
        return false;
    bool ok = false;
    r.time = QDateTime::fromString(parts.at(0), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    r.type = parts.at(1).toInt(&ok);
    r.source = com::unescapeLine(parts.at(2));
    r.text = com::unescapeLine(parts.at(3));
    return ok && r.time.isValid();
}

bool ApplicationLog::LogEvent(const QString &text, int type, const QString &source)
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QFile file(m_path);
    // Unbuffered, so that the line goes out in one write: two programs that
    // log at once append whole lines.
    if (!file.open(QIODevice::Append | QIODevice::Unbuffered))
        return false;
    const QByteArray line =
        formatLogLine(LogRecord{QDateTime::currentDateTime(), type, source, text}).toUtf8() + '\n';
    const bool written = file.write(line) == line.size();
#ifdef Q_OS_UNIX
    if (QFileInfo::exists(QStringLiteral("/dev/log"))) {
        const int priority = type == kLogError ? LOG_ERR : type == kLogWarning ? LOG_WARNING : LOG_INFO;
        syslog(LOG_USER | priority, "%s: %s", source.toLocal8Bit().constData(),
               com::escapeLine(text).toLocal8Bit().constData());
    }
#endif
    return written;
}

QVector<LogRecord> ApplicationLog::read() const
{
    QVector<LogRecord> records;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return records;
    while (!file.atEnd()) {
        QByteArray bytes = file.readLine();
        while (bytes.endsWith('\n') || bytes.endsWith('\r'))
            bytes.chop(1);
        const QString line = QString::fromUtf8(bytes);
        LogRecord r;
        if (parseLogLine(line, r))
            records.append(r);
    }
    return records;
}

} // namespace os
