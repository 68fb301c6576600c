#include "platform/registry/registry.h"

#include "platform/registry/defaults.h"
#include "platform/registry/registrydb.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlQuery>
#include <QStandardPaths>

#include <atomic>
#include <optional>

namespace registry {

namespace {

QString connectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("sorrelin-registry-%1").arg(counter.fetch_add(1));
}

bool isRoot(HKEY key)
{
    return key == HKEY_CLASSES_ROOT || key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE;
}

/// Bound texts are never NULL: the default value's name is "".
QString notNull(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

/// What a handle stands for: a key row (id 0 for the root itself).
struct OpenKey {
    HKEY root = 0;
    qint64 id = 0;
    QString path;
};

} // namespace

class Registry::Impl {
public:
    QString path;
    QString connection;
    QHash<HKEY, OpenKey> open;
    HKEY nextHandle = 1;

    QSqlDatabase db() const { return QSqlDatabase::database(connection, false); }

    std::optional<OpenKey> resolve(HKEY key) const
    {
        if (isRoot(key))
            return OpenKey{key, 0, QString()};
        const auto it = open.constFind(key);
        if (it == open.constEnd())
            return std::nullopt;
        return *it;
    }

    /// The key behind a handle, with the store open: ERROR_SUCCESS, or the
    /// error that every call gives for an unknown handle or a bad store.
    long begin(HKEY key, OpenKey &out) const
    {
        const std::optional<OpenKey> k = resolve(key);
        if (!k)
            return ERROR_INVALID_HANDLE;
        if (!db().isOpen())
            return ERROR_BADDB;
        out = *k;
        return ERROR_SUCCESS;
    }

    /// As begin, for the key `subKey` below the handle's: `path` is its
    /// full path.
    long beginBelow(HKEY key, const QString &subKey, OpenKey &base, QString &path) const
    {
        const long rc = begin(key, base);
        path = db::normalise(base.path + QLatin1Char('\\') + subKey);
        return rc;
    }

