#include "platform/store/fixturefile.h"

#include "platform/com/comerror.h"
#include "platform/store/database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");

/// A name beside `target` that no other build, in this process or another,
/// is using at the same time.
QString partialName(const QString &target)
{
    static std::atomic<int> counter{0};
    const QFileInfo info(target);
    return info.dir().filePath(QStringLiteral(".%1.%2-%3.partial")
                                   .arg(info.fileName())
                                   .arg(QCoreApplication::applicationPid())
                                   .arg(counter.fetch_add(1)));
}

void removeStoreFiles(const QString &path)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
        QFile::remove(path + suffix);
}

} // namespace

void buildStoreFile(const QString &dbPath, const std::function<void(Database &)> &fill)
{
    if (QFileInfo::exists(dbPath))
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1 already exists; a new store is never written over a file.").arg(dbPath));
    if (!QFileInfo(dbPath).dir().exists())
        throw com::ComError(com::err::PathNotFound, kSource,
                            QStringLiteral("The folder of %1 does not exist.").arg(dbPath));
    const QString partial = partialName(dbPath);
    try {
        {
            const std::unique_ptr<Database> db = Database::create(partial);
            db->transaction([&] { fill(*db); });
            // Everything into the main file, so that the rename carries it all.
            db->run(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        }
        // A rename never replaces a file, so one made meanwhile is kept.
        if (!QFile::rename(partial, dbPath))
            throw com::ComError(com::err::FileAccess, kSource,
                                QStringLiteral("%1 could not be written (it may have been made meanwhile).").arg(dbPath));
    } catch (...) {
        removeStoreFiles(partial);
        throw;
    }
    removeStoreFiles(partial);
}

} // namespace store
