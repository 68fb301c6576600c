#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class QSqlDatabase;

namespace store {

class Connection;
class Database;

/// Watches a store for the writes of other programs while this one shows
/// it: on a store file, SQLite's data version, which only another
/// connection's commit moves; on a server, the notice that every write
/// transaction sends, less those of this program's own session. What this
/// program writes itself is never news. The watch ends quietly with the
/// store it watches.
class StoreWatch : public QObject {
    Q_OBJECT

public:
    explicit StoreWatch(const Database &db, QObject *parent = nullptr);
    ~StoreWatch() override;

    /// Looks at a store file now (as the window becomes active) instead of
    /// at the next tick.
    void check();
    /// What the store holds now is what the program shows: only writes
    /// after this one are news.
    void reset();

Q_SIGNALS:
    /// Another program wrote to the store since the last reset.
    void changed();

private:
    /// Listens on the session that the server store's connection has now
    /// (a new one after a lost server was reached again).
    void listen(QSqlDatabase &db);

    std::weak_ptr<Connection> m_connection;
    bool m_onServer = false;
    QTimer m_timer;
    qint64 m_version = -1;
    /// The connection whose server session is listened to.
    QString m_listening;
};

} // namespace store
