#pragma once

#include <QJsonObject>
#include <QString>

namespace store {

class Database;

/// Makes a new store at `dbPath` from the fixture file at `jsonPath`. Raises a
/// com::ComError naming the line and column of a JSON syntax error, or the
/// path of the member that is wrong ("stores[0].folders[2].agents[1].mask:
/// expected a number from 0 to 15"). Refuses an existing `dbPath`; on any
/// error no store file is left behind.
void loadFixture(const QString &jsonPath, const QString &dbPath);

/// The same from a parsed fixture; errors name the member path alone.
void loadFixture(const QJsonObject &fixture, const QString &dbPath);

/// Reads a fixture file as one JSON object, raising for a file that can't be
/// read, a syntax error ("FILE:LINE:COLUMN: what") or a top that is no object.
QJsonObject readFixtureFile(const QString &jsonPath);

/// Fills an empty store (as Database::create makes it) from a fixture, in the
/// caller's transaction.
void fillFromFixture(Database &db, const QJsonObject &fixture);

/// Everything in the store, in the fixture's shape with every member given,
/// so that loading a dump and dumping again gives the same dump.
QJsonObject dumpStore(const Database &db);

} // namespace store
