#pragma once

#include <QString>

namespace store {

/// Where a store lives: a file that SQLite opens, or a database on a
/// PostgreSQL server, written `postgresql://user@host:port/database`. A
/// server store never carries a password: libpq finds it in the user's
/// ~/.pgpass or the environment.
struct Location {
    enum class Engine { SQLite, PostgreSQL };

    Engine engine = Engine::SQLite;
    QString path; ///< the file, for SQLite
    QString host;
    int port = 5432;
    QString database;
    QString user;

    /// A location as a user or a profile writes it; anything that isn't a
    /// `postgresql://` (or `postgres://`) address is a file name.
    static Location parse(const QString &text);

    /// A server location from its parts.
    static Location server(const QString &host, int port, const QString &database, const QString &user);

    bool onServer() const { return engine == Engine::PostgreSQL; }

    /// The location as `parse` reads it, and as messages name the store.
    QString text() const;
};

} // namespace store
