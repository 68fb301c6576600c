#include "platform/os/userfolders.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace os {

void redirectUserFolders(const QString &root)
{
    const std::pair<const char *, const char *> folders[] = {
        {"XDG_CONFIG_HOME", "config"},  {"XDG_STATE_HOME", "state"}, {"XDG_DATA_HOME", "data"},
        {"XDG_CACHE_HOME", "cache"},    {"TMPDIR", "tmp"},           {"HOME", "home"},
        {"XDG_RUNTIME_DIR", "runtime"},
    };
    for (const auto &[variable, sub] : folders) {
        const QString path = root + QLatin1Char('/') + QString::fromLatin1(sub);
        QDir().mkpath(path);
        // A runtime folder is its user's alone.
        if (qstrcmp(variable, "XDG_RUNTIME_DIR") == 0)
            QFile::setPermissions(path,
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv(variable, QFile::encodeName(path));
    }
}

QString documentsFolder()
{
    // Made where it is missing, as the desktop's own user folders are.
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir().mkpath(documents) ? documents : QDir::homePath();
}

} // namespace os
