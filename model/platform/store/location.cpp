#include "platform/store/location.h"

#include <QDir>
#include <QUrl>

namespace store {

Location Location::parse(const QString &text)
{
    Location l;
    if (!text.startsWith(QLatin1String("postgresql://")) && !text.startsWith(QLatin1String("postgres://"))) {
        l.path = text;
        return l;
    }
    const QUrl url(text);
    return server(url.host(), url.port(5432), url.path().mid(1), url.userName());
}

Location Location::server(const QString &host, int port, const QString &database, const QString &user)
{
    Location l;
    l.engine = Engine::PostgreSQL;
    l.host = host.isEmpty() ? QStringLiteral("localhost") : host;
    l.port = port > 0 ? port : 5432;
    l.database = database;
    l.user = user;
    return l;
}

QString Location::text() const
{
    if (!onServer())
        return QDir::toNativeSeparators(path);
    QUrl url;
    url.setScheme(QStringLiteral("postgresql"));
    url.setUserName(user);
    url.setHost(host);
    url.setPort(port);
    url.setPath(QLatin1Char('/') + database);
    return url.toString();
}

} // namespace store
