#pragma once

#include "platform/com/comerror.h"
#include "platform/store/ids.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <memory>
#include <type_traits>
#include <utility>

namespace store {

/// One store file: the SQLite database behind the MAPI, event and routing
/// objects. Every failure comes out as a com::ComError; nothing here shows
/// anything to the user.
class Database {
public:
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /// Opens an existing store. Raises for a missing file, a file that is not
    /// a database, a store of another version, or a damaged or truncated one.
    static std::unique_ptr<Database> open(const QString &path);

    /// Makes a new, empty store at `path`; raises if a file is already there.
    static std::unique_ptr<Database> create(const QString &path);

    const QString &path() const { return m_path; }

    /// A prepared statement on this store; raises if it can't be prepared.
    QSqlQuery prepare(const QString &sql) const;

    /// Runs a prepared statement with positional values; raises on failure.
    void exec(QSqlQuery &query) const;

    /// Prepares, binds `values` in order and runs in one go.
    QSqlQuery run(const QString &sql, const QVariantList &values = {}) const;

    /// The first column of the first row of `sql`, or an invalid QVariant.
    QVariant scalar(const QString &sql, const QVariantList &values = {}) const;

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

private:
    class Transaction {
    public:
        explicit Transaction(Database &db);
        ~Transaction();
        void commit();

    private:
        Database &m_db;
        bool m_outer = false;
        bool m_done = false;
    };

    explicit Database(QString path);
    void connect();
    void checkIntegrity();

    QString m_path;
    QString m_connection;
    int m_depth = 0;
};

} // namespace store
