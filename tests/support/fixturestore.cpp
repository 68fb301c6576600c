#include "tests/support/fixturestore.h"

#include "platform/store/fixture.h"

namespace testsupport {

FixtureSession::FixtureSession(const QString &fixtureName, const QString &user)
{
    storePath = home.file(QStringLiteral("store.db"));
    store::loadFixture(fixture(fixtureName), storePath);
    session.LogonStore(storePath, user);
    events.SetSession(session.MAPIOBJECT());
}

mapi::Folder FixtureSession::folder(const QString &path)
{
    const QStringList parts = path.mid(1).split(QLatin1Char('\\'));
    for (const mapi::InfoStore &store : session.InfoStores()) {
        if (store.Name() != parts.first())
            continue;
        mapi::Folder current = store.RootFolder();
        for (int i = 1; i < parts.size(); ++i) {
            bool found = false;
            for (const mapi::Folder &child : current.Folders())
                if (child.Name() == parts.at(i)) {
                    current = child;
                    found = true;
                    break;
                }
            if (!found)
                throw com::ComError(1, QStringLiteral("test"), QStringLiteral("no folder ") + path);
        }
        return current;
    }
    throw com::ComError(1, QStringLiteral("test"), QStringLiteral("no store for ") + path);
}

mapi::Message FixtureSession::agentMessage(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('\\'));
    mapi::MessageList hidden = folder(path.left(slash)).HiddenMessages();
    hidden.Filter().setType(mapi::kBindingClass);
    for (const mapi::Message &m : hidden)
        if (m.Subject() == path.mid(slash + 1))
            return m;
    throw com::ComError(1, QStringLiteral("test"), QStringLiteral("no agent ") + path);
}

} // namespace testsupport
