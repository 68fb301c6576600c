#pragma once

#include "platform/com/comerror.h"
#include "platform/store/location.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace store {

/// Says when a write starts to wait for another program's lock on the store
/// (true) and when the wait is over (false).
using BusyObserver = std::function<void(bool waiting)>;

/// Told of each failure because the store the program has open is gone: its
/// server lost or its file removed or replaced.
using LossObserver = std::function<void(const com::ComError &error)>;

/// One SQLite open of a store file, shared by every Database object of this
/// process that names the same file. A process must never open the file a
/// second time: on POSIX systems closing any handle of a file drops every
/// lock the process holds on it, and a store whose locks are gone is
/// corrupted by the next program that checkpoints it.
class Connection {
public:
    enum class Access { ReadWrite, ReadOnly };

    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// The connection this process already has to `canonicalPath`, if any.
    static std::shared_ptr<Connection> find(const QString &canonicalPath);

    /// Opens the file through SQLite (an empty `canonicalPath` for a file
    /// that SQLite makes now) and records the connection as this
    /// process's one connection to it. Raises a ComError in words when SQLite
    /// can't open it.
    static std::shared_ptr<Connection> open(const QString &path, const QString &canonicalPath, Access access);

    /// Connects to the database of a server location as its user, again
    /// recorded as this process's one connection to it; for reading only
    /// when its login may not write the store's tables. Raises a ComError
    /// saying whether the server can't be reached, refused the login or
    /// has no such database.
    static std::shared_ptr<Connection> openServer(const Location &location, Access access);

    /// Makes the empty database `name` on the server of `server`, logged on
    /// as its login to its database, and gives the new database's location.
    static QString createDatabase(const Location &server, const QString &name);

    const QString &name() const { return m_name; }
    Location::Engine engine() const { return m_engine; }
    Access access() const { return m_access; }
    /// The access the connection was opened for, before the server said
    /// what its login may do.
    Access asked() const { return m_asked; }

    /// Nesting depth of the running write transaction (0: none).
    int depth = 0;

    BusyObserver busyObserver;
    /// Whether the observer has been told of a wait that isn't over yet.
    bool waiting = false;
    /// Ends a wait that the busy handler began.
    void endWait();

    LossObserver lossObserver;
    /// The server's session is gone; the next statement outside a
    /// transaction connects again if `retry` allows.
    bool lost = false;
    bool retry = true;
    /// Counts the sessions on the server: statements prepared in one are
    /// gone in the next.
    int sessions = 0;
    /// Connects to the server again, as the first open did; false when the
    /// server can't be reached.
    bool reconnect();
    /// Raises, in words, when the file that the store was opened from is
    /// no longer at `path`: removed, or replaced by another file.
    void checkFileStillThere(const QString &path) const;

private:
    Connection(QString name, QString canonicalPath, Access access);

    QString m_name;
    QString m_canonicalPath;
    QStringList m_retired; ///< connections of server sessions that were lost
    Access m_access;
    Access m_asked;
    Location::Engine m_engine = Location::Engine::SQLite;
    /// The file's device and node when it was opened (POSIX systems).
    std::pair<quint64, quint64> m_fileId{};
};

/// How long a write waits for another program's lock before it gives up:
/// ten seconds unless set otherwise (tests that meet a lock shorten it).
std::chrono::milliseconds busyWait();
void setBusyWait(std::chrono::milliseconds wait);

} // namespace store
