#include "platform/mapi/infostore.h"

namespace mapi {

InfoStore::InfoStore(StatePtr state, qint64 row, QString id, QString name, QString provider)
    : m_state(std::move(state)), m_row(row), m_id(std::move(id)), m_name(std::move(name)),
      m_provider(std::move(provider))
{
}

Folder InfoStore::RootFolder() const
{
    const QVector<Folder> roots =
        queryFolders(m_state, QStringLiteral("f.store = ? AND f.parent IS NULL"), {m_row});
    if (roots.isEmpty())
        throw notFound(QStringLiteral("The store %1 has no root folder.").arg(m_name));
    return roots.constFirst();
}

} // namespace mapi
