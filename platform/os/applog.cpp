#include "platform/os/applog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#ifdef Q_OS_UNIX
#include <syslog.h>
#endif

namespace os {

namespace {

QString escape(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('\\'))
            out += QStringLiteral("\\\\");
        else if (c == QLatin1Char('\r'))
            out += QStringLiteral("\\r");
        else if (c == QLatin1Char('\n'))
            out += QStringLiteral("\\n");
        else if (c == QLatin1Char('\t'))
            out += QStringLiteral("\\t");
        else
            out += c;
    }
    return out;
}

QString unescape(const QString &text)
{
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\\') || i + 1 == text.size()) {
            out += c;
            continue;
        }
        const QChar n = text.at(++i);
        out += n == QLatin1Char('r') ? QChar(u'\r') : n == QLatin1Char('n') ? QChar(u'\n') : n == QLatin1Char('t') ? QChar(u'\t') : n;
    }
    return out;
}

} // namespace

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
    return r.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QLatin1Char('\t') + QString::number(r.type) +
           QLatin1Char('\t') + escape(r.source) + QLatin1Char('\t') + escape(r.text);
}

bool parseLogLine(const QString &line, LogRecord &r)
{
    const QStringList parts = line.split(QLatin1Char('\t'));
    if (parts.size() != 4)
        return false;
    bool ok = false;
    r.time = QDateTime::fromString(parts.at(0), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    r.type = parts.at(1).toInt(&ok);
    r.source = unescape(parts.at(2));
    r.text = unescape(parts.at(3));
    return ok && r.time.isValid();
}

bool ApplicationLog::LogEvent(const QString &text, int type, const QString &source)
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QFile file(m_path);
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return false;
    const QByteArray line = formatLogLine(LogRecord{QDateTime::currentDateTime(), type, source, text}).toUtf8() + '\n';
    const bool written = file.write(line) == line.size() && file.flush();
#ifdef Q_OS_UNIX
    if (QFileInfo::exists(QStringLiteral("/dev/log"))) {
        const int priority = type == kLogError ? LOG_ERR : type == 2 ? LOG_WARNING : LOG_INFO;
        syslog(LOG_USER | priority, "%s: %s", source.toLocal8Bit().constData(),
               escape(text).toLocal8Bit().constData());
    }
#endif
    return written;
}

QVector<LogRecord> ApplicationLog::read() const
{
    QVector<LogRecord> records;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return records;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).chopped(1);
        LogRecord r;
        if (parseLogLine(line, r))
            records.append(r);
    }
    return records;
}

} // namespace os
