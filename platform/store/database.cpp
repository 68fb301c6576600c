#include "platform/store/database.h"

#include "platform/store/schema.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>

#include <atomic>

namespace store {

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");

QString nextConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("sorrelin-store-%1").arg(counter.fetch_add(1));
}

bool looksLikeSqlite(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    return f.read(16) == QByteArray("SQLite format 3\0", 16);
}

} // namespace

Database::Database(QString path) : m_path(std::move(path)), m_connection(nextConnectionName()) {}

Database::~Database()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (db.isValid())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

com::ComError Database::error(const QString &what, const QString &detail) const
{
    return com::ComError(com::err::CallFailed, kSource,
                         QStringLiteral("%1 in the store %2: %3").arg(what, m_path, detail));
}

void Database::connect()
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(m_path);
    if (!db.open())
        throw com::ComError(
            com::err::Corrupt, kSource,
            QStringLiteral("The store %1 could not be opened: %2").arg(m_path, db.lastError().text()));
    run(QStringLiteral("PRAGMA busy_timeout = 5000"));
    run(QStringLiteral("PRAGMA foreign_keys = ON"));
}

std::unique_ptr<Database> Database::open(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw com::ComError(com::err::NotFound, kSource,
                            QStringLiteral("The store %1 does not exist.").arg(path));
    if (!info.isFile() || !looksLikeSqlite(path))
        throw com::ComError(com::err::Corrupt, kSource,
                            QStringLiteral("The file %1 is not a Sorrelin store.").arg(path));
    std::unique_ptr<Database> db(new Database(path));
    db->connect();
    db->checkIntegrity();
    db->run(QStringLiteral("PRAGMA journal_mode = WAL"));
    // With the write-ahead log a killed process still leaves a consistent
    // store; only a crash of the whole system may lose the last writes.
    db->run(QStringLiteral("PRAGMA synchronous = NORMAL"));
    return db;
}

std::unique_ptr<Database> Database::create(const QString &path)
{
    if (QFileInfo::exists(path))
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("The file %1 already exists.").arg(path));
    std::unique_ptr<Database> db(new Database(path));
    db->connect();
    db->run(QStringLiteral("PRAGMA journal_mode = WAL"));
    db->transaction([&] {
        for (const QString &sql : schemaStatements())
            db->run(sql);
        db->setMeta(QStringLiteral("schema"), QString::number(kSchemaVersion));
        db->setMeta(QStringLiteral("created"), now());
    });
    return db;
}

void Database::checkIntegrity()
{
    struct ReadError {
        QString detail;
    };
    // A read of the checks below; its failure says what is wrong with the file.
    const auto scalar = [this](const QString &sql) {
        QSqlQuery q(QSqlDatabase::database(m_connection, false));
        if (!q.exec(sql))
            throw ReadError{q.lastError().text()};
        return q.next() ? q.value(0) : QVariant();
    };
    const auto damaged = [this](const QString &detail) {
        return com::ComError(com::err::Corrupt, kSource,
                             QStringLiteral("The store %1 is damaged: %2").arg(m_path, detail));
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
        const QVariant version = scalar(QStringLiteral("SELECT value FROM meta WHERE key = 'schema'"));
        if (!version.isValid())
            throw com::ComError(
                com::err::Corrupt, kSource,
                QStringLiteral("The file %1 is not a Sorrelin store (no schema version).").arg(m_path));
        if (version.toInt() != kSchemaVersion)
            throw com::ComError(
                com::err::Corrupt, kSource,
                QStringLiteral("The store %1 is of version %2; this program reads version %3.")
                    .arg(m_path, version.toString())
                    .arg(kSchemaVersion));
        const QString check = scalar(QStringLiteral("PRAGMA quick_check(1)")).toString();
        if (check != QLatin1String("ok"))
            throw damaged(check);
    } catch (const ReadError &e) {
        // SQLite says "malformed" of a damaged file; anything else means the
        // file is some other database.
        if (e.detail.contains(QLatin1String("malformed")))
            throw damaged(e.detail);
        throw com::ComError(
            com::err::Corrupt, kSource,
            QStringLiteral("The file %1 is not a Sorrelin store (%2).").arg(m_path, e.detail));
    }
}

QSqlQuery Database::prepare(const QString &sql) const
{
    QSqlQuery q(QSqlDatabase::database(m_connection, false));
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        throw error(QStringLiteral("A statement could not be prepared"), q.lastError().text());
    return q;
}

void Database::exec(QSqlQuery &query) const
{
    if (!query.exec()) {
        const QSqlError e = query.lastError();
        // SQLITE_CORRUPT (11) and SQLITE_NOTADB (26) mean the file itself is bad.
        const QString code = e.nativeErrorCode();
        const int32_t number = (code == QLatin1String("11") || code == QLatin1String("26"))
                                   ? com::err::Corrupt
                                   : com::err::CallFailed;
        throw com::ComError(number, kSource,
                            QStringLiteral("A store operation failed in %1: %2").arg(m_path, e.text()));
    }
}

QSqlQuery Database::run(const QString &sql, const QVariantList &values) const
{
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

QString Database::now()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

Database::Transaction::Transaction(Database &db) : m_db(db)
{
    m_outer = m_db.m_depth == 0;
    if (m_outer)
        m_db.run(QStringLiteral("BEGIN IMMEDIATE"));
    ++m_db.m_depth;
}

void Database::Transaction::commit()
{
    m_done = true;
    --m_db.m_depth;
    if (m_outer)
        m_db.run(QStringLiteral("COMMIT"));
}

Database::Transaction::~Transaction()
{
    if (m_done)
        return;
    --m_db.m_depth;
    if (m_outer) {
        try {
            m_db.run(QStringLiteral("ROLLBACK"));
        } catch (const com::ComError &) {
            // The transaction is gone either way; the original error matters.
        }
    }
}

} // namespace store
