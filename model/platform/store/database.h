#pragma once

#include "platform/com/comerror.h"
#include "platform/store/connection.h"
#include "platform/store/ids.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace store {

/// One store: the SQLite file or PostgreSQL database behind the MAPI, event
/// and routing objects. Every failure comes out as a com::ComError whose text
/// names the store and the cause; nothing here shows anything to the user.
/// All Database objects of a process that name one store share one
/// connection.
class Database {
public:
    using Access = Connection::Access;

    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /// Opens an existing store. Raises for a missing, empty or unreadable
    /// file, a file that is not a database or another program's, a store of
    /// another version, a damaged or truncated one, and one that another
    /// program has locked. The file is never changed by a refused open.
    /// A store this process may only read (a read-only file, one in a
    /// read-only folder, a login without the right to write the store's
    /// tables) opens for reading even when ReadWrite is asked: every write
    /// transaction on it is then refused in words.
    /// `path` may also be a server location (see Location): a server that
    /// can't be reached, a refused login and a database without a store are
    /// refused the same way.
    static std::unique_ptr<Database> open(const QString &path, Access access = Access::ReadWrite);

    /// Makes a new, empty store at `path` and runs `fill` on it in the same
    /// transaction; raises if a file is already there, or if the server
    /// database already holds a store. A server database must exist, made
    /// by its administrator, and be empty.
    static std::unique_ptr<Database> create(const QString &path,
                                            const std::function<void(Database &)> &fill = {});

    /// The store as it was named: a file name or a server location.
    const QString &path() const { return m_path; }
    bool onServer() const { return m_location.onServer(); }
    /// Whether this program may write the store, or only read it.
    Access access() const { return m_connection->access(); }
    bool readOnly() const { return access() == Access::ReadOnly; }
    /// The name of the Qt SQL connection behind the store.
    const QString &connectionName() const { return m_connection->name(); }
    /// The connection behind the store, shared with the process's other
    /// Database objects on it.
    const std::shared_ptr<Connection> &connection() const { return m_connection; }
    /// The channel on which every write transaction on a server store tells
    /// the other sessions that it has committed.
    static QString changeChannel();

    /// Runs an INSERT into a table with an `id` column and gives the new row's id.
    qint64 insert(const QString &sql, const QVariantList &values = {}) const;

    /// `sql`, an INSERT, written so that `insertedId` can read the new id
    /// after each run of it.
    QString returningId(const QString &sql) const;
    qint64 insertedId(QSqlQuery &query) const;

    /// How a statement's rows are read. `Nested` lets other statements run
    /// while they are read; `Streamed` reads them one by one from a server
    /// too, and no other statement may run until the last row is read.
    enum class Rows { Nested, Streamed };

    /// A prepared statement on this store; raises if it can't be prepared.
    QSqlQuery prepare(const QString &sql, Rows rows = Rows::Nested) const;

    /// Runs a prepared statement with positional values; raises on failure.
    void exec(QSqlQuery &query) const;

    /// Prepares, binds `values` in order and runs in one go.
    QSqlQuery run(const QString &sql, const QVariantList &values = {}) const;

    /// The first column of the first row of `sql`, or an invalid QVariant.
    QVariant scalar(const QString &sql, const QVariantList &values = {}) const;
    /// Whether the store has a table of this name.
    bool hasTable(const QString &name) const;

    /// Tells `observer` when a write begins and ends waiting for another
    /// program's lock on this store.
    void setBusyObserver(BusyObserver observer);

    /// Tells `observer` of each failure because the store is gone (its
    /// server lost); such failures raise com::err::StoreLost.
    void setLossObserver(LossObserver observer);
    /// Lets the next statement try once to reach a lost server again.
    void retryLostConnection();
    /// The number of the server session that statements are prepared in,
    /// after a try to reach a lost server again (raising when it can't); it
    /// changes when the server is reached again.
    int sessionNumber() const;

    /// Runs `body` in one write transaction: committed when it returns,
    /// rolled back when it raises. Nested calls join the outer transaction.
    template <class F> auto transaction(F &&body) -> decltype(body())
    {
        Transaction t(*this);
        if constexpr (std::is_void_v<decltype(body())>) {
            std::forward<F>(body)();
            t.commit();
        } else {
            auto result = std::forward<F>(body)();
            t.commit();
            return result;
        }
    }

    /// A value of the meta table ("user", "profile", ...); empty if none.
    QString meta(const QString &key) const;
    void setMeta(const QString &key, const QString &value);

    /// Sets the entry identifier of a freshly inserted folder or message.
    QString assignEntryId(IdKind kind, qint64 storeRow, qint64 row);

    /// The current local time, as the store keeps times.
    static QString now();

    /// A ComError for a failed SQL step, with the store's path in its text.
    com::ComError error(const QString &what, const QString &detail) const;

    /// One write transaction held across several steps: everything written
    /// while it lives is committed by `commit()` or rolled back when it goes
    /// without. Transactions begun meanwhile join it.
    class Transaction {
    public:
        /// A Read transaction only reads: one snapshot of the store for a
        /// long walk, without the write lock.
        enum class Kind { Write, Read };
        explicit Transaction(Database &db, Kind kind = Kind::Write);
        ~Transaction();
        Transaction(const Transaction &) = delete;
        Transaction &operator=(const Transaction &) = delete;
        void commit();

    private:
        Database &m_db;
        Kind m_kind;
        bool m_outer = false;
        bool m_done = false;
    };

private:
    Database(QString path, std::shared_ptr<Connection> connection);
    void checkStore();
    void checkServerStore();
    void runPragmas();
    /// The error of a failed statement on a server store; a lost session
    /// is marked and told.
    com::ComError serverFailure(const QSqlError &e) const;
    com::ComError told(const com::ComError &failure) const;
    /// Connects to a lost server again where it may; raises when it can't.
    void ensureConnected() const;

    QString m_path;
    Location m_location;
    std::shared_ptr<Connection> m_connection;
};

} // namespace store
