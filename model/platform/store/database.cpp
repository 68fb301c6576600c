#include "platform/store/database.h"

#include "platform/store/agentchanges.h"
#include "platform/store/schema.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlError>

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");
// The notice that every write transaction on a server store sends.
const QString kChangeChannel = QStringLiteral("sorrelin_store_changed");

// SQLite's primary result codes that the words below tell apart.
constexpr int kSqliteBusy = 5;
constexpr int kSqliteLocked = 6;
constexpr int kSqliteReadOnly = 8;
constexpr int kSqliteIoErr = 10;
constexpr int kSqliteCorrupt = 11;
constexpr int kSqliteFull = 13;
constexpr int kSqliteCantOpen = 14;
constexpr int kSqliteNotADb = 26;

int primaryCode(const QSqlError &e)
{
    return e.nativeErrorCode().toInt() & 0xff;
}

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

com::ComError storeError(int32_t number, const QString &text)
{
    return com::ComError(number, kSource, text);
}

com::ComError readOnlyError(const QString &store)
{
    return storeError(com::err::NoAccess,
                      QStringLiteral("The store %1 is read-only; nothing was written.").arg(store));
}

/// The words for an SQL failure on the store at `path`.
com::ComError sqlError(const QString &path, const QSqlError &e)
{
    const QString file = shown(path);
    switch (primaryCode(e)) {
    case kSqliteBusy:
    case kSqliteLocked:
        return storeError(
            com::err::Busy,
            QStringLiteral("The store %1 is locked by another program. Sorrelin waited %2 seconds "
                           "for it; nothing was written. Try again when the other program has "
                           "finished.")
                .arg(file)
                .arg(busyWait().count() / 1000));
    case kSqliteReadOnly:
        return readOnlyError(file);
    case kSqliteFull:
        return storeError(
            com::err::DiskFull,
            QStringLiteral("The disk that holds the store %1 is full; nothing was written.").arg(file));
    case kSqliteIoErr:
    case kSqliteCantOpen:
        return storeError(
            com::err::CallFailed,
            QStringLiteral("The store %1 could not be read or written: %2").arg(file, e.text()));
    case kSqliteCorrupt:
    case kSqliteNotADb:
        return storeError(com::err::Corrupt,
                          QStringLiteral("The store %1 is damaged: %2").arg(file, e.text()));
    default:
        return storeError(com::err::CallFailed,
                          QStringLiteral("A store operation failed in %1: %2").arg(file, e.text()));
    }
}

/// Refuses, before SQLite sees it, a file that can't be a store. Only the
/// file's metadata is read: a handle opened and closed here would drop the
/// locks of another program's connection in this process.
void checkFile(const QFileInfo &info)
{
    const QString file = shown(info.filePath());
    if (!info.exists())
        throw storeError(com::err::NotFound, QStringLiteral("The store %1 does not exist.").arg(file));
    if (info.isDir())
        throw storeError(com::err::Corrupt,
                         QStringLiteral("%1 is a folder, not a Sorrelin store.").arg(file));
    if (info.size() == 0)
        throw storeError(com::err::Corrupt,
                         QStringLiteral("The file %1 is empty; it is not a Sorrelin store.").arg(file));
    if (!info.isReadable())
        throw storeError(com::err::NoAccess,
                         QStringLiteral("The store %1 can't be read: permission denied.").arg(file));
}

/// What this process may do with a store file: write it only where it may
/// write the file and the folder that keeps its journal.
Database::Access fileAccess(const QFileInfo &info, Database::Access wanted)
{
    const bool writable = info.isWritable() && QFileInfo(info.absolutePath()).isWritable();
    return writable ? wanted : Database::Access::ReadOnly;
}

/// The words for a failure of a statement on a server store.
com::ComError serverError(const QString &store, const QSqlError &e)
{
    const QString state = e.nativeErrorCode();
    // A failure without a state of the server's is the client's: the
    // session is gone.
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P")) || state.isEmpty())
        return storeError(com::err::StoreLost,
                          QStringLiteral("The connection to the server of the store %1 was lost; nothing "
                                         "was written: %2")
                              .arg(store, e.databaseText().trimmed().section(QLatin1Char('\n'), 0, 0)));
    if (state == QLatin1String("40001") || state == QLatin1String("40P01") || state == QLatin1String("55P03"))
        return storeError(com::err::Busy,
                          QStringLiteral("The store %1 was being changed by another program; nothing was "
                                         "written. Try again.")
                              .arg(store));
    return storeError(
        com::err::CallFailed,
        QStringLiteral("A store operation failed in %1: %2").arg(store, e.databaseText().trimmed()));
}

} // namespace

Database::Database(QString path, std::shared_ptr<Connection> connection)
    : m_path(std::move(path)), m_location(Location::parse(m_path)), m_connection(std::move(connection))
{
}

