#pragma once

#include "platform/mapi/folder.h"
#include "platform/mapi/sessionstate.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <span>

namespace mapi {

/// A binding message as the folder tree lists it.
struct BindingRow {
    QString id;
    QString subject;
    QByteArray handler; ///< the handler class field 0x7804001E; empty when there is none
};

/// Everything a refresh of the folder tree reads, in one pass over each
/// table: every folder of the session's stores with the user's rights, how
/// many hidden and binding messages each holds, and the binding messages
/// with their handler field. The folders are ordinary folder handles that
/// were handed their values. A snapshot, as the session's objects are.
class FolderScan {
public:
    /// Reads the store; raises as the session's objects do.
    explicit FolderScan(const StatePtr &state);

    /// The folder above a store's top folders, or null when it has none.
    const Folder *rootFolder(qint64 storeRow) const;
    /// The subfolders of a folder, in the store's order.
    std::span<const Folder> subfolders(const Folder &folder) const;

    struct HiddenCounts {
        int all = 0;      ///< hidden messages of any class
        int bindings = 0; ///< of class "IPC.Microsoft.EventBinding"
    };
    HiddenCounts hiddenCounts(const Folder &folder) const { return m_hidden.value(folder.row().row); }

    /// The binding messages of a folder in the order they were made.
    std::span<const BindingRow> bindings(const Folder &folder) const;

    qsizetype folderCount() const { return m_folders.size(); }
    qsizetype bindingCount() const { return m_bindings.size(); }

    /// The rows read: folders, hidden message counts and binding messages.
    qsizetype rowsRead() const { return m_rowsRead; }

    /// Rows `begin` up to `end` of a list.
    struct Range {
        qsizetype begin = 0;
        qsizetype end = 0;
    };

private:
    QVector<Folder> m_folders; ///< by parent, then in the store's order
    QHash<qint64, Range> m_children;
    QHash<qint64, HiddenCounts> m_hidden;
    QVector<BindingRow> m_bindings; ///< by folder, then in the order made
    QHash<qint64, Range> m_bindingsOf;
    qsizetype m_rowsRead = 0;
};

} // namespace mapi
