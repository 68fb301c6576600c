#include "platform/mapi/folder.h"

#include "platform/mapi/tags.h"

namespace mapi {

namespace {
const QString kSelect = QStringLiteral("SELECT f.id, f.store, f.entry_id, s.store_id, f.name, "
                                       "COALESCE(a.access, f.access), f.event_source, s.host"
                                       " FROM folders f JOIN stores s ON s.id = f.store"
                                       " LEFT JOIN folder_access a ON a.folder = f.id AND a.user = ?");
} // namespace

QVector<Folder> queryFolders(const StatePtr &state, const QString &where, const QVariantList &values)
{
    QSqlQuery &q =
        state->query(kSelect + QStringLiteral(" WHERE ") + where + QStringLiteral(" ORDER BY f.seq, f.id"));
    q.addBindValue(state->user);
    for (const QVariant &v : values)
        q.addBindValue(v);
    state->db->exec(q);
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
        folders.append(Folder(state, std::move(r)));
    }
    return folders;
}

Folder::Folder(StatePtr state, Row row) : m_state(std::move(state)), m_row(std::move(row)) {}

FolderList Folder::Folders() const
{
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
    if (tag == PR_ACCESS)
        return m_row.access;
    throw com::ComError(com::err::NotFound, QStringLiteral("Collaboration Data Objects"),
                        QStringLiteral("[Collaboration Data Objects - [MAPI_E_NOT_FOUND(8004010F)]] "
                                       "The folder has no property %1.")
                            .arg(tagKey(tag)));
}

qint64 Folder::parentRow() const
{
    return m_state->db
        ->scalar(QStringLiteral("SELECT COALESCE(parent, 0) FROM folders WHERE id = ?"), {m_row.row})
        .toLongLong();
}

Folder FolderList::Item(int index) const
{
    if (index < 1 || index > m_folders.size())
        throw com::ComError(com::err::NotFound, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("Index %1 is out of range.").arg(index));
    return m_folders.at(index - 1);
}

} // namespace mapi
