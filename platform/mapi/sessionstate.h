#pragma once

#include "platform/store/database.h"

#include <QHash>
#include <QSqlQuery>
#include <QString>

#include <memory>

namespace mapi {

/// What every object of one logged-on session shares: the store, the user,
/// and the statements the objects run again and again.
struct SessionState {
    std::unique_ptr<store::Database> db;
    QString user;
    QString profile;
    bool loggedOn = false;

    /// A prepared statement kept for the session's life.
    QSqlQuery &query(const QString &sql);

    /// Raises when the session has been logged off.
    void check() const;

private:
    QHash<QString, QSqlQuery> m_queries;
};

using StatePtr = std::shared_ptr<SessionState>;

/// The error of an identifier that names nothing.
com::ComError notFound(const QString &what);

} // namespace mapi
