#pragma once

#include <QString>

#include <functional>

namespace store {

class Database;

/// Makes a new store at `location` (a file name or a server location) and
/// fills it with `fill`, all or nothing: a file is made beside the target
/// and renamed at the end, a server database gets its tables and contents
/// in one transaction. Raises a com::ComError; on any error no store is left
/// behind.
void buildStore(const QString &location, const std::function<void(Database &)> &fill);

} // namespace store
