#pragma once

#include "platform/mapi/messagelist.h"
#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <cstdint>

namespace mapi {

class FolderList;

/// A folder of a message store. A handle carries the columns it was listed
/// with (name, the user's rights, whether it has an event source, the
/// store's host and whether it has subfolders), so walking thousands of
/// folders costs one query per folder that has subfolders: a snapshot, as
/// the objects of a session are. Its messages are read afresh by each
/// `Messages` and `HiddenMessages` collection.
class Folder {
public:
    struct Row {
        qint64 row = 0;
        qint64 storeRow = 0;
        QString id;
        QString storeId;
        QString name;
        int access = 0; ///< PR_ACCESS of the session's user
        bool eventSource = false;
        QString host;       ///< the event service host of the folder's store
        int subfolders = 0; ///< how many subfolders it had when listed
    };

    Folder(StatePtr state, Row row);

    QString Name() const { return m_row.name; }
    QString ID() const { return m_row.id; }
    QString StoreID() const { return m_row.storeId; }

    /// The subfolders, in the store's order.
    FolderList Folders() const;
    MessageList Messages() const;
    MessageList HiddenMessages() const;

    /// A folder property: PR_ACCESS (0x0FF40003), the session user's rights,
    /// as an int. Any other tag raises 0x8004010F.
    QVariant Fields(uint32_t tag) const;

    /// The parent folder's row, 0 for a store's root folder.
    qint64 parentRow() const;

    const Row &row() const { return m_row; }
    const StatePtr &state() const { return m_state; }

private:
    StatePtr m_state;
    Row m_row;
};

/// The subfolders of a folder.
class FolderList {
public:
    explicit FolderList(QVector<Folder> folders) : m_folders(std::move(folders)) {}

    int Count() const { return static_cast<int>(m_folders.size()); }
    /// From 1; an index outside 1 to Count raises 0x8004010F.
    Folder Item(int index) const;
    auto begin() const { return m_folders.begin(); }
    auto end() const { return m_folders.end(); }

private:
    QVector<Folder> m_folders;
};

/// The folders that meet `where` (on the folder as `f`, its store as `s`:
/// "f.parent = ?"), in the store's order, read with their rights for the
/// session's user.
QVector<Folder> queryFolders(const StatePtr &state, const QString &where, const QVariantList &values);

} // namespace mapi