Database::~Database() = default;

com::ComError Database::serverFailure(const QSqlError &e) const
{
    const com::ComError failure = serverError(m_location.text(), e);
    if (failure.number() == com::err::StoreLost)
        m_connection->lost = true;
    return told(failure);
}

com::ComError Database::told(const com::ComError &failure) const
{
    if (failure.number() == com::err::StoreLost && m_connection->lossObserver)
        m_connection->lossObserver(failure);
    return failure;
}

void Database::ensureConnected() const
{
    Connection &c = *m_connection;
    if (!c.lost)
        return;
    // Within a transaction the session's work is gone with it; outside one
    // the server is tried again once a command.
    if (c.depth == 0 && c.retry) {
        c.retry = false;
        if (c.reconnect())
            return;
    }
    throw told(storeError(com::err::StoreLost,
                          QStringLiteral("The connection to the server of the store %1 was lost, and the "
                                         "server can't be reached; nothing was written.")
                              .arg(m_location.text())));
}

int Database::sessionNumber() const
{
    if (onServer())
        ensureConnected();
    return m_connection->sessions;
}

void Database::setLossObserver(LossObserver observer)
{
    m_connection->lossObserver = std::move(observer);
}

void Database::retryLostConnection()
{
    m_connection->retry = true;
}

com::ComError Database::error(const QString &what, const QString &detail) const
{
    return storeError(com::err::CallFailed,
                      QStringLiteral("%1 in the store %2: %3").arg(what, shown(m_path), detail));
}

std::unique_ptr<Database> Database::open(const QString &path, Access access)
{
    const Location location = Location::parse(path);
    if (location.onServer()) {
        if (std::shared_ptr<Connection> shared = Connection::find(location.text())) {
            if (access == Access::ReadWrite && shared->asked() == Access::ReadOnly)
                throw storeError(com::err::NoAccess,
                                 QStringLiteral("The store %1 is open for reading only in this program.")
                                     .arg(location.text()));
            return std::unique_ptr<Database>(new Database(path, std::move(shared)));
        }
        std::unique_ptr<Database> db(new Database(path, Connection::openServer(location, access)));
        db->checkServerStore();
        if (!db->readOnly())
            addAgentChanges(*db);
        return db;
    }
    const QFileInfo info(path);
    checkFile(info);
    const Access granted = fileAccess(info, access);
    const QString canonical = info.canonicalFilePath();
    if (std::shared_ptr<Connection> shared = Connection::find(canonical)) {
        if (granted == Access::ReadWrite && shared->access() == Access::ReadOnly)
            throw storeError(
                com::err::NoAccess,
                QStringLiteral("The store %1 is open for reading only in this program.").arg(shown(path)));
        return std::unique_ptr<Database>(new Database(path, std::move(shared)));
    }
    std::unique_ptr<Database> db(new Database(path, Connection::open(path, canonical, granted)));
    db->checkStore();
    if (!db->readOnly()) {
        db->runPragmas();
        addAgentChanges(*db);
    }
    return db;
}

std::unique_ptr<Database> Database::create(const QString &path, const std::function<void(Database &)> &fill)
{
    const Location location = Location::parse(path);
    std::unique_ptr<Database> db;
    if (location.onServer()) {
        db.reset(new Database(path, Connection::openServer(location, Access::ReadWrite)));
        if (db->hasTable(QStringLiteral("meta")))
            throw storeError(
                com::err::InvalidParameter,
                QStringLiteral("The database of %1 already holds a store.").arg(location.text()));
    } else {
        if (QFileInfo::exists(path))
            throw storeError(com::err::InvalidParameter,
                             QStringLiteral("The file %1 already exists.").arg(shown(path)));
        db.reset(new Database(path, Connection::open(path, QString(), Access::ReadWrite)));
        db->runPragmas();
    }
    db->transaction([&] {
        for (const QString &sql : schemaStatements(location.engine))
            db->run(sql);
        db->setMeta(QStringLiteral("schema"), QString::number(kSchemaVersion));
        db->setMeta(QStringLiteral("created"), now());
        addAgentChanges(*db);
        if (fill)
            fill(*db);
    });
    return db;
}

void Database::checkServerStore()
{
    const QString store = m_location.text();
    const auto notAStore = [&] {
        return storeError(
            com::err::Corrupt,
            QStringLiteral("The database of %1 holds no Sorrelin store; nothing was written.").arg(store));
    };
    if (!hasTable(QStringLiteral("meta")))
        throw notAStore();
    const QVariant version = meta(QStringLiteral("schema"));
    if (version.toString().isEmpty())
        throw notAStore();
    if (version.toInt() != kSchemaVersion)
        throw storeError(com::err::Corrupt,
                         QStringLiteral("The store %1 is of version %2; this program reads version %3.")
                             .arg(store, version.toString())
                             .arg(kSchemaVersion));
}

