#pragma once

#include <QString>

namespace app {

inline constexpr int kVersionMajor = 5;
inline constexpr int kVersionMinor = 5;
inline constexpr int kVersionRevision = 1139;

/// "Version 5.5.1139", as the splash window and the About box show it.
QString versionText();

} // namespace app
