#include "navigation/folderpath.h"

#include "platform/outlook/application.h"

namespace navigation {

QString GetFolderPath(const outlook::MAPIFolder &folder)
{
    QString path = QLatin1Char('\\') + folder.Name();
    try {
        for (outlook::MAPIFolder parent = folder.Parent();; parent = parent.Parent())
            path.prepend(QLatin1Char('\\') + parent.Name());
    } catch (const com::ComError &) {
        // The top folder's parent is the namespace: the walk ends there.
    }
    return path;
}

} // namespace navigation
