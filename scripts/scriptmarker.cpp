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

} // namespace scripts
