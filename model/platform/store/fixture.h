#pragma once

#include <QIODevice>
#include <QJsonObject>
#include <QString>

namespace store {

class Database;

/// Makes a new store at `dbPath` from the fixture file at `jsonPath`. Raises a
/// com::ComError naming the line or member that is wrong; on any error no
/// store file is left behind.
void loadFixture(const QString &jsonPath, const QString &dbPath);

/// The same from a parsed fixture.
void loadFixture(const QJsonObject &fixture, const QString &dbPath);

/// Writes everything in the store to `out`, in the fixture's shape, so that
/// loading a dump gives the same store. A folder's subfolders come last of
/// its members, so that a load can take the document as it comes. Any depth
/// of folders is written; the memory taken doesn't grow with the store's
/// messages. Raises a ComError when the store or `out` fails.
void dumpStore(const Database &db, QIODevice &out);

/// Makes a new store at `to` (a file or a server location) with everything
/// in `from`, through a dump in a temporary file, so that neither side holds
/// all of it in memory. On any error no store is left behind.
void copyStore(const Database &from, const QString &to);

/// The same as one object, for small stores.
QJsonObject dumpStore(const Database &db);

} // namespace store
