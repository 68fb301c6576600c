#include "platform/mapi/folder.h"

#include "platform/mapi/tags.h"

namespace mapi {

namespace {
// The user's own access row, if there is one, overrides the folder's.
const QString kSelect = QStringLiteral("SELECT f.id, f.store, f.entry_id, s.store_id, f.name,"
                                       " COALESCE(a.access, f.access), f.event_source, s.host,"
                                       " (SELECT COUNT(*) FROM folders c WHERE c.parent = f.id)"
                                       " FROM folders f JOIN stores s ON s.id = f.store"
                                       " LEFT JOIN folder_access a ON a.folder = f.id AND a.\"user\" = ?");
} // namespace

QVector<Folder> queryFolders(const StatePtr &state, const QString &where, const QVariantList &values)
{
    QSqlQuery &q =
        state->run(kSelect + QStringLiteral(" WHERE ") + where + QStringLiteral(" ORDER BY f.seq, f.id"),
                   QVariantList{state->user} + values);
    QVector<Folder> folders;
    while (q.next()) {
        Folder::Row r;
        r.row = q.value(0).toLongLong();
        r.storeRow = q.value(1).toLongLong();
        r.id = q.value(2).toString();
        r.storeId = q.value(3).toString();
        r.name = q.value(4).toString();
        r.access = q.value(5).toInt();
        r.eventSource = q.value(6).toInt() != 0;
        r.host = q.value(7).toString();
        r.subfolders = q.value(8).toInt();
        folders.append(Folder(state, std::move(r)));
    }
    return folders;
}

Folder::Folder(StatePtr state, Row row) : m_state(std::move(state)), m_row(std::move(row)) {}

FolderList Folder::Folders() const
{
    if (m_row.subfolders == 0) {
        m_state->check();
        return FolderList({});
    }
    return FolderList(queryFolders(m_state, QStringLiteral("f.parent = ?"), {m_row.row}));
}

MessageList Folder::Messages() const
{
    m_state->check();
    return MessageList(m_state, m_row.row, false);
}

MessageList Folder::HiddenMessages() const
{
    m_state->check();
    return MessageList(m_state, m_row.row, true);
}

QVariant Folder::Fields(uint32_t tag) const
{
    m_state->check();
    if (tag == PR_ACCESS)
        return m_row.access;
    throw notFound(QStringLiteral("The folder has no property %1.").arg(tagKey(tag)));
}

qint64 Folder::parentRow() const
{
    QSqlQuery &q = m_state->run(QStringLiteral("SELECT parent FROM folders WHERE id = ?"), {m_row.row});
    const qint64 parent = q.next() ? q.value(0).toLongLong() : 0;
    q.finish();
    return parent;
}

Folder FolderList::Item(int index) const
{
    if (index < 1 || index > m_folders.size())
        throw notFound(QStringLiteral("The collection has no item %1.").arg(index));
    return m_folders.at(index - 1);
}

} // namespace mapi
