#pragma once

#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <memory>

namespace testsupport {

/// A logged-on session with its event configuration object, on a store made
/// from one of the test fixtures in a temporary home.
struct FixtureSession {
    explicit FixtureSession(const QString &fixtureName, const QString &user = QString());

    /// A folder or agent message by its path below the tree's root
    /// ("\Mailbox - Tess Tester\Inbox").
    mapi::Folder folder(const QString &path);
    mapi::Message agentMessage(const QString &path);

    TestHome home;
    QString storePath;
    ui::ScriptedPrompter prompter;
    mapi::Session session{prompter};
    events::Events events;
};

} // namespace testsupport
