#include "platform/com/escapes.h"

namespace com {

QString escapeLine(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\':
            out += QStringLiteral("\\\\");
            break;
        case '\r':
            out += QStringLiteral("\\r");
            break;
        case '\n':
            out += QStringLiteral("\\n");
            break;
        case '\t':
            out += QStringLiteral("\\t");
            break;
        case 0:
            out += QStringLiteral("\\0");
            break;
        default:
            out += c;
        }
    }
    return out;
}

QString unescapeLine(const QString &line)
{
    QString out;
    out.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c != QLatin1Char('\\') || i + 1 == line.size()) {
            out += c;
            continue;
        }
        switch (line.at(++i).unicode()) {
        case 'r':
            out += QLatin1Char('\r');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case '0':
            out += QChar(u'\0');
            break;
        default:
            out += line.at(i);
        }
    }
    return out;
}

} // namespace com
