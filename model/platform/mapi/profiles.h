#pragma once

#include "platform/ui/prompter.h"

#include <QString>

namespace mapi {

/// A mail profile: a name for a user on a store. Profiles are kept in the
/// registry as the mail system keeps them: one key each under
/// HKEY_CURRENT_USER `profilesKey()`, with REG_SZ values "User" and "Store"
/// (the store file's path), and "DefaultProfile" on the Profiles key. A
/// store on a PostgreSQL server is kept as "Server", "Port", "Database" and
/// "Login" (the server's user) instead of "Store"; its password never is.
struct Profile {
    QString name;
    QString user;
    QString store; ///< a store file, or a server location (store::Location)
};

/// The key under HKEY_CURRENT_USER that holds the profiles.
QString profilesKey();

/// The demo profile's name.
QString demoProfileName();

/// What the profile dialog offers now: the known profiles and the default
/// one; with no profile at all, the demo profile.
ui::ProfileChoice profileChoice();

/// Reads a profile; raises 0x8004010F when there is no such profile.
Profile readProfile(const QString &name);

/// Records a profile and makes it the default one.
void writeProfile(const Profile &profile);

/// Removes a profile's key; the default profile is left as it was.
void deleteProfile(const QString &name);

/// Makes the demo store from the demo fixture, in the user's data folder
/// (unless it is there already), and records the profile `name` on it.
void makeDemoProfile(const QString &name);

} // namespace mapi
