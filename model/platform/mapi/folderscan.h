#pragma once

#include "platform/mapi/folder.h"
#include "platform/mapi/sessionstate.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <QVector>

#include <span>

namespace mapi {

/// Everything a refresh of the folder tree reads, in one pass over each
/// table: every folder of the session's stores with the user's rights, how
/// many hidden and binding messages each holds, and the binding messages
/// with their handler field. A snapshot, as the session's objects are.
///
/// The folders are kept as columns side by side, numbered from 0 in the
/// order of their rows; their entry IDs in UTF-8 and their names in UTF-16,
/// each end to end in one buffer, so that a million folders take some tens
/// of megabytes and no object each. `folder` makes a handle when one is
/// wanted.
class FolderScan {
public:
    /// A folder's number in the scan; kNone for none.
    using Index = qint32;
    static constexpr Index kNone = -1;

    /// Reads the store; raises as the session's objects do.
    explicit FolderScan(const StatePtr &state);

    qsizetype folderCount() const { return m_row.size(); }

    /// The first of a store's top folders in the store's order, or kNone.
    Index rootFolder(qint64 storeRow) const;
    /// The subfolders of a folder, in the store's order.
    std::span<const Index> subfolders(Index folder) const;
    /// The folder of a row in the store file, or kNone.
    Index find(qint64 row) const;

    /// The entry ID in UTF-8.
    QByteArrayView id(Index folder) const;
    QStringView name(Index folder) const;
    /// The StoreID of the folder's store: one string for all its folders.
    const QString &storeId(Index folder) const { return m_stores.at(m_facts.at(folder).store).id; }
    /// The folder's store, numbered from 0 in the order first met.
    qint32 store(Index folder) const { return m_facts.at(folder).store; }
    /// PR_ACCESS of the session's user.
    int access(Index folder) const { return m_facts.at(folder).access; }
    bool hasEventSource(Index folder) const { return m_facts.at(folder).eventSource; }

    /// A handle on the folder, as the session lists it.
    Folder folder(Index folder) const;

    struct HiddenCounts {
        int all = 0;      ///< hidden messages of any class
        int bindings = 0; ///< of class "IPC.Microsoft.EventBinding"
    };
    HiddenCounts hiddenCounts(Index folder) const { return m_facts.at(folder).hidden; }

    /// A binding message as the folder tree lists it.
    struct Binding {
        QByteArrayView id; ///< the entry ID in UTF-8
        QStringView subject;
        QByteArrayView handler; ///< the handler class field 0x7804001E; empty when there is none
    };
    qsizetype bindingCount() const { return m_bindingFolder.size(); }
    /// The binding messages of a folder, by their number in the order they
    /// were made (see `binding`).
    std::span<const qint32> bindings(Index folder) const;
    Binding binding(qint32 number) const;

    /// The length of every folder's and binding message's entry ID in UTF-8,
    /// and of their names and subjects in UTF-16.
    qsizetype keyBytes() const { return m_ids.size() + m_bindingIds.size(); }
    qsizetype textUnits() const { return m_names.size() + m_subjects.size(); }

    /// The rows read: folders, hidden message counts and binding messages.
    qsizetype rowsRead() const { return m_rowsRead; }

private:
    struct Store {
        qint64 row = 0;
        QString id, host;
    };
    /// Lists of numbers grouped by an owner, side by side.
    struct Groups {
        QVector<qint32> start; ///< per owner and one more: where its list begins
        QVector<qint32> items;
        std::span<const qint32> of(qint32 owner) const;
    };

    Index indexOf(qint64 row) const;
    void readFolders(const StatePtr &state);
    void readHidden(const StatePtr &state);

    StatePtr m_state;
    QVector<Store> m_stores;
    QVector<qint64> m_row;   ///< ascending
    QVector<qint32> m_byRow; ///< from a row number to its folder, while the row numbers are dense
    /// What a walk asks of each folder, side by side: it visits the
    /// folders out of the order of their rows.
    struct Facts {
        qint32 store = 0;
        qint32 access = 0;
        HiddenCounts hidden;
        bool eventSource = false;
    };
    QVector<Facts> m_facts;
    QByteArray m_ids;
    QVector<quint32> m_idEnd;
    QString m_names;
    QVector<quint32> m_nameEnd;
    Groups m_children; ///< the top folders last
    QVector<qint32> m_bindingFolder;
    QByteArray m_bindingIds;
    QVector<quint32> m_bindingIdEnd;
    QString m_subjects;
    QVector<quint32> m_subjectEnd;
    QVector<QByteArray> m_handlers; ///< each handler field once
    QVector<qint32> m_bindingHandler;
    Groups m_bindingsOf;
    qsizetype m_rowsRead = 0;
};

} // namespace mapi