qint64 Database::insert(const QString &sql, const QVariantList &values) const
{
    QSqlQuery q = prepare(returningId(sql));
    for (const QVariant &v : values)
        q.addBindValue(v);
    exec(q);
    return insertedId(q);
}

QString Database::returningId(const QString &sql) const
{
    return onServer() ? sql + QStringLiteral(" RETURNING id") : sql;
}

qint64 Database::insertedId(QSqlQuery &query) const
{
    if (!onServer())
        return query.lastInsertId().toLongLong();
    return query.next() ? query.value(0).toLongLong() : 0;
}

void Database::runPragmas()
{
    run(QStringLiteral("PRAGMA foreign_keys = ON"));
    run(QStringLiteral("PRAGMA journal_mode = WAL"));
    // With the write-ahead log a killed process still leaves a consistent
    // store; only a crash of the whole system may lose the last writes.
    run(QStringLiteral("PRAGMA synchronous = NORMAL"));
}

void Database::setBusyObserver(BusyObserver observer)
{
    m_connection->busyObserver = std::move(observer);
}

void Database::checkStore()
{
    struct ReadError {
        QSqlError error;
    };
    // A read of the checks below; its failure says what is wrong with the file.
    const auto scalar = [this](const QString &sql) {
        QSqlQuery q(QSqlDatabase::database(m_connection->name(), false));
        if (!q.exec(sql))
            throw ReadError{q.lastError()};
        const QVariant v = q.next() ? q.value(0) : QVariant();
        m_connection->endWait();
        return v;
    };
    const QString file = shown(m_path);
    const auto damaged = [&](const QString &detail) {
        return storeError(com::err::Corrupt, QStringLiteral("The store %1 is damaged: %2").arg(file, detail));
    };
    try {
        // A file cut short still opens; its page count says how long it must
        // be. With a write-ahead log beside it the count includes its pages.
        if (!QFileInfo::exists(m_path + QStringLiteral("-wal"))) {
            bool ok = false;
            const qint64 pages = scalar(QStringLiteral("PRAGMA page_count")).toLongLong(&ok);
            const qint64 pageSize = scalar(QStringLiteral("PRAGMA page_size")).toLongLong();
            if (!ok || QFileInfo(m_path).size() < pages * pageSize)
                throw damaged(QStringLiteral("the file is shorter than its contents."));
        }
        if (!hasTable(QStringLiteral("meta")))
            throw storeError(
                com::err::Corrupt,
                QStringLiteral("The file %1 is not a Sorrelin store: it is a database of another "
                               "program.")
                    .arg(file));
        const QVariant version = scalar(QStringLiteral("SELECT value FROM meta WHERE key = 'schema'"));
        if (!version.isValid())
            throw storeError(
                com::err::Corrupt,
                QStringLiteral("The file %1 is not a Sorrelin store (no schema version).").arg(file));
        if (version.toInt() != kSchemaVersion)
            throw storeError(com::err::Corrupt,
                             QStringLiteral("The store %1 is of version %2; this program reads version %3.")
                                 .arg(file, version.toString())
                                 .arg(kSchemaVersion));
        const QString check = scalar(QStringLiteral("PRAGMA quick_check(1)")).toString();
        if (check != QLatin1String("ok"))
            throw damaged(check);
    } catch (const ReadError &e) {
        m_connection->endWait();
        switch (primaryCode(e.error)) {
        case kSqliteNotADb:
            throw storeError(
                com::err::Corrupt,
                QStringLiteral("The file %1 is not a Sorrelin store: it is not a database.").arg(file));
        case kSqliteBusy:
        case kSqliteLocked:
            throw storeError(
                com::err::Busy,
                QStringLiteral("The store %1 is locked by another program. Try again when the other "
                               "program has finished.")
                    .arg(file));
        default:
            throw sqlError(m_path, e.error);
        }
    }
}

bool Database::hasTable(const QString &name) const
{
    return onServer() ? scalar(QStringLiteral("SELECT to_regclass(?) IS NOT NULL"), {name}).toBool()
                      : scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table'"
                                              " AND name = ?"),
                               {name})
                                .toInt() > 0;
}

QSqlQuery Database::prepare(const QString &sql, Rows rows) const
{
    if (onServer())
        ensureConnected();
    QSqlQuery q(QSqlDatabase::database(m_connection->name(), false));
    // Qt reads a forward-only result from the server row by row, and loses
    // it when another statement runs meanwhile; the store reads nested
    // unless the caller says otherwise.
    q.setForwardOnly(!onServer() || rows == Rows::Streamed);
    if (!q.prepare(sql)) {
        if (onServer())
            throw serverFailure(q.lastError());
        m_connection->endWait();
        const QSqlError e = q.lastError();
        if (primaryCode(e) == kSqliteBusy || primaryCode(e) == kSqliteLocked)
            throw sqlError(m_path, e);
        throw error(QStringLiteral("A statement could not be prepared"), e.text());
    }
    return q;
}

