#pragma once

#include "platform/com/comerror.h"
#include "platform/store/database.h"
#include "platform/store/statements.h"

#include <QHash>
#include <QSqlQuery>
#include <QString>

#include <memory>

namespace mapi {

/// What every object of one logged-on session shares: the store, the user,
/// and the statements the objects run again and again. Objects hold it by
/// shared pointer, so a folder or message handle costs a pointer and the
/// columns it was read with.
struct SessionState {
    std::unique_ptr<store::Database> db;
    QString user;
    QString profile;
    bool loggedOn = false;

    /// A prepared statement kept for the session's life, finished and ready
    /// for new values. Raises when the session is not logged on.
    QSqlQuery &query(const QString &sql);

    /// The same statement with `values` bound in order, run. A caller that
    /// reads fewer than all rows calls `finish()` on it after, so that the
    /// session's view of the store doesn't stay at that moment.
    QSqlQuery &run(const QString &sql, const QVariantList &values);

    /// `run` for the store's own writes.
    store::RunStatement statements()
    {
        return [this](const QString &sql, const QVariantList &values) -> QSqlQuery & {
            return run(sql, values);
        };
    }

    /// Raises 0x80040111 when the session is not (or no longer) logged on.
    void check() const;

    /// Ends the session: the statements go, then the store is closed.
    void close();

private:
    QHash<QString, QSqlQuery> m_queries;
    int m_session = 0; ///< the store's session that the statements belong to
};

using StatePtr = std::shared_ptr<SessionState>;

/// The source of every error the session's objects raise.
inline const QString kCdoSource = QStringLiteral("Collaboration Data Objects");

/// The error of an identifier or index that names nothing: 0x8004010F.
com::ComError notFound(const QString &what);

} // namespace mapi
