#include "platform/store/buildstore.h"

#include "platform/store/database.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <atomic>

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");

/// The page cache of a store being made, in KiB.
constexpr int kCacheKiB = 256 * 1024;

/// Rows written with their ids given leave a server's identity counters
/// behind; the next row made there must come after them.
void catchUpIdentities(Database &db)
{
    for (const char *table : {"hosts", "handlers", "stores", "folders", "messages", "bindings"})
        db.run(QStringLiteral(
                   "SELECT setval(pg_get_serial_sequence('%1', 'id'), COALESCE(max(id), 0) + 1, false)"
                   " FROM %1")
                   .arg(QLatin1String(table)));
}

void removeFile(const QString &path)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::remove(path + suffix);
}

} // namespace

void buildStore(const QString &location, const std::function<void(Database &)> &fill)
{
    if (Location::parse(location).onServer()) {
        Database::create(location, [&](Database &db) {
            fill(db);
            catchUpIdentities(db);
            // The planner's figures of the tables, which a server otherwise
            // gathers some time later: until then it may read a large table
            // whole for a few of its rows.
            db.run(QStringLiteral("ANALYZE"));
        });
        return;
    }
    if (QFileInfo::exists(location))
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1 already exists.").arg(location));
    static std::atomic<int> builds{0};
    const QString partial = QStringLiteral("%1.%2-%3.partial")
                                .arg(location)
                                .arg(QCoreApplication::applicationPid())
                                .arg(builds.fetch_add(1));
    try {
        {
            std::unique_ptr<Database> db = Database::create(partial, [&](Database &made) {
                // Pages that don't fit the cache are written to the log
                // before the end, and again each time they change: a new
                // store is written once when its cache holds it.
                made.run(QStringLiteral("PRAGMA cache_size = -%1").arg(kCacheKiB));
                fill(made);
            });
            db->run(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        }
        if (!QFile::rename(partial, location))
            throw com::ComError(com::err::FileAccess, kSource,
                                QStringLiteral("%1 could not be written.").arg(location));
    } catch (...) {
        removeFile(partial);
        throw;
    }
    removeFile(partial);
}

} // namespace store
