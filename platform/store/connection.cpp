#include "platform/store/connection.h"

#include "platform/com/comerror.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QThread>
#include <QUrl>

#include <sqlite3.h>

#include <atomic>

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");
constexpr int kBusyStepMs = 25;

/// The stores this process has open, by canonical path. The table only
/// observes: a connection lives as long as a Database holds it.
QHash<QString, std::weak_ptr<Connection>> &openStores()
{
    static QHash<QString, std::weak_ptr<Connection>> table;
    return table;
}

QString nextConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("sorrelin-store-%1").arg(counter.fetch_add(1));
}

/// SQLite's busy handler: tells the observer once that a wait begins, then
/// sleeps in short steps until the lock goes or the time is up.
int onBusy(void *context, int count)
{
    auto *connection = static_cast<Connection *>(context);
    if (count == 0 && !connection->waiting) {
        connection->waiting = true;
        if (connection->busyObserver)
            connection->busyObserver(true);
    }
    if (count * kBusyStepMs >= kBusyWaitMs)
        return 0;
    QThread::msleep(kBusyStepMs);
    return 1;
}

} // namespace

Connection::Connection(QString name, QString canonicalPath, Access access)
    : m_name(std::move(name)), m_canonicalPath(std::move(canonicalPath)), m_access(access)
{
}

Connection::~Connection()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        if (db.isValid())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
    auto &table = openStores();
    const auto it = table.constFind(m_canonicalPath);
    if (it != table.cend() && it->expired())
        table.erase(it);
}

void Connection::endWait()
{
    if (!waiting)
        return;
    waiting = false;
    if (busyObserver)
        busyObserver(false);
}

std::shared_ptr<Connection> Connection::find(const QString &canonicalPath)
{
    const auto it = openStores().constFind(canonicalPath);
    return it == openStores().cend() ? nullptr : it->lock();
}

std::shared_ptr<Connection> Connection::open(const QString &path, const QString &canonicalPath, Access access)
{
    std::shared_ptr<Connection> c(new Connection(nextConnectionName(), canonicalPath, access));
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), c->m_name);
    QStringList options;
    const QFileInfo info(path);
    // A reader that may write opens as a writer would, so that closing it
    // takes away the journal files that SQLite puts beside the store.
    if (access == Access::ReadOnly && (!info.isWritable() || !QFileInfo(info.absolutePath()).isWritable())) {
        options << QStringLiteral("QSQLITE_OPEN_READONLY");
        // A store in a folder nobody may write has no journal beside it and
        // can't get one: no program can be writing it, and SQLite may read
        // it as it stands.
        if (!QFileInfo(info.absolutePath()).isWritable() &&
            !QFileInfo::exists(path + QStringLiteral("-wal"))) {
            options << QStringLiteral("QSQLITE_OPEN_URI");
            db.setDatabaseName(QUrl::fromLocalFile(info.absoluteFilePath()).toString(QUrl::FullyEncoded) +
                               QStringLiteral("?immutable=1"));
        }
    }
    if (db.databaseName().isEmpty())
        db.setDatabaseName(path);
    db.setConnectOptions(options.join(QLatin1Char(';')));
    if (!db.open())
        throw com::ComError(com::err::Corrupt, kSource,
                            QStringLiteral("The store %1 could not be opened: %2")
                                .arg(QDir::toNativeSeparators(path), db.lastError().text()));
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        if (auto *sqlite = *static_cast<sqlite3 *const *>(handle.data()))
            sqlite3_busy_handler(sqlite, &onBusy, c.get());
    // A store made just now has a canonical path only from this moment on.
    if (c->m_canonicalPath.isEmpty())
        c->m_canonicalPath = QFileInfo(path).canonicalFilePath();
    openStores().insert(c->m_canonicalPath, c);
    return c;
}

} // namespace store
