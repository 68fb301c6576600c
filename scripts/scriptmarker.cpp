#include "scripts/scriptmarker.h"

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

} // namespace scripts
