#include "scripts/filenames.h"

namespace scripts {

QString &ReplaceCharsWithBlank(QString &text, const QString &chars)
{
    for (QChar &c : text)
        if (chars.contains(c))
            c = QLatin1Char(' ');
    return text;
}

QString &CleanFileName(QString &name)
{
    for (const QChar c : QStringLiteral(":/\\|><"))
        if (name.contains(c))
            ReplaceCharsWithBlank(name, QString(c));
    return name;
}

} // namespace scripts
