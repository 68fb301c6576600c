#include "platform/registry/registry.h"

#include "platform/registry/defaults.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

#include <atomic>

namespace registry {

namespace {

QString connectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("sorrelin-registry-%1").arg(counter.fetch_add(1));
}

/// Bound values are never NULL: the default value's name is "", an empty value
/// is zero bytes.
QString notNull(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

QByteArray notNull(const QByteArray &bytes)
{
    return bytes.isNull() ? QByteArray("") : bytes;
}

bool isRoot(HKEY key)
{
    return key == HKEY_CLASSES_ROOT || key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE;
}

/// Key paths are kept with single separators and no leading or trailing one.
QString normalise(const QString &path)
{
    QStringList parts = path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    return parts.join(QLatin1Char('\\'));
}

} // namespace

class Registry::Impl {
public:
    QString path;
    QString connection;
    QHash<HKEY, std::pair<HKEY, QString>> open; // handle -> (root, path)
    HKEY nextHandle = 1;

    QSqlDatabase db() const { return QSqlDatabase::database(connection, false); }

    bool run(QSqlQuery &q) { return q.exec(); }

    /// Root and path of an open key or a root key.
    bool resolve(HKEY key, HKEY &root, QString &keyPath) const
    {
        if (isRoot(key)) {
            root = key;
            keyPath.clear();
            return true;
        }
        const auto it = open.constFind(key);
        if (it == open.constEnd())
            return false;
        root = it->first;
        keyPath = it->second;
        return true;
    }

    bool keyExists(HKEY root, const QString &keyPath)
    {
        if (keyPath.isEmpty())
            return true;
        QSqlQuery q(db());
        q.prepare(QStringLiteral("SELECT 1 FROM keys WHERE root = ? AND path = ? COLLATE NOCASE"));
        q.addBindValue(static_cast<qint64>(root));
        q.addBindValue(notNull(keyPath));
        return q.exec() && q.next();
    }

    HKEY handleFor(HKEY root, const QString &keyPath)
    {
        const HKEY h = nextHandle++;
        open.insert(h, {root, keyPath});
        return h;
    }
};

Registry &Registry::system()
{
    // The system's registry lives as long as the process does.
    static const std::unique_ptr<Registry> instance = [] {
        const QString dir =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/sorrelin");
        QDir().mkpath(dir);
        const QString file = dir + QStringLiteral("/registry.db");
        const bool fresh = !QFileInfo::exists(file);
        auto r = std::make_unique<Registry>(file);
        if (fresh)
            fillDesktopDefaults(*r, defaultProgramLookup());
        return r;
    }();
    return *instance;
}

Registry::Registry(const QString &path) : d(std::make_unique<Impl>())
{
    d->path = path;
    d->connection = connectionName();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), d->connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open())
        return; // every call then gives ERROR_BADDB
    QSqlQuery q(db);
    q.exec(QStringLiteral("PRAGMA journal_mode = WAL"));
    q.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY, root INTEGER NOT NULL,"
                          " path TEXT NOT NULL, UNIQUE(root, path COLLATE NOCASE))"));
    q.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS \"values\"(key INTEGER NOT NULL REFERENCES keys(id)"
                          " ON DELETE CASCADE, name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL,"
                          " PRIMARY KEY(key, name COLLATE NOCASE))"));
}

Registry::~Registry()
{
    {
        QSqlDatabase db = QSqlDatabase::database(d->connection, false);
        if (db.isValid())
            db.close();
    }
    QSqlDatabase::removeDatabase(d->connection);
}

const QString &Registry::path() const
{
    return d->path;
}

long Registry::RegOpenKeyEx(HKEY root, const QString &subKey, HKEY *result)
{
    HKEY base;
    QString basePath;
    if (!d->resolve(root, base, basePath))
        return ERROR_INVALID_HANDLE;
    if (!d->db().isOpen())
        return ERROR_BADDB;
    const QString path = normalise(basePath + QLatin1Char('\\') + subKey);
    if (!d->keyExists(base, path))
        return ERROR_FILE_NOT_FOUND;
    *result = d->handleFor(base, path);
    return ERROR_SUCCESS;
}

long Registry::RegCreateKeyEx(HKEY root, const QString &subKey, HKEY *result)
{
    HKEY base;
    QString basePath;
    if (!d->resolve(root, base, basePath))
        return ERROR_INVALID_HANDLE;
    QSqlDatabase db = d->db();
    if (!db.isOpen())
        return ERROR_BADDB;
    const QString path = normalise(basePath + QLatin1Char('\\') + subKey);
    // The key and every parent, in one transaction.
    if (!db.transaction())
        return ERROR_BADDB;
    QString sofar;
    for (const QString &part : path.split(QLatin1Char('\\'), Qt::SkipEmptyParts)) {
        sofar = sofar.isEmpty() ? part : sofar + QLatin1Char('\\') + part;
        QSqlQuery q(db);
        q.prepare(QStringLiteral("INSERT OR IGNORE INTO keys(root, path) VALUES(?, ?)"));
        q.addBindValue(static_cast<qint64>(base));
        q.addBindValue(sofar);
        if (!q.exec()) {
            db.rollback();
            return ERROR_ACCESS_DENIED;
        }
    }
    if (!db.commit())
        return ERROR_ACCESS_DENIED;
    *result = d->handleFor(base, path);
    return ERROR_SUCCESS;
}

