#include "tests/support/storekit.h"

#include "platform/store/fixture.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace testkit {

namespace {

com::ComError setupError(const QString &text)
{
    return com::ComError(com::err::InvalidParameter, QStringLiteral("StoreKit"), text);
}

mapi::Message find(mapi::MessageList list, const QString &subject, const QString &where)
{
    for (const mapi::Message &m : list)
        if (m.Subject() == subject)
            return m;
    throw setupError(QStringLiteral("no message \"%1\" in %2").arg(subject, where));
}

} // namespace

StoreKit::StoreKit(const QByteArray &fixtureJson, const QString &user)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(fixtureJson, &error);
    if (error.error != QJsonParseError::NoError)
        throw setupError(
            QStringLiteral("the test's fixture: %1 at %2").arg(error.errorString()).arg(error.offset));
    storePath = home.file(QStringLiteral("store.db"));
    store::loadFixture(doc.object(), storePath);
    session.LogonStore(storePath, user);
    events.SetSession(session.MAPIOBJECT());
}

mapi::Folder StoreKit::folder(const QString &path)
{
    const QStringList parts = path.mid(1).split(QLatin1Char('\\'));
    for (const mapi::InfoStore &store : session.InfoStores()) {
        if (store.Name() != parts.first())
            continue;
        mapi::Folder current = store.RootFolder();
        for (qsizetype i = 1; i < parts.size(); ++i) {
            bool found = false;
            for (const mapi::Folder &child : current.Folders())
                if (child.Name() == parts.at(i)) {
                    current = child;
                    found = true;
                    break;
                }
            if (!found)
                throw setupError(QStringLiteral("no folder %1").arg(path));
        }
        return current;
    }
    throw setupError(QStringLiteral("no store for %1").arg(path));
}

mapi::Message StoreKit::hidden(const QString &folderPath, const QString &subject, const QString &cls)
{
    mapi::MessageList list = folder(folderPath).HiddenMessages();
    list.Filter().setType(cls);
    return find(list, subject, folderPath);
}

mapi::Message StoreKit::message(const QString &folderPath, const QString &subject)
{
    return find(folder(folderPath).Messages(), subject, folderPath);
}

store::Database &StoreKit::db()
{
    return *session.MAPIOBJECT()->db;
}

qint64 StoreKit::number(const QString &sql, const QVariantList &values)
{
    return db().scalar(sql, values).toLongLong();
}

} // namespace testkit
