#include "tests/support/testenv.h"

#include <QDir>
#include <QStandardPaths>

namespace testsupport {

TestHome::TestHome()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString root = m_dir.path();
    for (const char *sub : {"config", "state", "data", "cache", "tmp", "home"})
        QDir(root).mkpath(QString::fromLatin1(sub));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(root + QStringLiteral("/config")));
    qputenv("XDG_STATE_HOME", QFile::encodeName(root + QStringLiteral("/state")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(root + QStringLiteral("/data")));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(root + QStringLiteral("/cache")));
    qputenv("TMPDIR", QFile::encodeName(root + QStringLiteral("/tmp")));
    qputenv("HOME", QFile::encodeName(root + QStringLiteral("/home")));
}

TestHome::~TestHome() = default;

QString sourceDir()
{
    const QByteArray env = qgetenv("SORRELIN_SOURCE_DIR");
    return env.isEmpty() ? QStringLiteral(SORRELIN_SHARE_DIR "/..") : QString::fromLocal8Bit(env);
}

QString fixture(const QString &name)
{
    return sourceDir() + QStringLiteral("/tests/fixtures/") + name;
}

} // namespace testsupport
