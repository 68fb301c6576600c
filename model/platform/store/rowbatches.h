#pragma once

#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <utility>
#include <vector>

namespace store {

class Database;

/// Rows for a store's tables, taken one at a time and written many to an
/// INSERT: a server store gets a batch in one round trip instead of one
/// row in each. Whenever one table holds enough rows every table is
/// written, in the order they were given, so that the rows a row refers to
/// are there before it.
class RowBatches {
public:
    struct Table {
        QString name;
        QStringList columns;
        /// What follows the values, such as an ON CONFLICT clause.
        QString tail = {};
        /// With a tail that updates a row met again: how many leading
        /// columns name a row. A later row of the same name replaces the
        /// one not yet written, since one INSERT may meet a row only once.
        int keyColumns = 0;
    };

    /// How many rows an INSERT writes at most (a power of two).
    static constexpr int kRowsABatch = 256;
    /// How many rows one table gathers before all are written: the rows
    /// of the other tables are fewer then, and a few statements with fewer
    /// rows write what is left of each.
    static constexpr int kRowsAWrite = 8 * kRowsABatch;

    RowBatches(Database &db, std::vector<Table> tables);
    RowBatches(const RowBatches &) = delete;
    RowBatches &operator=(const RowBatches &) = delete;

    /// Adds a row to table `table` (its place in the list) and gives its
    /// number among the rows given to that table.
    qint64 add(size_t table, QVariantList values);

    /// The values of the `row`th row of `table` while it is not written
    /// yet, to be changed in place; null once it is written.
    QVariantList *pending(size_t table, qint64 row);

    /// Writes every row not yet written.
    void flush();

private:
    struct Rows {
        Table table;
        std::vector<QVariantList> rows;
        qint64 written = 0;              ///< rows of this table written before `rows`
        QHash<QString, qsizetype> byKey; ///< a row in `rows` by its key columns
    };

    QSqlQuery &statement(const Rows &rows, int count);
    void write(Rows &rows);

    Database &m_db;
    std::vector<Rows> m_tables;
    QHash<std::pair<QString, int>, QSqlQuery> m_statements; ///< by table and row count
};

} // namespace store