    HKEY handleFor(const OpenKey &key)
    {
        const HKEY h = nextHandle++;
        open.insert(h, key);
        return h;
    }
};

namespace {

QString &systemNoteText()
{
    static QString note;
    return note;
}

/// Moves a damaged registry file (and its journal) aside under a name of
/// its own; false when it can't be moved.
bool moveAside(const QString &file, QString &movedTo)
{
    movedTo = file + QStringLiteral(".damaged-") +
              QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    if (!QFile::rename(file, movedTo))
        return false;
    for (const QString &suffix : {QStringLiteral("-wal"), QStringLiteral("-shm")})
        if (QFileInfo::exists(file + suffix))
            QFile::rename(file + suffix, movedTo + suffix);
    return true;
}

} // namespace

Registry &Registry::system()
{
    // The system's registry lives as long as the process does.
    static const std::unique_ptr<Registry> instance = [] {
        const QString dir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                            QStringLiteral("/sorrelin");
        QDir().mkpath(dir);
        const QString file = dir + QStringLiteral("/registry.db");
        bool fresh = !QFileInfo::exists(file);
        auto r = std::make_unique<Registry>(file);
        if (!r->isOpen()) {
            const QString shown = QDir::toNativeSeparators(file);
            QString movedTo;
            switch (db::diagnose(file)) {
            case db::Trouble::Damaged:
                r.reset();
                if (moveAside(file, movedTo)) {
                    systemNoteText() =
                        QStringLiteral("The settings file %1 was damaged. It has been moved to "
                                       "%2, and Sorrelin starts with new settings.")
                            .arg(shown, QDir::toNativeSeparators(movedTo));
                    fresh = true;
                } else {
                    systemNoteText() =
                        QStringLiteral("The settings file %1 is damaged and could not be moved aside.")
                            .arg(shown);
                }
                r = std::make_unique<Registry>(file);
                break;
            case db::Trouble::Locked:
                systemNoteText() =
                    QStringLiteral("The settings file %1 is locked by another program.").arg(shown);
                break;
            case db::Trouble::Unreadable:
                systemNoteText() =
                    QStringLiteral("The settings file %1 can't be read or written: permission denied.")
                        .arg(shown);
                break;
            case db::Trouble::None:
                systemNoteText() = QStringLiteral("The settings file %1 could not be opened.").arg(shown);
                break;
            }
        }
        if (fresh && r->isOpen())
            fillDesktopDefaults(*r, defaultDesktopLookup());
        return r;
    }();
    return *instance;
}

QString Registry::systemNote()
{
    system();
    return systemNoteText();
}

bool Registry::isOpen() const
{
    return d->db().isOpen();
}

Registry::Registry(const QString &path) : d(std::make_unique<Impl>())
{
    d->path = path;
    d->connection = connectionName();
    db::open(path, d->connection); // a file that can't be opened gives ERROR_BADDB on every call
}

Registry::~Registry()
{
    {
        QSqlDatabase db = d->db();
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
    OpenKey base;
    QString path;
    if (const long rc = d->beginBelow(root, subKey, base, path); rc != ERROR_SUCCESS)
        return rc;
    const QSqlDatabase db = d->db();
    const qint64 id = db::findKey(db, base.root, path);
    if (id == db::kMissing)
        return ERROR_FILE_NOT_FOUND;
    if (id < 0)
        return ERROR_BADDB;
    *result = d->handleFor(OpenKey{base.root, id, path});
    return ERROR_SUCCESS;
}

long Registry::RegCreateKeyEx(HKEY root, const QString &subKey, HKEY *result)
{
    OpenKey base;
    QString path;
    if (const long rc = d->beginBelow(root, subKey, base, path); rc != ERROR_SUCCESS)
        return rc;
    const QSqlDatabase db = d->db();
    // The key and every missing parent, in one transaction.
    db::WriteTransaction transaction(db);
    if (!transaction.isActive())
        return ERROR_BADDB;
    const qint64 id = db::createKey(db, base.root, path);
    if (id < 0 || !transaction.commit())
        return ERROR_ACCESS_DENIED;
    *result = d->handleFor(OpenKey{base.root, id, path});
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
    OpenKey k;
    if (const long rc = d->begin(key, k); rc != ERROR_SUCCESS)
        return rc;
    if (k.id == 0)
        return ERROR_FILE_NOT_FOUND; // a root holds no values
    QSqlQuery q(d->db());
    q.prepare(QStringLiteral("SELECT type, data FROM \"values\" WHERE key = ? AND fold = ?"));
    q.addBindValue(k.id);
    q.addBindValue(db::fold(name));
    if (!q.exec())
        return ERROR_BADDB;
    if (!q.next())
        return ERROR_FILE_NOT_FOUND;
    const QByteArray stored = q.value(1).toByteArray();
    const auto storedSize = static_cast<uint32_t>(stored.size());
    if (type)
        *type = q.value(0).toUInt();
    if (data) {
        if (size && *size < storedSize) {
            *size = storedSize;
            return ERROR_MORE_DATA;
        }
        *data = stored;
    }
    if (size)
        *size = storedSize;
    return ERROR_SUCCESS;
}

long Registry::RegSetValueEx(HKEY key, const QString &name, uint32_t type, const QByteArray &data)
{
    OpenKey k;
    if (const long rc = d->begin(key, k); rc != ERROR_SUCCESS)
        return rc;
    if (k.id == 0)
        return ERROR_ACCESS_DENIED; // no values on a root itself
    // One statement, so one transaction of its own. A value keeps the
    // spelling of its name from when it was first written.
    QSqlQuery q(d->db());
    q.prepare(
        QStringLiteral("INSERT INTO \"values\"(key, name, fold, type, data) VALUES(?, ?, ?, ?, ?)"
                       " ON CONFLICT(key, fold) DO UPDATE SET type = excluded.type, data = excluded.data"));
    q.addBindValue(k.id);
    q.addBindValue(notNull(name));
    q.addBindValue(db::fold(name));
    q.addBindValue(type);
    q.addBindValue(data.isNull() ? QByteArray("") : data);
    return q.exec() ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

long Registry::RegDeleteValue(HKEY key, const QString &name)
{
    OpenKey k;
    if (const long rc = d->begin(key, k); rc != ERROR_SUCCESS)
        return rc;
    QSqlQuery q(d->db());
    q.prepare(QStringLiteral("DELETE FROM \"values\" WHERE key = ? AND fold = ?"));
    q.addBindValue(k.id);
    q.addBindValue(db::fold(name));
    if (!q.exec())
        return ERROR_ACCESS_DENIED;
    return q.numRowsAffected() > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

long Registry::RegDeleteKey(HKEY key, const QString &subKey)
{
    OpenKey base;
    QString path;
    if (const long rc = d->beginBelow(key, subKey, base, path); rc != ERROR_SUCCESS)
        return rc;
    const QSqlDatabase db = d->db();
    db::WriteTransaction transaction(db);
    if (!transaction.isActive())
        return ERROR_BADDB;
    const qint64 id = db::findKey(db, base.root, path);
    if (id == db::kMissing)
        return ERROR_FILE_NOT_FOUND;
    if (id <= 0)
        return id == 0 ? ERROR_ACCESS_DENIED : ERROR_BADDB;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT 1 FROM keys WHERE parent = ? LIMIT 1"));
    q.addBindValue(id);
    if (!q.exec() || q.next())
        return ERROR_ACCESS_DENIED;
    for (const QString &sql : {QStringLiteral("DELETE FROM \"values\" WHERE key = ?"),
                               QStringLiteral("DELETE FROM keys WHERE id = ?")}) {
        q.prepare(sql);
        q.addBindValue(id);
        if (!q.exec())
            return ERROR_ACCESS_DENIED;
    }
    return transaction.commit() ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

long Registry::RegEnumKeyEx(HKEY key, uint32_t index, QString *name)
{
    OpenKey k;
    if (const long rc = d->begin(key, k); rc != ERROR_SUCCESS)
        return rc;
    QSqlQuery q(d->db());
    q.prepare(
        QStringLiteral("SELECT path FROM keys WHERE root = ? AND parent = ? ORDER BY fold LIMIT 1 OFFSET ?"));
    q.addBindValue(static_cast<qint64>(k.root));
    q.addBindValue(k.id);
    q.addBindValue(index);
    if (!q.exec())
        return ERROR_BADDB;
    if (!q.next())
        return ERROR_NO_MORE_ITEMS;
    const QString path = q.value(0).toString();
    *name = path.mid(path.lastIndexOf(QLatin1Char('\\')) + 1);
    return ERROR_SUCCESS;
}

} // namespace registry
