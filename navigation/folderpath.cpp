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

QString GetFolderPath(const outlook::MAPIFolder &folder, FolderPaths &known)
{
    const auto found = known.constFind(folder.EntryID());
    if (found != known.constEnd())
        return *found;
    QString path = QLatin1Char('\\') + folder.Name();
    try {
        path.prepend(GetFolderPath(folder.Parent(), known));
    } catch (const com::ComError &) {
        // The top folder's parent is the namespace: the path starts here.
    }
    known.insert(folder.EntryID(), path);
    return path;
}

} // namespace navigation