long Registry::RegCloseKey(HKEY key)
{
    if (isRoot(key))
        return ERROR_SUCCESS;
    return d->open.remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

long Registry::RegQueryValueEx(HKEY key, const QString &name, uint32_t *type, QByteArray *data,
                               uint32_t *size)
{
    HKEY root;
    QString keyPath;
    if (!d->resolve(key, root, keyPath))
        return ERROR_INVALID_HANDLE;
    QSqlQuery q(d->db());
    q.prepare(
        QStringLiteral("SELECT v.type, v.data FROM \"values\" v JOIN keys k ON k.id = v.key"
                       " WHERE k.root = ? AND k.path = ? COLLATE NOCASE AND v.name = ? COLLATE NOCASE"));
    q.addBindValue(static_cast<qint64>(root));
    q.addBindValue(notNull(keyPath));
    q.addBindValue(notNull(name));
    if (!q.exec())
        return ERROR_BADDB;
    if (!q.next())
        return ERROR_FILE_NOT_FOUND;
    const QByteArray stored = q.value(1).toByteArray();
    if (type)
        *type = q.value(0).toUInt();
    if (data) {
        if (size && *size < static_cast<uint32_t>(stored.size())) {
            *size = static_cast<uint32_t>(stored.size());
            return ERROR_MORE_DATA;
        }
        *data = stored;
    }
    if (size)
        *size = static_cast<uint32_t>(stored.size());
    return ERROR_SUCCESS;
}

long Registry::RegSetValueEx(HKEY key, const QString &name, uint32_t type, const QByteArray &data)
{
    HKEY root;
    QString keyPath;
    if (!d->resolve(key, root, keyPath))
        return ERROR_INVALID_HANDLE;
    if (keyPath.isEmpty())
        return ERROR_ACCESS_DENIED; // no values on a root itself
    QSqlQuery q(d->db());
    q.prepare(
        QStringLiteral("INSERT INTO \"values\"(key, name, type, data)"
                       " SELECT id, ?, ?, ? FROM keys WHERE root = ? AND path = ? COLLATE NOCASE"
                       " ON CONFLICT(key, name) DO UPDATE SET type = excluded.type, data = excluded.data"));
    q.addBindValue(notNull(name));
    q.addBindValue(type);
    q.addBindValue(notNull(data));
    q.addBindValue(static_cast<qint64>(root));
    q.addBindValue(notNull(keyPath));
    if (!q.exec())
        return ERROR_ACCESS_DENIED;
    return q.numRowsAffected() > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

long Registry::RegDeleteValue(HKEY key, const QString &name)
{
    HKEY root;
    QString keyPath;
    if (!d->resolve(key, root, keyPath))
        return ERROR_INVALID_HANDLE;
    QSqlQuery q(d->db());
    q.prepare(QStringLiteral("DELETE FROM \"values\" WHERE name = ? COLLATE NOCASE AND key ="
                             " (SELECT id FROM keys WHERE root = ? AND path = ? COLLATE NOCASE)"));
    q.addBindValue(notNull(name));
    q.addBindValue(static_cast<qint64>(root));
    q.addBindValue(notNull(keyPath));
    if (!q.exec())
        return ERROR_ACCESS_DENIED;
    return q.numRowsAffected() > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

long Registry::RegEnumKeyEx(HKEY key, uint32_t index, QString *name)
{
    HKEY root;
    QString keyPath;
    if (!d->resolve(key, root, keyPath))
        return ERROR_INVALID_HANDLE;
    const QString prefix = keyPath.isEmpty() ? QString() : keyPath + QLatin1Char('\\');
    QSqlQuery q(d->db());
    q.prepare(QStringLiteral("SELECT path FROM keys WHERE root = ? AND substr(lower(path), 1, ?) = lower(?)"
                             " AND instr(substr(path, ? + 1), '\\') = 0 AND length(path) > ?"
                             " ORDER BY path COLLATE NOCASE LIMIT 1 OFFSET ?"));
    q.addBindValue(static_cast<qint64>(root));
    q.addBindValue(prefix.size());
    q.addBindValue(notNull(prefix));
    q.addBindValue(prefix.size());
    q.addBindValue(prefix.size());
    q.addBindValue(index);
    if (!q.exec())
        return ERROR_BADDB;
    if (!q.next())
        return ERROR_NO_MORE_ITEMS;
    *name = q.value(0).toString().mid(prefix.size());
    return ERROR_SUCCESS;
}

} // namespace registry
