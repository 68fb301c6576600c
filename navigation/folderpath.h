#pragma once

#include <QHash>
#include <QString>

namespace outlook {
class MAPIFolder;
}

namespace navigation {

/// A mail client folder's path from its store down ("\Mailbox - Alice
/// Admin\Inbox"): the folder's name, then each parent's in front, up to the
/// first parent that is no folder.
QString GetFolderPath(const outlook::MAPIFolder &folder);

/// Paths already found, by folder entry id: a walk over many folders asks
/// for each parent once.
using FolderPaths = QHash<QString, QString>;

/// GetFolderPath that takes the parents' paths from `known` and adds what
/// it finds there.
QString GetFolderPath(const outlook::MAPIFolder &folder, FolderPaths &known);

} // namespace navigation
