#include "platform/mapi/folderscan.h"

#include "platform/mapi/field.h"
#include "platform/mapi/tags.h"

#include <algorithm>
#include <numeric>

namespace mapi {

namespace {

// Plain passes over the tables, in the order the rows are kept: sorting
// here is cheaper than SQLite's lookups through an index.
const QString kFolders =
    QStringLiteral("SELECT f.id, f.store, COALESCE(f.parent, 0), f.seq, f.entry_id, f.name,"
                   " COALESCE(a.access, f.access), f.event_source FROM folders f"
                   " LEFT JOIN folder_access a ON a.folder = f.id AND a.\"user\" = ?"
                   " ORDER BY f.id");

const QString kHidden = QStringLiteral("SELECT m.folder, m.class = ?, m.entry_id, m.subject, h.value"
                                       " FROM messages m LEFT JOIN fields h"
                                       " ON m.class = ? AND h.message = m.id AND h.tag = ?"
                                       " WHERE m.hidden = 1 ORDER BY m.id");

/// Ranges of equal keys in rows that come grouped by that key.
template <class Rows, class KeyOf> QHash<qint64, FolderScan::Range> ranges(const Rows &rows, KeyOf keyOf)
{
    QHash<qint64, FolderScan::Range> out;
    for (qsizetype i = 0; i < rows.size();) {
        const qint64 key = keyOf(rows.at(i));
        qsizetype end = i + 1;
        while (end < rows.size() && keyOf(rows.at(end)) == key)
            ++end;
        out.insert(key, FolderScan::Range{i, end});
        i = end;
    }
    return out;
}

} // namespace

FolderScan::FolderScan(const StatePtr &state)
{
    state->check();
    struct Store {
        QString id, host;
    };
    QHash<qint64, Store> stores;
    {
        QSqlQuery &q = state->run(QStringLiteral("SELECT id, store_id, host FROM stores"), {});
        while (q.next())
            stores.insert(q.value(0).toLongLong(), Store{q.value(1).toString(), q.value(2).toString()});
    }

    QVector<std::pair<qint64, qint64>> keys; // each folder's parent (0 for a root) and place among its siblings
    {
        // The highest row number is a bound on the count that costs no pass.
        QSqlQuery &count = state->run(QStringLiteral("SELECT MAX(id) FROM folders"), {});
        const qsizetype expected = count.next() ? count.value(0).toLongLong() : 0;
        count.finish();
        m_folders.reserve(expected);
        keys.reserve(expected);
        QSqlQuery &q = state->run(kFolders, {state->user});
        while (q.next()) {
            const auto store = stores.constFind(q.value(1).toLongLong());
            if (store == stores.constEnd())
                continue;
            Folder::Row r;
            r.row = q.value(0).toLongLong();
            r.storeRow = store.key();
            r.id = q.value(4).toString();
            r.storeId = store->id; // shared, not a copy per folder
            r.name = q.value(5).toString();
            r.access = static_cast<int>(q.value(6).toLongLong()); // integers come as 64 bits; a narrower read converts
            r.eventSource = q.value(7).toLongLong() != 0;
            r.host = store->host;
            m_folders.append(Folder(state, std::move(r)));
            keys.append({q.value(2).toLongLong(), q.value(3).toLongLong()});
        }
    }
    // Each folder's subfolders side by side, in the store's order: the rows
    // came by row number, which breaks ties of the place. The folders are
    // put in that order where they stand.
    QVector<qsizetype> order(m_folders.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return keys[a] < keys[b]; });
    QVector<qint64> parents(order.size());
    for (qsizetype i = 0; i < order.size(); ++i)
        parents[i] = keys.at(order.at(i)).first;
    keys = {};
    for (qsizetype start = 0; start < order.size(); ++start) {
        if (order.at(start) < 0)
            continue;
        // Follow the cycle through `start`: place i takes the folder at order[i].
        Folder first = std::move(m_folders[start]);
        qsizetype i = start;
        while (order.at(i) != start) {
            const qsizetype from = order.at(i);
            m_folders[i] = std::move(m_folders[from]);
            order[i] = -1;
            i = from;
        }
        m_folders[i] = std::move(first);
        order[i] = -1;
    }
    m_children = ranges(parents, [](qint64 parent) { return parent; });
    for (Folder &folder : m_folders) {
        const Range children = m_children.value(folder.m_row.row);
        folder.m_row.subfolders = static_cast<int>(children.end - children.begin);
    }
    m_rowsRead += m_folders.size();

    QVector<std::pair<qint64, BindingRow>> bindings; // folder's row, binding message
    m_hidden.reserve(m_folders.size());
    {
        QSqlQuery &q = state->run(kHidden, {kBindingClass, kBindingClass, tagKey(PR_HANDLER)});
        while (q.next()) {
            const qint64 folder = q.value(0).toLongLong();
            HiddenCounts &counts = m_hidden[folder];
            ++counts.all;
            ++m_rowsRead;
            if (q.value(1).toLongLong() == 0)
                continue;
            ++counts.bindings;
            bindings.append({folder, BindingRow{q.value(2).toString(), q.value(3).toString(),
                                                fieldValue(q.value(4), PR_HANDLER).toByteArray()}});
        }
    }
    std::stable_sort(bindings.begin(), bindings.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    m_bindingsOf = ranges(bindings, [](const auto &b) { return b.first; });
    m_bindings.reserve(bindings.size());
    for (auto &b : bindings)
        m_bindings.append(std::move(b.second));
}

const Folder *FolderScan::rootFolder(qint64 storeRow) const
{
    const Range roots = m_children.value(0);
    for (qsizetype i = roots.begin; i < roots.end; ++i)
        if (m_folders.at(i).row().storeRow == storeRow)
            return &m_folders.at(i);
    return nullptr;
}

std::span<const Folder> FolderScan::subfolders(const Folder &folder) const
{
    const Range r = m_children.value(folder.row().row);
    return std::span<const Folder>(m_folders.constData() + r.begin, static_cast<size_t>(r.end - r.begin));
}

std::span<const BindingRow> FolderScan::bindings(const Folder &folder) const
{
    const Range r = m_bindingsOf.value(folder.row().row);
    return std::span<const BindingRow>(m_bindings.constData() + r.begin,
                                       static_cast<size_t>(r.end - r.begin));
}

} // namespace mapi
