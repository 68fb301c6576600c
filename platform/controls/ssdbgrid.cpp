#include "platform/controls/ssdbgrid.h"

#include <QHeaderView>

namespace controls {

SSDBGrid::SSDBGrid(QWidget *parent) : QTableWidget(parent)
{
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->hide();
    setWordWrap(false);
}

void SSDBGrid::setColumns(const QStringList &captions, const QList<int> &widths)
{
    setColumnCount(static_cast<int>(captions.size()));
    setHorizontalHeaderLabels(captions);
    for (int c = 0; c < captions.size(); ++c) {
        const int twips = widths.value(c, 1440);
        setColumnHidden(c, twips == 0);
        if (twips > 0)
            setColumnWidth(c, twips / 15);
    }
}

void SSDBGrid::AddItem(const QString &row)
{
    const QStringList fields = row.split(QLatin1Char('\t'));
    const int r = rowCount();
    insertRow(r);
    for (int c = 0; c < columnCount(); ++c)
        setItem(r, c, new QTableWidgetItem(fields.value(c))); // owned by the grid
}

void SSDBGrid::RemoveAll()
{
    setRowCount(0);
}

QString SSDBGrid::cellText(int row, int column) const
{
    const QTableWidgetItem *cell = item(row, column);
    return cell ? cell->text() : QString();
}

void SSDBGrid::setCaption(const QString &caption)
{
    setProperty("caption", caption);
    setToolTip(caption);
}

QString SSDBGrid::caption() const
{
    return property("caption").toString();
}

} // namespace controls
