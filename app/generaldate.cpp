#include "app/generaldate.h"

#include <QLocale>
#include <QRegularExpression>

QString generalDate(const QDateTime &at)
{
    const QLocale locale;
    // The long time as a clock shows it: without the time zone's name.
    static const QRegularExpression zone(QStringLiteral("\\s*\\bt+\\b"));
    const QString time = locale.timeFormat(QLocale::LongFormat).remove(zone).trimmed();
    return locale.toString(at.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
           locale.toString(at.time(), time);
}
