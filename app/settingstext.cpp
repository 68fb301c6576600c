#include "app/settingstext.h"

#include <QRegularExpression>

namespace app {

double leadingNumber(const QString &text)
{
    static const QRegularExpression number(
        QStringLiteral("^\\s*([-+]?(\\d+\\.?\\d*|\\.\\d+)([eE][-+]?\\d+)?)"));
    const QRegularExpressionMatch m = number.match(text);
    return m.hasMatch() ? m.captured(1).toDouble() : 0.0;
}

QString formatFontSize(double size)
{
    QString text = QString::number(size, 'f', 4);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

} // namespace app
