#pragma once

#include <QString>

namespace os {

/// The folder of the program's shared files (demo fixture, help pages):
/// `share/sorrelin` beside the program's `bin` folder when it is installed,
/// else the source tree's `share` folder that the build was made from.
QString shareDir();

} // namespace os
