#pragma once

#include "platform/ui/prompter.h"

#include <QString>

namespace mapi {

/// A mail profile: a name for a user on a store. Profiles are kept in the
/// registry under the current user, one key each.
struct Profile {
    QString name;
    QString user;
    QString store; ///< path of the store file
};

/// The key under HKEY_CURRENT_USER that holds the profiles.
QString profilesKey();

/// What the profile dialog offers now.
struct ProfileChoice {
    ui::ProfileChoice dialog;
};
ProfileChoice profileChoice();

/// Reads a profile; raises when there is no such profile.
Profile readProfile(const QString &name);

/// Records a profile and makes it the default one.
void writeProfile(const Profile &profile);

/// The demo profile's name.
QString demoProfileName();

/// Makes the demo store from the demo fixture (if not made before) and
/// records the demo profile on it.
void makeDemoProfile(const QString &name);

} // namespace mapi
