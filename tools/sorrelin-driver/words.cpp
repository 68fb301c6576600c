#include "tools/sorrelin-driver/words.h"

namespace driver {

QStringList words(const QString &text, int count)
{
    QStringList out;
    QString rest = text.trimmed();
    while (out.size() < count - 1 && !rest.isEmpty()) {
        if (rest.startsWith(QLatin1Char('"'))) {
            const qsizetype close = rest.indexOf(QLatin1Char('"'), 1);
            if (close > 0) {
                out << rest.mid(1, close - 1);
                rest = rest.mid(close + 1).trimmed();
                continue;
            }
        }
        const qsizetype blank = rest.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            out << rest;
            rest.clear();
            break;
        }
        out << rest.left(blank);
        rest = rest.mid(blank + 1);
    }
    if (!rest.isEmpty() || out.size() == count - 1)
        out << rest;
    return out;
}

} // namespace driver
