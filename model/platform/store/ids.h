#pragma once

#include <QString>

namespace store {

/// What an entry identifier names. Folders and messages never share one.
enum class IdKind { Folder = 1, Message = 2 };

/// The store identifier of store row `storeRow`: 16 hexadecimal digits.
QString makeStoreId(qint64 storeRow);

/// The entry identifier of a folder or message row: 48 hexadecimal digits,
/// made from the store, the kind and the row, upper case.
QString makeEntryId(qint64 storeRow, IdKind kind, qint64 row);

} // namespace store
