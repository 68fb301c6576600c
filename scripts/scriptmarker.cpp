#include "scripts/scriptmarker.h"

#include <QStringDecoder>

namespace scripts {

bool hasScriptMarker(const QString &text)
{
    return text.toUpper().contains(QString::fromLatin1(kScriptMarker).toUpper());
}

QString scriptToPane(const QByteArray &script)
{
    return QString::fromLatin1(script);
}

QByteArray paneToScript(const QString &text)
{
    return text.toLatin1();
}

QStringList unkeptCharacters(const QString &text)
{
    QStringList unkept;
    for (const char32_t c : text.toUcs4()) {
        const QString character = QString::fromUcs4(&c, 1);
        if (c > 0xFF && !unkept.contains(character))
            unkept << character;
    }
    return unkept;
}

QString withoutCharacters(const QString &text, const QStringList &characters)
{
    if (characters.isEmpty())
        return text;
    QString kept;
    for (const char32_t c : text.toUcs4())
        if (!characters.contains(QString::fromUcs4(&c, 1)))
            kept += QString::fromUcs4(&c, 1);
    return kept;
}

QString leftOutText(const QStringList &characters)
{
    return QStringLiteral("The script can't hold %1; %2 left out.")
        .arg(characters.join(QStringLiteral(", ")),
             characters.size() == 1 ? QStringLiteral("it was") : QStringLiteral("they were"));
}

QString fileToPane(const QByteArray &file)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(file);
    if (utf8.hasError() || text.size() == file.size())
        return scriptToPane(file);
    return text;
}

} // namespace scripts
