#pragma once

#include <QObject>
#include <QTimer>

namespace store {

class Database;

/// Watches a store for what other programs commit to it: a store file by
/// its data version, read every second and a half and on `check()`; a
/// server store by the notices that every write sends.
class ChangeWatch : public QObject {
    Q_OBJECT

public:
    /// `db` must outlive the watch.
    ChangeWatch(const Database &db, QObject *parent);

    /// Looks now (the window became active, say).
    void check();

Q_SIGNALS:
    /// Another program committed a change since the watch began or last told.
    void changed();

private:
    qint64 dataVersion() const;

    const Database &m_db;
    QTimer m_timer;
    qint64 m_seen = 0;
};

/// The notice channel of server stores, which every write transaction sends.
inline constexpr char kChangeChannel[] = "sorrelin_store_changed";

} // namespace store