void Database::exec(QSqlQuery &query) const
{
    if (onServer()) {
        // Qt's PostgreSQL driver writes numbers into the statement bare,
        // which PostgreSQL won't take for a field's bytes; quoted, a number
        // becomes whatever its column holds.
        const QVariantList values = query.boundValues();
        for (int i = 0; i < values.size(); ++i) {
            const QVariant &v = values.at(i);
            if (v.typeId() == QMetaType::Bool)
                query.bindValue(i, QString::number(v.toBool() ? 1 : 0));
            else if (!v.isNull() && (v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong ||
                                     v.typeId() == QMetaType::UInt || v.typeId() == QMetaType::ULongLong))
                query.bindValue(i, v.toString());
        }
        const bool ok = query.exec();
        if (!ok)
            throw serverFailure(query.lastError());
        return;
    }
    const bool ok = query.exec();
    m_connection->endWait();
    if (!ok)
        throw sqlError(m_path, query.lastError());
}

QSqlQuery Database::run(const QString &sql, const QVariantList &values) const
{
    if (onServer() && values.isEmpty()) {
        // The server prepares only queries; statements that define tables
        // or end transactions run as they are.
        ensureConnected();
        QSqlQuery q(QSqlDatabase::database(m_connection->name(), false));
        if (!q.exec(sql))
            throw serverFailure(q.lastError());
        return q;
    }
    QSqlQuery q = prepare(sql);
    for (const QVariant &v : values)
        q.addBindValue(v);
    exec(q);
    return q;
}

QVariant Database::scalar(const QString &sql, const QVariantList &values) const
{
    QSqlQuery q = run(sql, values);
    return q.next() ? q.value(0) : QVariant();
}

QString Database::meta(const QString &key) const
{
    return scalar(QStringLiteral("SELECT value FROM meta WHERE key = ?"), {key}).toString();
}

void Database::setMeta(const QString &key, const QString &value)
{
    run(QStringLiteral("INSERT INTO meta(key, value) VALUES(?, ?) ON CONFLICT(key) DO UPDATE SET value = "
                       "excluded.value"),
        {key, value});
}

QString Database::assignEntryId(IdKind kind, qint64 storeRow, qint64 row)
{
    const QString id = makeEntryId(storeRow, kind, row);
    const QString table = kind == IdKind::Folder ? QStringLiteral("folders") : QStringLiteral("messages");
    run(QStringLiteral("UPDATE %1 SET entry_id = ? WHERE id = ?").arg(table), {id, row});
    return id;
}

QString Database::changeChannel()
{
    return kChangeChannel;
}

QString Database::now()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

Database::Transaction::Transaction(Database &db, Kind kind) : m_db(db), m_kind(kind)
{
    // Nothing is written into a store this program may only read.
    if (kind == Kind::Write && m_db.readOnly())
        throw readOnlyError(m_db.onServer() ? m_db.m_location.text() : shown(m_db.m_path));
    m_outer = m_db.m_connection->depth == 0;
    // A write into a file that nobody will open again would be lost.
    if (m_outer && kind == Kind::Write && !m_db.onServer())
        m_db.m_connection->checkFileStillThere(m_db.m_path);
    if (m_outer)
        m_db.run(kind == Kind::Write && !m_db.onServer() ? QStringLiteral("BEGIN IMMEDIATE")
                                                         : QStringLiteral("BEGIN"));
    ++m_db.m_connection->depth;
}

void Database::Transaction::commit()
{
    if (m_done)
        return;
    m_done = true;
    --m_db.m_connection->depth;
    if (!m_outer)
        return;
    try {
        // Other programs on a server store learn of the change when it lands.
        if (m_kind == Kind::Write && m_db.onServer())
            m_db.run(QStringLiteral("NOTIFY ") + kChangeChannel);
        m_db.run(QStringLiteral("COMMIT"));
    } catch (const com::ComError &) {
        // A commit that fails leaves nothing half written behind it.
        try {
            m_db.run(QStringLiteral("ROLLBACK"));
        } catch (const com::ComError &) {
        }
        throw;
    }
}

Database::Transaction::~Transaction()
{
    if (m_done)
        return;
    --m_db.m_connection->depth;
    if (m_outer) {
        try {
            m_db.run(QStringLiteral("ROLLBACK"));
        } catch (const com::ComError &) {
            // SQLite may have rolled back already (a full disk); the first
            // error is the one that matters.
        }
    }
}

} // namespace store
