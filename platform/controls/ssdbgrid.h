#pragma once

#include <QTableWidget>

namespace controls {

/// The grid: columns set up front, rows added as one string of
/// tab-separated fields, hidden columns that still hold their cells.
class SSDBGrid : public QTableWidget {
    Q_OBJECT

public:
    explicit SSDBGrid(QWidget *parent = nullptr);

    /// Sets the columns: captions and widths in twips (0 hides a column).
    void setColumns(const QStringList &captions, const QList<int> &widths);

    /// Adds one row from tab-separated fields; extra fields are dropped.
    void AddItem(const QString &row);
    void RemoveAll();
    int Rows() const { return rowCount(); }
    /// The text of a cell, empty where the row is short.
    QString cellText(int row, int column) const;

    /// The title above the columns.
    void setCaption(const QString &caption);
    QString caption() const;
};

} // namespace controls
