#pragma once

#include "platform/mapi/message.h"
#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <cstdint>

namespace mapi {

class FolderList;

/// A folder of a message store. A folder keeps what it was listed with
/// (name, rights, whether it has an event source): a snapshot, as the
/// objects of a session are.
class Folder {
public:
    struct Row {
        qint64 row = 0;
        qint64 storeRow = 0;
        QString id;
        QString storeId;
        QString name;
        int access = 0;
        bool eventSource = false;
        QString host;
    };

    Folder(StatePtr state, Row row);

    QString Name() const { return m_row.name; }
    QString ID() const { return m_row.id; }
    QString StoreID() const { return m_row.storeId; }

    FolderList Folders() const;
    MessageList Messages() const;
    MessageList HiddenMessages() const;

    /// A folder property: PR_ACCESS (the logged-on user's rights) as a number.
    QVariant Fields(uint32_t tag) const;

    /// The parent folder's row, 0 for a store's root folder.
    qint64 parentRow() const;

    const Row &row() const { return m_row; }
    const StatePtr &state() const { return m_state; }

private:
    StatePtr m_state;
    Row m_row;
};

/// The subfolders of a folder, in the store's order.
class FolderList {
public:
    explicit FolderList(QVector<Folder> folders) : m_folders(std::move(folders)) {}

    int Count() const { return static_cast<int>(m_folders.size()); }
    /// From 1.
    Folder Item(int index) const;
    auto begin() const { return m_folders.begin(); }
    auto end() const { return m_folders.end(); }

private:
    QVector<Folder> m_folders;
};

/// Reads one folder by the condition `where` ("f.id = ?", ...).
QVector<Folder> queryFolders(const StatePtr &state, const QString &where, const QVariantList &values);

} // namespace mapi
