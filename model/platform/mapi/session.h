#pragma once

#include "platform/mapi/field.h"
#include "platform/mapi/folder.h"
#include "platform/mapi/infostore.h"
#include "platform/mapi/message.h"
#include "platform/mapi/messagelist.h"
#include "platform/mapi/sessionstate.h"
#include "platform/mapi/tags.h"
#include "platform/store/agentchanges.h"

#include <QString>
#include <QVector>

#include <memory>

namespace store {
class StoreWatch;
}
namespace ui {
class Prompter;
}

namespace mapi {

/// The mail session: logged on to one profile, whose store it reads and
/// writes for one user. Every object it gives out shares its state; after
/// `Logoff` they all raise 0x80040111.
class Session {
public:
    /// `prompter` shows the profile dialog of `Logon()`.
    explicit Session(ui::Prompter &prompter);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// Shows the profile dialog and logs on to the chosen profile; Cancel
    /// raises 0x80040113. With no profile yet the dialog offers the demo
    /// profile, which is then made. A store that can't be opened raises the
    /// store's error.
    void Logon();
    /// Logs on to a profile by name, without a dialog; an unknown profile
    /// raises 0x8004010F.
    void Logon(const QString &profileName);
    /// Logs on to a store file directly, as `user` (the store's own user
    /// when empty); for tools and tests. A session for reading only may
    /// list a store that it can't write.
    void LogonStore(const QString &storePath, const QString &user = QString(),
                    store::Database::Access access = store::Database::Access::ReadWrite);
    void Logoff();

    /// The user's display name.
    QString CurrentUser() const;
    /// The profile's name.
    QString Name() const;
    /// Whether the store may only be read: every write is refused.
    bool ReadOnly() const;
    /// The version of the object library.
    QString Version() const;
    /// The session object that events::Events::SetSession takes.
    StatePtr MAPIOBJECT() const;

    /// The stores of the profile, in the profile's order.
    QVector<InfoStore> InfoStores() const;
    /// A folder or message by its identifiers; an empty (Null) store
    /// identifier looks in every store. An identifier that names nothing
    /// there raises 0x8004010F.
    Folder GetFolder(const QString &id, const QString &storeId) const;
    Message GetMessage(const QString &id, const QString &storeId) const;

    /// One write transaction over the steps that follow, until it commits or
    /// goes: what several objects write for one agent lands whole or not at
    /// all, even when the program is killed meanwhile.
    std::unique_ptr<store::Database::Transaction> BeginTransaction();
    /// One snapshot of the store for the reads that follow, until it goes:
    /// a long walk reads a store that stands still, and faster.
    std::unique_ptr<store::Database::Transaction> BeginRead();

    /// The last change of the agent whose binding message is `entryId`.
    store::AgentChange AgentChange(const QString &entryId) const;
    /// The same inside a transaction of BeginTransaction, held against
    /// other programs' writes until that transaction ends.
    store::AgentChange HoldAgentChange(const QString &entryId);

    /// Tells `observer` when a write starts and stops waiting for another
    /// program's lock on the store.
    void SetBusyObserver(store::BusyObserver observer);
    /// Tells `observer` of each failure because the store is gone.
    void SetLossObserver(store::LossObserver observer);
    /// Lets the next read or write try once to reach a lost store again.
    void RetryLostStore();
    /// A watch that tells when another program writes to the store; it
    /// ends quietly with the session's store.
    std::unique_ptr<store::StoreWatch> WatchStore() const;

private:
    ui::Prompter &m_prompter;
    StatePtr m_state;
};

} // namespace mapi
