#include "platform/store/folderlevels.h"

#include "platform/store/database.h"

namespace store {

int folderLevels(const Database &db)
{
    // Only folders that a root reaches are counted; a parent link that
    // loops never reaches a root.
    return db
        .scalar(QStringLiteral("WITH RECURSIVE below(id, level) AS ("
                               " SELECT id, 0 FROM folders WHERE parent IS NULL"
                               " UNION ALL SELECT f.id, below.level + 1 FROM folders f"
                               " JOIN below ON f.parent = below.id)"
                               " SELECT COALESCE(MAX(level), 0) FROM below"))
        .toInt();
}

QString folderLevelsText()
{
    return QStringLiteral("Folders more than %1 levels deep are not shown.").arg(kMaxFolderLevels);
}

} // namespace store
