#include "platform/registry/registrydb.h"

#include <QFileInfo>
#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace registry::db {

namespace {

/// The layout this program writes, kept in SQLite's user_version.
constexpr int kLayout = 1;

bool exec(const QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    return q.exec(sql);
}

/// SQLite reads the file and finds it whole.
bool isSound(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    return q.exec(QStringLiteral("PRAGMA quick_check(1)")) && q.next() &&
           q.value(0).toString() == QLatin1String("ok");
}

int layoutOf(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    return q.exec(QStringLiteral("PRAGMA user_version")) && q.next() ? q.value(0).toInt() : -1;
}

bool createTables(const QSqlDatabase &db)
{
    return exec(db, QStringLiteral("CREATE TABLE keys(id INTEGER PRIMARY KEY, root INTEGER NOT NULL,"
                                   " parent INTEGER NOT NULL, path TEXT NOT NULL, fold TEXT NOT NULL,"
                                   " UNIQUE(root, fold))")) &&
           exec(db, QStringLiteral("CREATE INDEX keys_children ON keys(root, parent)")) &&
           exec(db, QStringLiteral("CREATE TABLE \"values\"(key INTEGER NOT NULL REFERENCES keys(id)"
                                   " ON DELETE CASCADE, name TEXT NOT NULL, fold TEXT NOT NULL,"
                                   " type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY(key, fold))"));
}

/// The first layout told names apart by SQLite's NOCASE, which folds ASCII
/// letters only, and had no parent column: its keys and values are copied
/// into the tables of today.
bool convertFirstLayout(const QSqlDatabase &db)
{
    if (!exec(db, QStringLiteral("ALTER TABLE keys RENAME TO keys_first")) ||
        !exec(db, QStringLiteral("ALTER TABLE \"values\" RENAME TO values_first")) || !createTables(db))
        return false;
    QHash<qint64, qint64> newId;
    QSqlQuery keys(db);
    if (!keys.exec(QStringLiteral("SELECT id, root, path FROM keys_first ORDER BY length(path)")))
        return false;
    while (keys.next()) {
        const qint64 id = createKey(db, keys.value(1).toLongLong(), normalise(keys.value(2).toString()));
        if (id < 0)
            return false;
        newId.insert(keys.value(0).toLongLong(), id);
    }
    QSqlQuery values(db);
    if (!values.exec(QStringLiteral("SELECT key, name, type, data FROM values_first")))
        return false;
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral("INSERT OR REPLACE INTO \"values\"(key, name, fold, type, data)"
                                  " VALUES(?, ?, ?, ?, ?)"));
    while (values.next()) {
        const qint64 key = newId.value(values.value(0).toLongLong(), 0);
        if (key <= 0)
            continue; // a value of a root or of a lost key
        const QString name = values.value(1).toString();
        insert.addBindValue(key);
        insert.addBindValue(name.isNull() ? QStringLiteral("") : name);
        insert.addBindValue(fold(name));
        insert.addBindValue(values.value(2));
        insert.addBindValue(values.value(3).toByteArray().isNull() ? QByteArray("")
                                                                   : values.value(3).toByteArray());
        if (!insert.exec())
            return false;
    }
    keys.finish();
    values.finish();
    return exec(db, QStringLiteral("DROP TABLE values_first")) &&
           exec(db, QStringLiteral("DROP TABLE keys_first"));
}

bool makeLayout(const QSqlDatabase &db)
{
    WriteTransaction transaction(db);
    if (!transaction.isActive())
        return false;
    // Another program may have made the tables while this one waited.
    if (layoutOf(db) >= kLayout)
        return true;
    const bool converted =
        db.tables().contains(QStringLiteral("keys")) ? convertFirstLayout(db) : createTables(db);
    return converted && exec(db, QStringLiteral("PRAGMA user_version = %1").arg(kLayout)) &&
           transaction.commit();
}

} // namespace

QSqlDatabase open(const QString &path, const QString &connection)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
    if (!db.open())
        return db;
    exec(db, QStringLiteral("PRAGMA journal_mode = WAL"));
    // In WAL mode a commit survives a killed program without waiting for the
    // disk; only a power cut may take the last commits back.
    exec(db, QStringLiteral("PRAGMA synchronous = NORMAL"));
    exec(db, QStringLiteral("PRAGMA foreign_keys = ON"));
    if (!isSound(db) || (layoutOf(db) < kLayout && !makeLayout(db)))
        db.close();
    return db;
}

Trouble diagnose(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isReadable() || !info.isWritable() || !QFileInfo(info.absolutePath()).isWritable())
        return Trouble::Unreadable;
    const QString name = QStringLiteral("sorrelin-registry-diagnosis");
    Trouble trouble = Trouble::None;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=1000"));
        if (db.open()) {
            QSqlQuery q(db);
            if (!q.exec(QStringLiteral("PRAGMA quick_check(1)"))) {
                const int code = q.lastError().nativeErrorCode().toInt() & 0xff;
                trouble = (code == 5 || code == 6) ? Trouble::Locked : Trouble::Damaged;
            } else if (!q.next() || q.value(0).toString() != QLatin1String("ok")) {
                trouble = Trouble::Damaged;
            } else {
                // Sound to SQLite, yet not ours: another program's tables.
                const QStringList tables = db.tables();
                if (!tables.isEmpty() && !tables.contains(QStringLiteral("keys")))
                    trouble = Trouble::Damaged;
            }
        } else {
            trouble = Trouble::Damaged;
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return trouble;
}

QString fold(const QString &name)
{
    // Never a null text, which would bind as NULL: the default value's name
    // folds to "".
    const QString folded = name.toCaseFolded();
    return folded.isNull() ? QStringLiteral("") : folded;
}

QString normalise(const QString &path)
{
    return path.split(QLatin1Char('\\'), Qt::SkipEmptyParts).join(QLatin1Char('\\'));
}

qint64 findKey(const QSqlDatabase &db, qint64 root, const QString &path)
{
    if (path.isEmpty())
        return 0;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT id FROM keys WHERE root = ? AND fold = ?"));
    q.addBindValue(root);
    q.addBindValue(fold(path));
    if (!q.exec())
        return kFailed;
    return q.next() ? q.value(0).toLongLong() : kMissing;
}

qint64 createKey(const QSqlDatabase &db, qint64 root, const QString &path)
{
    qint64 parent = 0;
    QString sofar;
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral("INSERT INTO keys(root, parent, path, fold) VALUES(?, ?, ?, ?)"
                                  " ON CONFLICT(root, fold) DO NOTHING"));
    for (const QString &part : path.split(QLatin1Char('\\'), Qt::SkipEmptyParts)) {
        sofar = sofar.isEmpty() ? part : sofar + QLatin1Char('\\') + part;
        insert.addBindValue(root);
        insert.addBindValue(parent);
        insert.addBindValue(sofar);
        insert.addBindValue(fold(sofar));
        if (!insert.exec())
            return kFailed;
        parent = findKey(db, root, sofar);
        if (parent <= 0)
            return kFailed;
    }
    return parent;
}

WriteTransaction::WriteTransaction(QSqlDatabase db) : m_db(std::move(db))
{
    m_active = m_db.isOpen() && exec(m_db, QStringLiteral("BEGIN IMMEDIATE"));
}

WriteTransaction::~WriteTransaction()
{
    if (m_active)
        exec(m_db, QStringLiteral("ROLLBACK"));
}

bool WriteTransaction::commit()
{
    if (!m_active || !exec(m_db, QStringLiteral("COMMIT")))
        return false;
    m_active = false;
    return true;
}

} // namespace registry::db
