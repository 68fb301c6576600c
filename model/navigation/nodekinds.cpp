#include "navigation/nodekinds.h"

namespace navigation {

QString rootText(const QString &currentUser)
{
    return QStringLiteral("Current User: ") + currentUser;
}

bool isUnderFavorites(const QString &fullPath, const QString &currentUser)
{
    return fullPath.contains(rootText(currentUser) + QStringLiteral("\\Public Folders\\Favorites"));
}

QString stripCurrentUser(const QString &fullPath, const QString &currentUser)
{
    // The root's text is counted, not compared.
    if (fullPath.isEmpty())
        return QString();
    const qsizetype keep = fullPath.size() - rootText(currentUser).size();
    return keep > 0 ? fullPath.right(keep) : QString();
}

} // namespace navigation
