#pragma once

#include "platform/mapi/folder.h"
#include "platform/mapi/sessionstate.h"

#include <QString>

namespace mapi {

/// A message store of the profile.
class InfoStore {
public:
    InfoStore(StatePtr state, qint64 row, QString id, QString name, QString provider);

    QString Name() const { return m_name; }
    /// The store identifier, as every folder and message of it gives it.
    QString ID() const { return m_id; }
    /// "Microsoft Exchange Server" for the server's stores.
    QString ProviderName() const { return m_provider; }
    /// The folder above the store's top folders.
    Folder RootFolder() const;

    /// The store's row in the store file.
    qint64 row() const { return m_row; }

private:
    StatePtr m_state;
    qint64 m_row;
    QString m_id, m_name, m_provider;
};

} // namespace mapi
