#include "platform/store/changewatch.h"

#include "platform/store/database.h"

#include <QSqlDriver>

namespace store {

ChangeWatch::ChangeWatch(const Database &db, QObject *parent) : QObject(parent), m_db(db)
{
    if (m_db.onServer()) {
        QSqlDriver *driver = QSqlDatabase::database(m_db.connectionName(), false).driver();
        driver->subscribeToNotification(QString::fromLatin1(kChangeChannel));
        connect(driver, &QSqlDriver::notification, this,
                [this](const QString &, QSqlDriver::NotificationSource source, const QVariant &) {
                    if (source != QSqlDriver::SelfSource)
                        Q_EMIT changed();
                });
        return;
    }
    m_seen = dataVersion();
    m_timer.setInterval(1500);
    connect(&m_timer, &QTimer::timeout, this, &ChangeWatch::check);
    m_timer.start();
}

void ChangeWatch::check()
{
    if (m_db.onServer())
        return;
    const qint64 now = dataVersion();
    if (now == m_seen)
        return;
    m_seen = now;
    Q_EMIT changed();
}

qint64 ChangeWatch::dataVersion() const
{
    try {
        return m_db.scalar(QStringLiteral("PRAGMA data_version")).toLongLong();
    } catch (const com::ComError &) {
        // A store that can't be read now is told of by the next command.
        return m_seen;
    }
}

} // namespace store
