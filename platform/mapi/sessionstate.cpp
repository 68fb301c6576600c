#include "platform/mapi/sessionstate.h"

#include "platform/mapi/tags.h"

namespace mapi {

QString tagKey(uint32_t tag)
{
    return QStringLiteral("0x%1")
        .arg(tag, 8, 16, QLatin1Char('0'))
        .toUpper()
        .replace(QLatin1String("0X"), QLatin1String("0x"));
}

QSqlQuery &SessionState::query(const QString &sql)
{
    check();
    auto it = m_queries.find(sql);
    if (it == m_queries.end())
        it = m_queries.insert(sql, db->prepare(sql));
    it->finish();
    return *it;
}

void SessionState::check() const
{
    if (!loggedOn || !db)
        throw com::ComError(com::err::NotLoggedOn, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("The session is not logged on."));
}

com::ComError notFound(const QString &what)
{
    return com::ComError(
        com::err::NotFound, QStringLiteral("Collaboration Data Objects"),
        QStringLiteral("[Collaboration Data Objects - [MAPI_E_NOT_FOUND(8004010F)]] %1").arg(what));
}

} // namespace mapi
