#include "platform/store/storewatch.h"

#include "platform/store/database.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>

namespace store {

namespace {

/// How often the watch looks at a store file, and at whether the server
/// session it listens to is still the connection's.
constexpr int kTickMs = 1000;

/// The version of a store file, which only another connection's commit
/// moves; -1 when it can't be read now.
qint64 fileVersion(QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA data_version")) || !q.next())
        return -1;
    return q.value(0).toLongLong();
}

} // namespace

StoreWatch::StoreWatch(const Database &db, QObject *parent)
    : QObject(parent), m_connection(db.connection()), m_onServer(db.onServer())
{
    connect(&m_timer, &QTimer::timeout, this, &StoreWatch::check);
    m_timer.start(kTickMs);
    reset();
    check();
}

StoreWatch::~StoreWatch() = default;

void StoreWatch::check()
{
    const std::shared_ptr<Connection> connection = m_connection.lock();
    if (!connection) {
        m_timer.stop();
        return;
    }
    // Nothing is read while the program's own transaction is open (the
    // store it sees then is its own), nor from a server that is away.
    if (connection->depth > 0 || connection->lost)
        return;
    QSqlDatabase db = QSqlDatabase::database(connection->name(), false);
    if (!db.isOpen())
        return;
    if (m_onServer) {
        if (m_listening != connection->name())
            listen(db);
        return;
    }
    const qint64 version = fileVersion(db);
    if (version < 0)
        return;
    if (m_version >= 0 && version != m_version)
        Q_EMIT changed();
    m_version = version;
}

void StoreWatch::reset()
{
    const std::shared_ptr<Connection> connection = m_connection.lock();
    if (!connection || m_onServer)
        return;
    QSqlDatabase db = QSqlDatabase::database(connection->name(), false);
    m_version = db.isOpen() ? fileVersion(db) : -1;
}

void StoreWatch::listen(QSqlDatabase &db)
{
    // One try a session: a server that refuses to listen is asked again
    // only in the next one.
    m_listening = db.connectionName();
    QSqlDriver *driver = db.driver();
    if (!driver->subscribeToNotification(Database::changeChannel()))
        return;
    connect(driver, &QSqlDriver::notification, this,
            [this](const QString &, QSqlDriver::NotificationSource source, const QVariant &) {
                if (source != QSqlDriver::SelfSource)
                    Q_EMIT changed();
            });
}

} // namespace store
