#pragma once

#include <QString>

namespace os {

/// Points every folder the program reads or writes of the user's (the XDG
/// folders, HOME, the runtime and the temporary folder) into `root`, making them. For
/// tests and the driver, before anything has looked at them.
void redirectUserFolders(const QString &root);

/// The user's documents folder (XDG_DOCUMENTS_DIR, usually ~/Documents),
/// made if missing; the home folder where it can't be made. The program's
/// file dialogs start there until the user picks another folder.
QString documentsFolder();

} // namespace os
