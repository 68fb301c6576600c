#include "tests/support/testenv.h"

#include "platform/os/userfolders.h"

#include <QDir>
#include <QStandardPaths>

namespace testsupport {

TestHome::TestHome()
{
    QStandardPaths::setTestModeEnabled(true);
    os::redirectUserFolders(m_dir.path());
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
