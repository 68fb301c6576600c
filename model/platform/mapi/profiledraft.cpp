#include "platform/mapi/profiledraft.h"

#include "platform/com/comerror.h"
#include "platform/mapi/profiles.h"
#include "platform/store/database.h"
#include "platform/store/location.h"

namespace mapi {

namespace {

bool sameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/// The port as typed, or 0 when it is no port.
int portOf(const QString &text)
{
    bool ok = false;
    const int port = text.trimmed().toInt(&ok);
    return ok && port > 0 && port <= 65535 ? port : 0;
}

QString storeOf(const ProfileDraft &draft)
{
    if (!draft.onServer)
        return draft.file.trimmed();
    return store::Location::server(draft.host.trimmed(), portOf(draft.port), draft.database.trimmed(),
                                   draft.login.trimmed())
        .text();
}

} // namespace

ProfileDraft profileDraft(const QString &name)
{
    const Profile profile = readProfile(name);
    const store::Location location = store::Location::parse(profile.store);
    ProfileDraft draft;
    draft.name = profile.name;
    draft.user = profile.user;
    draft.onServer = location.onServer();
    if (draft.onServer) {
        draft.host = location.host;
        draft.port = QString::number(location.port);
        draft.database = location.database;
        draft.login = location.user;
    } else {
        draft.file = location.path;
    }
    return draft;
}

ProfileRefusal checkProfile(const ProfileDraft &draft, const QString &editing)
{
    const QString name = draft.name.trimmed();
    if (name.isEmpty())
        return {QStringLiteral("Enter a name for the profile."), {}};
    if (name.contains(QLatin1Char('\\')))
        return {QStringLiteral("A profile name can't contain \"\\\"."), {}};
    if (draft.user.trimmed().isEmpty())
        return {QStringLiteral("Enter the name of the profile's user."), {}};
    for (const QString &other : profileChoice().profiles)
        if (sameName(other, name) && !sameName(other, editing))
            return {QStringLiteral("There is already a profile named \"%1\".").arg(other), {}};
    if (!draft.onServer && draft.file.trimmed().isEmpty())
        return {QStringLiteral("Enter the store file of the profile."), {}};
    if (draft.onServer && (draft.host.trimmed().isEmpty() || draft.database.trimmed().isEmpty() ||
                           draft.login.trimmed().isEmpty()))
        return {QStringLiteral("Enter the server's host, database and login."), {}};
    if (draft.onServer && portOf(draft.port) == 0)
        return {QStringLiteral("The port must be a number from 1 to 65535."), {}};
    try {
        store::Database::open(storeOf(draft), store::Database::Access::ReadOnly);
    } catch (const com::ComError &e) {
        return {QStringLiteral("The store of the profile can't be opened."), e.description()};
    }
    return {};
}

void saveProfile(const ProfileDraft &draft, const QString &editing)
{
    const Profile profile{draft.name.trimmed(), draft.user.trimmed(), storeOf(draft)};
    const bool renamed = !editing.isEmpty() && editing != profile.name;
    // A change of case alone names the same key: it goes first, so that the
    // new spelling is the one recorded.
    if (renamed && sameName(editing, profile.name))
        deleteProfile(editing);
    writeProfile(profile);
    if (renamed && !sameName(editing, profile.name))
        deleteProfile(editing);
}

} // namespace mapi
