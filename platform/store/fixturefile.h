#pragma once

#include <QString>

#include <functional>

namespace store {

class Database;

/// Makes a new store at `dbPath` and fills it with `fill`, all or nothing:
/// the store is built in a file of its own beside the target, in one
/// transaction, and renamed to `dbPath` only when `fill` has returned. Raises
/// if `dbPath` already exists, and passes on whatever `fill` raises; either
/// way no file is left behind.
void buildStoreFile(const QString &dbPath, const std::function<void(Database &)> &fill);

} // namespace store
