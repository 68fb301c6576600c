#include "app/version.h"

namespace app {

QString versionText()
{
    return QStringLiteral("Version %1.%2.%3").arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision);
}

} // namespace app
