#pragma once

#include "platform/mapi/folder.h"
#include "platform/mapi/message.h"
#include "platform/mapi/sessionstate.h"
#include "platform/mapi/tags.h"

#include <QString>
#include <QVector>

namespace ui {
class Prompter;
}

namespace mapi {

/// A message store of the profile.
class InfoStore {
public:
    InfoStore(StatePtr state, qint64 row, QString id, QString name, QString provider);

    QString Name() const { return m_name; }
    QString ID() const { return m_id; }
    QString ProviderName() const { return m_provider; }
    Folder RootFolder() const;

private:
    StatePtr m_state;
    qint64 m_row;
    QString m_id, m_name, m_provider;
};

/// The mail session: logged on to one profile, whose store it reads and
/// writes for one user.
class Session {
public:
    explicit Session(ui::Prompter &prompter);
    ~Session();

    /// Shows the profile dialog; Cancel raises 0x80040113.
    void Logon();
    /// Logs on to a profile by name, without a dialog.
    void Logon(const QString &profileName);
    /// Logs on to a store file directly, as `user` (tools and tests).
    void LogonStore(const QString &storePath, const QString &user = QString());
    void Logoff();

    QString CurrentUser() const;
    QString Name() const;
    QString Version() const;
    /// The session object that the event configuration objects take.
    StatePtr MAPIOBJECT() const;

    QVector<InfoStore> InfoStores() const;
    /// A folder or message by its identifiers; an empty store identifier
    /// looks in every store. An identifier that names nothing raises
    /// 0x8004010F.
    Folder GetFolder(const QString &id, const QString &storeId) const;
    Message GetMessage(const QString &id, const QString &storeId) const;

private:
    ui::Prompter &m_prompter;
    StatePtr m_state;
};

} // namespace mapi
