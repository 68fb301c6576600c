#include "scripts/panetext.h"

#include <QHash>

namespace scripts {

namespace {

constexpr char16_t kPictures = 0x2400; // U+2400 SYMBOL FOR NULL ... U+241F
constexpr char16_t kDeletePicture = 0x2421;

/// A character that the pane shows as its symbol.
bool hidden(char16_t c)
{
    return (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c == 0x7F;
}

bool isBreak(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar::LineSeparator || c == QLatin1Char('\n');
}

} // namespace

LineEnds LineEnds::of(const QString &text)
{
    LineEnds result;
    QHash<QString, int> counts;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        QString end;
        if (c == QLatin1Char('\r'))
            end = (i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n')) ? QStringLiteral("\r\n")
                                                                               : QStringLiteral("\r");
        else if (c == QLatin1Char('\n'))
            end = QStringLiteral("\n");
        else
            continue;
        i += end.size() - 1;
        result.ends << end;
        ++counts[end];
    }
    int most = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        if (it.value() > most || (it.value() == most && it.key() == result.usual)) {
            most = it.value();
            result.usual = it.key();
        }
    return result;
}

QString toDisplay(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c == u'\r') {
            if (i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
                ++i;
            shown += QLatin1Char('\n');
        } else if (hidden(c)) {
            shown += QChar(c == 0x7F ? kDeletePicture : static_cast<char16_t>(kPictures + c));
        } else {
            shown += QChar(c);
        }
    }
    return shown;
}

QString fromDisplay(const QString &shown, const QString &lineEnd)
{
    QString text;
    text.reserve(shown.size());
    for (const QChar c : shown) {
        const char16_t u = c.unicode();
        if (isBreak(c))
            text += lineEnd;
        else if (u >= kPictures && u < kPictures + 0x20 && hidden(static_cast<char16_t>(u - kPictures)))
            text += QChar(static_cast<char16_t>(u - kPictures));
        else if (u == kDeletePicture)
            text += QChar(0x7F);
        else
            text += c;
    }
    return text;
}

int LineEnds::code(const QString &end)
{
    return end == QLatin1String("\r\n") ? 1
           : end == QLatin1String("\n") ? 2
           : end == QLatin1String("\r") ? 3
                                        : 0;
}

QString LineEnds::end(int code) const
{
    switch (code) {
    case 1:
        return QStringLiteral("\r\n");
    case 2:
        return QStringLiteral("\n");
    case 3:
        return QStringLiteral("\r");
    default:
        return usual;
    }
}

} // namespace scripts
