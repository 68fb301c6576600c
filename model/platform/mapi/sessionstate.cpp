#include "platform/mapi/sessionstate.h"

namespace mapi {

QSqlQuery &SessionState::query(const QString &sql)
{
    check();
    // A store reached again after it was lost has none of the old statements.
    if (const int session = db->sessionNumber(); session != m_session) {
        m_queries.clear();
        m_session = session;
    }
    auto it = m_queries.find(sql);
    if (it == m_queries.end())
        it = m_queries.insert(sql, db->prepare(sql));
    it->finish();
    return *it;
}

QSqlQuery &SessionState::run(const QString &sql, const QVariantList &values)
{
    QSqlQuery &q = query(sql);
    for (const QVariant &v : values)
        q.addBindValue(v);
    db->exec(q);
    return q;
}

void SessionState::check() const
{
    if (!loggedOn || !db)
        throw com::ComError(com::err::NotLoggedOn, kCdoSource,
                            QStringLiteral("[Collaboration Data Objects - [MAPI_E_NOT_INITIALIZED(80040111)]]"
                                           " The session is not logged on."));
}

void SessionState::close()
{
    loggedOn = false;
    // The statements belong to the store's connection and must go first.
    m_queries.clear();
    db.reset();
}

com::ComError notFound(const QString &what)
{
    return com::ComError(
        com::err::NotFound, kCdoSource,
        QStringLiteral("[Collaboration Data Objects - [MAPI_E_NOT_FOUND(8004010F)]] %1").arg(what));
}

} // namespace mapi
