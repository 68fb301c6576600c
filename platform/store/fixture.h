#pragma once

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

/// Everything in the store, in the fixture's shape, so that loading a dump
/// gives the same store.
QJsonObject dumpStore(const Database &db);

} // namespace store
