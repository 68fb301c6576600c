#include "platform/mapi/folderscan.h"

#include "platform/mapi/field.h"
#include "platform/mapi/tags.h"

#include <QHash>
#include <QStringEncoder>

#include <algorithm>

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

/// `sql` with `values` bound, run for one pass over its rows: a server
/// sends them one by one, so nothing may run on the store until the last.
QSqlQuery streamed(const StatePtr &state, const QString &sql, const QVariantList &values)
{
    state->check();
    QSqlQuery q = state->db->prepare(sql, store::Database::Rows::Streamed);
    for (const QVariant &v : values)
        q.addBindValue(v);
    state->db->exec(q);
    return q;
}

/// Appends `text` to `out` in UTF-8 and the new end to `ends`; entry IDs
/// are ASCII, which is copied as is.
void appendUtf8(QByteArray &out, QVector<quint32> &ends, QStringView text)
{
    const qsizetype at = out.size();
    out.resize(at + text.size());
    char *to = out.data() + at;
    for (const QChar c : text) {
        if (c.unicode() >= 0x80) {
            QStringEncoder encoder(QStringEncoder::Utf8);
            out.resize(at + encoder.requiredSpace(text.size()));
            out.truncate(encoder.appendToBuffer(out.data() + at, text) - out.constData());
            break;
        }
        *to++ = char(c.unicode());
    }
    ends.append(quint32(out.size()));
}

void append(QString &out, QVector<quint32> &ends, const QString &text)
{
    out.append(text);
    ends.append(quint32(out.size()));
}

/// Item `i` of strings kept end to end.
template <class View, class Buffer> View slice(const Buffer &all, const QVector<quint32> &ends, qint32 i)
{
    const quint32 begin = i == 0 ? 0 : ends.at(i - 1);
    return View(all.constData() + begin, ends.at(i) - begin);
}

/// A bound for reserving, which a store with sparse row numbers can't blow up.
qsizetype expectedRows(const StatePtr &state, const QString &table)
{
    QSqlQuery &q = state->run(QStringLiteral("SELECT MAX(id) FROM %1").arg(table), {});
    const qint64 highest = q.next() ? q.value(0).toLongLong() : 0;
    q.finish();
    return qsizetype(std::clamp<qint64>(highest, 0, qint64(1) << 22));
}

/// The numbers 0 to owner.size() - 1 grouped by their owner (none when
/// negative), each group in ascending order.
template <class G> G groupBy(const QVector<qint32> &owner, qsizetype owners)
{
    G g;
    g.start.fill(0, owners + 1);
    for (const qint32 o : owner)
        if (o >= 0)
            ++g.start[o + 1];
    for (qsizetype i = 1; i < g.start.size(); ++i)
        g.start[i] += g.start.at(i - 1);
    g.items.resize(g.start.last());
    QVector<qint32> next(g.start.cbegin(), g.start.cend() - 1);
    for (qint32 i = 0; i < owner.size(); ++i)
        if (owner.at(i) >= 0)
            g.items[next[owner.at(i)]++] = i;
    return g;
}

} // namespace

std::span<const qint32> FolderScan::Groups::of(qint32 owner) const
{
    if (owner < 0 || owner + 1 >= start.size())
        return {};
    return std::span<const qint32>(items.constData() + start.at(owner),
                                   size_t(start.at(owner + 1) - start.at(owner)));
}

FolderScan::FolderScan(const StatePtr &state) : m_state(state)
{
    state->check();
    readFolders(state);
    readHidden(state);
}

void FolderScan::readFolders(const StatePtr &state)
{
    QHash<qint64, qint32> storeOf;
    {
        QSqlQuery &q = state->run(QStringLiteral("SELECT id, store_id, host FROM stores"), {});
        while (q.next()) {
            storeOf.insert(q.value(0).toLongLong(), qint32(m_stores.size()));
            m_stores.append(Store{q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toString()});
        }
    }

    QVector<qint64> parents,
        places; // each folder's parent's row (0 for a top folder) and place among its siblings
    const qsizetype expected = expectedRows(state, QStringLiteral("folders"));
    m_facts.reserve(expected);
    for (auto *column : {&m_row, &parents, &places})
        column->reserve(expected);
    m_idEnd.reserve(expected);
    m_nameEnd.reserve(expected);
    {
        QSqlQuery q = streamed(state, kFolders, {state->user});
        while (q.next()) {
            const auto store = storeOf.constFind(q.value(1).toLongLong());
            if (store == storeOf.constEnd())
                continue;
            m_row.append(q.value(0).toLongLong());
            parents.append(q.value(2).toLongLong());
            places.append(q.value(3).toLongLong());
            appendUtf8(m_ids, m_idEnd, q.value(4).toString());
            append(m_names, m_nameEnd, q.value(5).toString());
            // Integers come as 64 bits; a narrower read converts.
            m_facts.append(Facts{*store, qint32(q.value(6).toLongLong()), {}, q.value(7).toLongLong() != 0});
        }
    }
    m_rowsRead += m_row.size();

    // The rows came by row number: where those are dense, a table finds a
    // row's folder without a search.
    const auto n = qint32(m_row.size());
    if (n > 0 && m_row.first() >= 0 && m_row.last() < 4 * qint64(n) + 1024) {
        m_byRow.fill(kNone, m_row.last() + 1);
        for (qint32 i = 0; i < n; ++i)
            m_byRow[m_row.at(i)] = i;
    }

    // Each folder's subfolders side by side in the store's order: by place,
    // ties by row number. The top folders' list comes last.
    QVector<qint32> owner(n);
    for (qint32 i = 0; i < n; ++i)
        owner[i] = parents.at(i) == 0 ? n : indexOf(parents.at(i));
    parents = {};
    m_children = groupBy<Groups>(owner, n + 1);
    for (qint32 p = 0; p <= n; ++p) {
        const auto begin = m_children.items.begin() + m_children.start.at(p);
        const auto end = m_children.items.begin() + m_children.start.at(p + 1);
        if (end - begin > 1)
            std::sort(begin, end, [&](qint32 a, qint32 b) {
                return std::pair(places.at(a), a) < std::pair(places.at(b), b);
            });
    }
}

