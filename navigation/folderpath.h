#pragma once

#include <QString>

namespace outlook {
class MAPIFolder;
}

namespace navigation {

/// A mail client folder's path from its store down ("\Mailbox - Alice
/// Admin\Inbox"): the folder's name, then each parent's in front, up to the
/// first parent that is no folder.
QString GetFolderPath(const outlook::MAPIFolder &folder);

} // namespace navigation
