#include "platform/os/sharedir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace os {

QString shareDir()
{
    // Installed: <prefix>/bin/sorrelin and <prefix>/share/sorrelin. Relative
    // to the program, so that a prefix can be moved or unpacked anywhere.
    const QString installed =
        QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral("../share/sorrelin"));
    if (QFileInfo::exists(installed + QStringLiteral("/demo.json")))
        return QDir::cleanPath(installed);
    return QStringLiteral(SORRELIN_SHARE_DIR);
}

} // namespace os