void FolderScan::readHidden(const StatePtr &state)
{
    const auto n = qint32(m_row.size());
    QHash<QByteArray, qint32> handlerOf;
    qint64 lastRow = 0;
    Index last = kNone;
    QSqlQuery q = streamed(state, kHidden, {kBindingClass, kBindingClass, tagKey(PR_HANDLER)});
    while (q.next()) {
        ++m_rowsRead;
        // Messages made one after the other are mostly in one folder.
        if (const qint64 row = q.value(0).toLongLong(); row != lastRow || last == kNone) {
            lastRow = row;
            last = indexOf(row);
        }
        if (last == kNone)
            continue;
        HiddenCounts &counts = m_facts[last].hidden;
        ++counts.all;
        if (q.value(1).toLongLong() == 0)
            continue;
        ++counts.bindings;
        m_bindingFolder.append(last);
        appendUtf8(m_bindingIds, m_bindingIdEnd, q.value(2).toString());
        append(m_subjects, m_subjectEnd, q.value(3).toString());
        const QByteArray handler = fieldValue(q.value(4), PR_HANDLER).toByteArray();
        auto known = handlerOf.constFind(handler);
        if (known == handlerOf.constEnd()) {
            known = handlerOf.insert(handler, qint32(m_handlers.size()));
            m_handlers.append(handler);
        }
        m_bindingHandler.append(*known);
    }
    m_bindingsOf = groupBy<Groups>(m_bindingFolder, n);
}

FolderScan::Index FolderScan::indexOf(qint64 row) const
{
    if (!m_byRow.isEmpty())
        return row >= 0 && row < m_byRow.size() ? m_byRow.at(row) : kNone;
    const auto it = std::lower_bound(m_row.cbegin(), m_row.cend(), row);
    return it != m_row.cend() && *it == row ? Index(it - m_row.cbegin()) : kNone;
}

FolderScan::Index FolderScan::find(qint64 row) const
{
    return indexOf(row);
}

FolderScan::Index FolderScan::rootFolder(qint64 storeRow) const
{
    for (const Index folder : m_children.of(qint32(m_row.size())))
        if (m_stores.at(m_facts.at(folder).store).row == storeRow)
            return folder;
    return kNone;
}

std::span<const FolderScan::Index> FolderScan::subfolders(Index folder) const
{
    return m_children.of(folder);
}

QByteArrayView FolderScan::id(Index folder) const
{
    return slice<QByteArrayView>(m_ids, m_idEnd, folder);
}

QStringView FolderScan::name(Index folder) const
{
    return slice<QStringView>(m_names, m_nameEnd, folder);
}

Folder FolderScan::folder(Index folder) const
{
    const Facts &facts = m_facts.at(folder);
    const Store &store = m_stores.at(facts.store);
    Folder::Row r;
    r.row = m_row.at(folder);
    r.storeRow = store.row;
    r.id = QString::fromUtf8(id(folder));
    r.storeId = store.id;
    r.name = name(folder).toString();
    r.access = facts.access;
    r.eventSource = facts.eventSource;
    r.host = store.host;
    r.subfolders = int(subfolders(folder).size());
    return Folder(m_state, std::move(r));
}

std::span<const qint32> FolderScan::bindings(Index folder) const
{
    return m_bindingsOf.of(folder);
}

FolderScan::Binding FolderScan::binding(qint32 number) const
{
    return Binding{slice<QByteArrayView>(m_bindingIds, m_bindingIdEnd, number),
                   slice<QStringView>(m_subjects, m_subjectEnd, number),
                   m_handlers.at(m_bindingHandler.at(number))};
}

} // namespace mapi
