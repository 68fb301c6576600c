#pragma once

#include <QString>

namespace mapi {

/// A profile as the profile editor holds it: the fields as typed, for a
/// store file or for a store on a PostgreSQL server.
struct ProfileDraft {
    QString name;
    QString user;
    bool onServer = false;
    QString file;
    QString host;
    QString port = QStringLiteral("5432");
    QString database;
    QString login;
};

/// Why a draft can't be recorded: a short message, and beneath it the cause
/// in the store's own words where the store is the trouble.
struct ProfileRefusal {
    QString text;
    QString detail;
    bool refused() const { return !text.isEmpty(); }
};

/// The draft of the recorded profile `name`; raises 0x8004010F when there
/// is no such profile.
ProfileDraft profileDraft(const QString &name);

/// Checks a draft before anything is written: a name and a user, a name no
/// other profile has (`editing` is the profile being edited, empty for a
/// new one), the store's fields, and last a read-only open of the store.
/// The refusal is empty when the draft may be recorded.
ProfileRefusal checkProfile(const ProfileDraft &draft, const QString &editing);

/// Records a checked draft and makes it the default profile. A profile
/// edited under a new name is renamed: its old key goes.
void saveProfile(const ProfileDraft &draft, const QString &editing);

} // namespace mapi
