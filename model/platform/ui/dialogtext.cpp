#include "platform/ui/dialogtext.h"

namespace ui {

QStringList qtNameFilters(const QString &filter)
{
    QStringList filters;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns = parts.at(i + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString &pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == QLatin1String("*.*"))
                pattern = QStringLiteral("*");
        }
        patterns.removeAll(QString());
        if (patterns.isEmpty())
            patterns << QStringLiteral("*"); // kept, so that the indices stay those of the filter
        filters << parts.at(i) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return filters;
}

int filterIndexOf(const QStringList &filters, const QString &nameFilter)
{
    for (qsizetype i = 0; i < filters.size(); ++i) {
        const QString &f = filters.at(i);
        // Without the patterns that qtNameFilters added, as a dialog that
        // hides them gives its choice.
        if (f == nameFilter || f.left(f.lastIndexOf(QLatin1String(" ("))) == nameFilter)
            return static_cast<int>(i) + 1;
    }
    return 0;
}

QString displayText(const QString &text)
{
    QString shown = text;
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

} // namespace ui
