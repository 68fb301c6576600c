#include "platform/store/rowbatches.h"

#include "platform/store/database.h"

namespace store {

namespace {

/// The key of a row by its first `count` values.
QString keyOf(const QVariantList &values, int count)
{
    QString key;
    for (int i = 0; i < count; ++i)
        key += values.at(i).toString() + QChar(0x1F);
    return key;
}

} // namespace

RowBatches::RowBatches(Database &db, std::vector<Table> tables) : m_db(db)
{
    for (Table &table : tables)
        m_tables.push_back(Rows{std::move(table), {}, 0, {}});
}

qint64 RowBatches::add(size_t table, QVariantList values)
{
    Rows &t = m_tables.at(table);
    if (t.table.keyColumns > 0) {
        const QString key = keyOf(values, t.table.keyColumns);
        const auto met = t.byKey.constFind(key);
        if (met != t.byKey.cend()) {
            t.rows[static_cast<size_t>(*met)] = std::move(values);
            return t.written + *met;
        }
        t.byKey.insert(key, static_cast<qsizetype>(t.rows.size()));
    }
    t.rows.push_back(std::move(values));
    const qint64 row = t.written + static_cast<qint64>(t.rows.size()) - 1;
    if (t.rows.size() >= static_cast<size_t>(kRowsAWrite))
        flush();
    return row;
}

QVariantList *RowBatches::pending(size_t table, qint64 row)
{
    Rows &t = m_tables.at(table);
    if (row < t.written || row >= t.written + static_cast<qint64>(t.rows.size()))
        return nullptr;
    return &t.rows[static_cast<size_t>(row - t.written)];
}

void RowBatches::flush()
{
    for (Rows &t : m_tables)
        write(t);
}

QSqlQuery &RowBatches::statement(const Rows &rows, int count)
{
    const std::pair<QString, int> key{rows.table.name, count};
    auto it = m_statements.find(key);
    if (it != m_statements.end())
        return *it;
    const QString tuple =
        QLatin1Char('(') +
        QStringList(rows.table.columns.size(), QStringLiteral("?")).join(QStringLiteral(", ")) +
        QLatin1Char(')');
    const QString sql = QStringLiteral("INSERT INTO %1(%2) VALUES%3%4")
                            .arg(rows.table.name, rows.table.columns.join(QStringLiteral(", ")),
                                 QStringList(count, tuple).join(QStringLiteral(", ")),
                                 rows.table.tail.isEmpty() ? QString() : QLatin1Char(' ') + rows.table.tail);
    return *m_statements.insert(key, m_db.prepare(sql));
}

void RowBatches::write(Rows &rows)
{
    // A full batch at a time, then what is left in halves, quarters and so
    // on: a few statements serve every count of rows.
    const size_t size = rows.rows.size();
    size_t first = 0;
    for (int count = kRowsABatch; count > 0; count /= 2)
        for (; size - first >= static_cast<size_t>(count); first += static_cast<size_t>(count)) {
            QSqlQuery &q = statement(rows, count);
            int place = 0;
            for (size_t r = first; r < first + static_cast<size_t>(count); ++r)
                for (const QVariant &v : std::as_const(rows.rows[r]))
                    q.bindValue(place++, v);
            m_db.exec(q);
        }
    rows.written += static_cast<qint64>(size);
    rows.rows.clear();
    rows.byKey.clear();
}

} // namespace store
