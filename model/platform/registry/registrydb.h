#pragma once

#include <QSqlDatabase>
#include <QString>

namespace registry::db {

/// Opens the registry file under a connection of its own, making its tables
/// when the file is new and converting those of an older layout:
///   keys(id, root, parent, path, fold): one row a key; `parent` is 0 for a
///       key right under its root; `path` is the full path as first written
///       ("Software\Kelverd"), `fold` the same case-folded, unique per root.
///   "values"(key, name, fold, type, data): one row a value of a key; the
///       default value has the empty name.
/// WAL mode and a busy timeout let two programs read and write it at once.
/// The connection is closed (invalid) when the file can't be opened.
QSqlDatabase open(const QString &path, const QString &connection);

/// Why a registry file would not open.
enum class Trouble { None, Damaged, Locked, Unreadable };

/// Looks at a registry file that `open` refused, through a connection of
/// its own that is closed again (call it only while no other connection of
/// this process has the file open).
Trouble diagnose(const QString &path);

/// Key and value names compare as the classic registry compares them:
/// without regard to case, in any script.
QString fold(const QString &name);

/// A key path with single "\" separators and none at either end.
QString normalise(const QString &path);

/// What findKey and createKey give besides a key's id (0 being the root).
inline constexpr qint64 kMissing = -1;
inline constexpr qint64 kFailed = -2;

/// The id of a key (0 for the root itself, `path` being empty), kMissing
/// when there is no such key.
qint64 findKey(const QSqlDatabase &db, qint64 root, const QString &path);

/// The id of a key, made with every missing parent. Runs inside the
/// caller's write transaction.
qint64 createKey(const QSqlDatabase &db, qint64 root, const QString &path);

/// One write, all or nothing. BEGIN IMMEDIATE takes the write lock at once
/// (waiting out another writer for the busy timeout), so that a transaction
/// never fails half-way on a lock; one that isn't committed is rolled back.
class WriteTransaction {
public:
    explicit WriteTransaction(QSqlDatabase db);
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction &) = delete;
    WriteTransaction &operator=(const WriteTransaction &) = delete;

    bool isActive() const { return m_active; }
    bool commit();

private:
    QSqlDatabase m_db;
    bool m_active = false;
};

} // namespace registry::db
