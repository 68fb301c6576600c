#pragma once

#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace testkit {

/// A store made from a fixture that the test spells out, in a temporary
/// home, with a session logged on to it and the event configuration root
/// given that session.
class StoreKit {
public:
    /// `fixtureJson`: the store in the fixture format. `user`: who logs on
    /// (the fixture's user when empty).
    explicit StoreKit(const QByteArray &fixtureJson, const QString &user = QString());

    testsupport::TestHome home;
    QString storePath;
    ui::ScriptedPrompter prompter;
    mapi::Session session{prompter};
    events::Events events;

    /// A folder by its path below the tree's root: "\Mailbox - Tess\Inbox".
    mapi::Folder folder(const QString &path);
    /// The first hidden message of `cls` with that subject in a folder.
    mapi::Message hidden(const QString &folderPath, const QString &subject,
                         const QString &cls = mapi::kBindingClass);
    /// The first ordinary message with that subject in a folder.
    mapi::Message message(const QString &folderPath, const QString &subject);

    /// The session's own store connection, for checks and setup in SQL.
    store::Database &db();
    /// The first column of the first row of `sql`, as a number.
    qint64 number(const QString &sql, const QVariantList &values = {});
};

/// The error number `f` raises, or 0 when it raises nothing.
template <class F> int32_t errorOf(F &&f)
{
    try {
        f();
    } catch (const com::ComError &e) {
        return e.number();
    }
    return 0;
}

} // namespace testkit
