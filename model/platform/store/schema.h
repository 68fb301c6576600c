#pragma once

#include "platform/store/location.h"

#include <QStringList>

namespace store {

/// The version a store file carries in `meta`; a file of another version is
/// refused rather than read wrongly.
inline constexpr int kSchemaVersion = 1;

/// Statements that make an empty store of the current version.
QStringList schemaStatements(Location::Engine engine = Location::Engine::SQLite);

} // namespace store
