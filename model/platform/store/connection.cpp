#include "platform/store/connection.h"

#include "platform/com/comerror.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QUrl>

#include <sqlite3.h>

#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");
constexpr int kBusyStepMs = 25;

std::atomic<int> g_busyWaitMs{10000};

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
    if (count * kBusyStepMs >= g_busyWaitMs)
        return 0;
    QThread::msleep(kBusyStepMs);
    return 1;
}

/// A file's device and node, which a file put in its place doesn't share.
/// Where the system has none, a file that is open can't be removed either.
std::pair<quint64, quint64> fileId(const QString &path)
{
#ifdef Q_OS_UNIX
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) == 0)
        return {static_cast<quint64>(info.st_dev), static_cast<quint64>(info.st_ino)};
    return {0, 0};
#else
    return QFileInfo::exists(path) ? std::pair<quint64, quint64>{1, 1} : std::pair<quint64, quint64>{0, 0};
#endif
}

/// What each session on a server store sets first.
void setUpServerSession(QSqlDatabase &db, Connection::Access access)
{
    // A write waits for another program's row locks as long as it would for
    // an SQLite store's lock, then gives up in words.
    QSqlQuery(db).exec(QStringLiteral("SET lock_timeout = %1").arg(g_busyWaitMs.load()));
    // A reader can't write by mistake.
    if (access == Connection::Access::ReadOnly)
        QSqlQuery(db).exec(QStringLiteral("SET default_transaction_read_only = on"));
}

/// Whether the login of `db` may write every table of the store in its
/// schema: add, change and remove rows, and draw new row numbers. A server
/// that can't tell is taken as writable: a write it refuses is refused then.
bool mayWriteStore(QSqlDatabase &db)
{
    QSqlQuery q(db);
    const bool ok = q.exec(QStringLiteral(
        "SELECT NOT EXISTS (SELECT 1 FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace"
        " WHERE n.nspname = current_schema() AND ("
        "(c.relkind = 'r' AND NOT (has_table_privilege(c.oid, 'INSERT') AND"
        " has_table_privilege(c.oid, 'UPDATE') AND has_table_privilege(c.oid, 'DELETE')))"
        " OR (c.relkind = 'S' AND NOT has_sequence_privilege(c.oid, 'USAGE'))))"));
    return !ok || !q.next() || q.value(0).toBool();
}

/// The one message for a server store that could not be opened.
com::ComError serverOpenError(const Location &location, const QString &cause)
{
    const QString store = location.text();
    const QString detail = cause.trimmed();
    if (detail.contains(QLatin1String("authentication")) || detail.contains(QLatin1String("password")) ||
        detail.contains(QLatin1String("pg_hba.conf")) || detail.contains(QLatin1String("role \"")))
        return com::ComError(com::err::NoAccess, kSource,
                             QStringLiteral("The server of the store %1 refused the login of %2; nothing was "
                                            "written. The password comes from ~/.pgpass or PGPASSWORD. %3")
                                 .arg(store, location.user, detail));
    if (detail.contains(QLatin1String("database \"")) && detail.contains(QLatin1String("does not exist")))
        return com::ComError(com::err::NotFound, kSource,
                             QStringLiteral("The server of the store %1 has no database \"%2\"; nothing was "
                                            "written.")
                                 .arg(store, location.database));
    return com::ComError(
        com::err::CallFailed, kSource,
        QStringLiteral("The server of the store %1 can't be reached; nothing was written. %2")
            .arg(store, detail));
}

} // namespace

std::chrono::milliseconds busyWait()
{
    return std::chrono::milliseconds(g_busyWaitMs.load());
}

void setBusyWait(std::chrono::milliseconds wait)
{
    g_busyWaitMs = static_cast<int>(wait.count());
}

Connection::Connection(QString name, QString canonicalPath, Access access)
    : m_name(std::move(name)), m_canonicalPath(std::move(canonicalPath)), m_access(access), m_asked(access)
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
    for (const QString &name : std::as_const(m_retired))
        QSqlDatabase::removeDatabase(name);
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

bool Connection::reconnect()
{
    // A connection of a new name: the statements of the old one end with
    // it, and can't disturb the new session when they go.
    const QString fresh = nextConnectionName();
    {
        QSqlDatabase old = QSqlDatabase::database(m_name, false);
        old.close();
        QSqlDatabase db = QSqlDatabase::cloneDatabase(old, fresh);
        if (db.open()) {
            setUpServerSession(db, m_access);
            m_retired.append(m_name);
            m_name = fresh;
            lost = false;
            ++sessions;
            return true;
        }
    }
    QSqlDatabase::removeDatabase(fresh);
    return false;
}

void Connection::checkFileStillThere(const QString &path) const
{
    if (fileId(path) == m_fileId)
        return;
    throw com::ComError(
        com::err::StoreLost, kSource,
        QStringLiteral("The store %1 was removed or replaced by another file while Sorrelin had it open; "
                       "nothing was written. Close Sorrelin and start it again to open the store that is "
                       "there now.")
            .arg(QDir::toNativeSeparators(path)));
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
    c->m_fileId = fileId(path);
    openStores().insert(c->m_canonicalPath, c);
    return c;
}

QString Connection::createDatabase(const Location &server, const QString &name)
{
    Location made = server;
    made.database = name;
    {
        const std::shared_ptr<Connection> c = openServer(server, Access::ReadWrite);
        QSqlDatabase db = QSqlDatabase::database(c->name(), false);
        QSqlQuery q(db);
        if (!q.exec(QStringLiteral("CREATE DATABASE %1")
                        .arg(db.driver()->escapeIdentifier(name, QSqlDriver::TableName))))
            throw com::ComError(com::err::CallFailed, kSource,
                                QStringLiteral("The database %1 could not be made: %2")
                                    .arg(made.text(), q.lastError().databaseText().trimmed()));
    }
    return made.text();
}

std::shared_ptr<Connection> Connection::openServer(const Location &location, Access access)
{
    std::shared_ptr<Connection> c(new Connection(nextConnectionName(), location.text(), access));
    c->m_engine = Location::Engine::PostgreSQL;
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), c->m_name);
    if (!db.isValid())
        throw com::ComError(com::err::CallFailed, kSource,
                            QStringLiteral("The store %1 is on a PostgreSQL server, and this system has no "
                                           "PostgreSQL driver for Qt (libqt6sql6-psql).")
                                .arg(location.text()));
    db.setHostName(location.host);
    db.setPort(location.port);
    db.setDatabaseName(location.database);
    db.setUserName(location.user);
    db.setConnectOptions(QStringLiteral("connect_timeout=10;application_name=Sorrelin"));
    if (!db.open())
        throw serverOpenError(location, db.lastError().databaseText());
    // A login that may only read the store opens it for reading.
    if (access == Access::ReadWrite && !mayWriteStore(db))
        c->m_access = Access::ReadOnly;
    setUpServerSession(db, c->m_access);
    openStores().insert(c->m_canonicalPath, c);
    return c;
}

} // namespace store
