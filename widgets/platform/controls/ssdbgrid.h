#pragma once

#include <QList>
#include <QMap>
#include <QTableWidget>

namespace ui {
class Prompter;
}

namespace controls {

/// A column as a form sets it up.
struct GridColumn {
    QString caption;
    int width = -1;        ///< twips; 0 hides the column; -1 the grid's default
    bool checkBox = false; ///< the cell text "-1" shows a tick, "0" none
};

/// What the grid hands to PrintInitialize before it prints: the texts at the
/// top and bottom of every page (a leading tab centres one), the margins in
/// inches, and the numbered switches of the print, off until set.
struct PrintInfo {
    QString pageHeader;
    QString pageFooter;
    double marginLeft = 0.5;
    double marginTop = 0.5;
    double marginRight = 0.5;
    double marginBottom = 0.5;
    QMap<int, bool> switches;
    void setMargins(double inches) { marginLeft = marginTop = marginRight = marginBottom = inches; }
};

/// The grid: columns set up front, rows added as one string of
/// tab-separated fields, hidden columns that still hold their cells. A
/// row's bookmark is its index. It prints itself through the program's
/// page setup and print dialogs, and writes itself to a text file.
class SSDBGrid : public QTableWidget {
    Q_OBJECT

public:
    explicit SSDBGrid(QWidget *parent = nullptr);

    void setColumns(const QList<GridColumn> &columns);
    /// Captions and widths in twips (0 hides a column).
    void setColumns(const QStringList &captions, const QList<int> &widths);
    QString columnCaption(int column) const;
    /// In twips; 0 for a hidden column.
    int columnWidthTwips(int column) const;
    bool isCheckBoxColumn(int column) const;

    /// Adds one row from tab-separated fields; extra fields are dropped.
    void AddItem(const QString &row);
    void RemoveAll();
    int Rows() const { return rowCount(); }
    /// The text of a cell as the row string gave it, empty where the row is
    /// short or the bookmark names no row.
    QString cellText(int bookmark, int column) const;
    /// A row's cells, hidden columns included.
    QStringList rowCells(int bookmark) const;

    /// The current row, -1 when there is none.
    int Row() const { return currentRow(); }
    void setRow(int row);
    /// The bookmarks of the selected rows, in row order.
    QList<int> SelBookmarks() const;

    double fontSize() const { return font().pointSizeF(); }
    void setFontSize(double size);
    double headFontSize() const;
    void setHeadFontSize(double size);

    /// The title above the columns.
    void setCaption(const QString &caption);
    QString caption() const;

    /// Prints every row: PrintInitialize gets the settings, the dialogs are
    /// asked as the flags say (Cancel in one ends the print), then RowPrint
    /// may rewrite each row's printed copy. The prompter chooses the printer
    /// before the dialogs. Raises a ComError when the printer can't be
    /// written.
    void PrintData(int printType, bool pageSetupDialog, bool printDialog, ui::Prompter &prompter);

    /// Writes a text file: the visible columns' captions, then each row's
    /// visible cells, tab-separated, lines ended by CR LF, bytes as Latin-1.
    /// Raises a ComError when the file can't be written.
    void Export(int exportType, int options, const QString &fileName) const;

Q_SIGNALS:
    void PrintInitialize(controls::PrintInfo &info);
    /// `cells` is the printed copy of the row, which a handler may rewrite.
    void RowPrint(int bookmark, int pageNumber, QStringList &cells);
    /// A print went to a file of the program's choosing (no printer is set up).
    void PrintedToFile(const QString &fileName);
    void KeyUp(int keyCode, int shift);
    /// A double click of the left button anywhere in the grid.
    void DblClick();

protected:
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    QList<GridColumn> m_columns;
    QString m_caption;
};

} // namespace controls
