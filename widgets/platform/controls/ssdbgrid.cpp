#include "platform/controls/ssdbgrid.h"

#include "platform/com/comerror.h"
#include "platform/controls/sstree.h"
#include "platform/os/twips.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace controls {

namespace {

// Column widths are twips.
using os::kTwipsPerPixel;
constexpr int kDefaultWidth = 1440;
// A cell's text sits in this role; what shows may differ (a tick).
constexpr int kCellRole = Qt::UserRole + 1;

/// A check-box column: a centred tick for "-1", an empty box for "0".
class CheckDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem background = option;
        initStyleOption(&background, index);
        background.text.clear();
        QStyle *style = option.widget ? option.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
        QStyleOptionButton box;
        const QSize size = style->sizeFromContents(QStyle::CT_CheckBox, &box, QSize(), option.widget);
        const int side = qMin(size.height(), option.rect.height());
        box.rect =
            QRect(option.rect.center().x() - side / 2, option.rect.center().y() - side / 2, side, side);
        box.state =
            QStyle::State_Enabled |
            (index.data(kCellRole).toString() == QLatin1String("0") ? QStyle::State_Off : QStyle::State_On);
        style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
    }
};

/// The column captions, with the grid's caption in a band above them when
/// it has one.
class CaptionHeader : public QHeaderView {
public:
    explicit CaptionHeader(SSDBGrid &grid) : QHeaderView(Qt::Horizontal, &grid), m_grid(grid) {}

    QSize sizeHint() const override
    {
        QSize size = QHeaderView::sizeHint();
        size.setHeight(size.height() + band());
        return size;
    }

protected:
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override
    {
        QHeaderView::paintSection(painter, rect.adjusted(0, band(), 0, 0), logicalIndex);
    }

    void paintEvent(QPaintEvent *event) override
    {
        QHeaderView::paintEvent(event);
        if (band() == 0)
            return;
        QPainter painter(viewport());
        const QRect top(0, 0, viewport()->width(), band());
        painter.fillRect(top, palette().button());
        painter.setPen(palette().buttonText().color());
        painter.drawText(top, Qt::AlignCenter, m_grid.caption());
        painter.setPen(palette().mid().color());
        painter.drawLine(top.bottomLeft(), top.bottomRight());
    }

private:
    int band() const { return m_grid.caption().isEmpty() ? 0 : fontMetrics().height() + 6; }

    const SSDBGrid &m_grid;
};

} // namespace

SSDBGrid::SSDBGrid(QWidget *parent) : QTableWidget(parent)
{
    setHorizontalHeader(new CaptionHeader(*this));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->hide();
    setWordWrap(false);
    // Tab goes on to the window's next control, as in the other controls.
    setTabKeyNavigation(false);
}

void SSDBGrid::setColumns(const QList<GridColumn> &columns)
{
    m_columns = columns;
    setColumnCount(static_cast<int>(columns.size()));
    auto *checks = new CheckDelegate(this);
    for (int c = 0; c < columns.size(); ++c) {
        const GridColumn &column = columns.at(c);
        setHorizontalHeaderItem(c, new QTableWidgetItem(column.caption)); // owned by the grid
        setColumnHidden(c, column.width == 0);
        setColumnWidth(c, (column.width < 0 ? kDefaultWidth : column.width) / kTwipsPerPixel);
        setItemDelegateForColumn(c, column.checkBox ? checks : nullptr);
    }
}

void SSDBGrid::setColumns(const QStringList &captions, const QList<int> &widths)
{
    QList<GridColumn> columns;
    for (int c = 0; c < captions.size(); ++c)
        columns.append(GridColumn{captions.at(c), widths.value(c, kDefaultWidth)});
    setColumns(columns);
}

QString SSDBGrid::columnCaption(int column) const
{
    return m_columns.value(column).caption;
}

int SSDBGrid::columnWidthTwips(int column) const
{
    if (isColumnHidden(column))
        return 0;
    // The width as set, while the user hasn't dragged the column.
    const int set = m_columns.value(column).width < 0 ? kDefaultWidth : m_columns.value(column).width;
    return columnWidth(column) == set / kTwipsPerPixel ? set : columnWidth(column) * kTwipsPerPixel;
}

bool SSDBGrid::isCheckBoxColumn(int column) const
{
    return m_columns.value(column).checkBox;
}

void SSDBGrid::AddItem(const QString &row)
{
    const QStringList fields = row.split(QLatin1Char('\t'));
    const int r = rowCount();
    insertRow(r);
    for (int c = 0; c < columnCount(); ++c) {
        auto *cell = new QTableWidgetItem; // owned by the grid
        cell->setData(kCellRole, fields.value(c));
        if (isCheckBoxColumn(c))
            cell->setTextAlignment(Qt::AlignCenter);
        else
            cell->setText(fields.value(c));
        setItem(r, c, cell);
    }
    // The first row is current, and nothing selected, until a user clicks.
    if (r == 0)
        setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
}

void SSDBGrid::RemoveAll()
{
    setRowCount(0);
}

QString SSDBGrid::cellText(int bookmark, int column) const
{
    const QTableWidgetItem *cell = item(bookmark, column);
    return cell ? cell->data(kCellRole).toString() : QString();
}

QStringList SSDBGrid::rowCells(int bookmark) const
{
    QStringList cells;
    for (int c = 0; c < columnCount(); ++c)
        cells << cellText(bookmark, c);
    return cells;
}

void SSDBGrid::setRow(int row)
{
    if (row < 0) {
        clearSelection();
        setCurrentCell(rowCount() > 0 ? 0 : -1, 0, QItemSelectionModel::NoUpdate);
        return;
    }
    setCurrentCell(row, 0);
    selectRow(row);
}

QList<int> SSDBGrid::SelBookmarks() const
{
    QList<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void SSDBGrid::setFontSize(double size)
{
    QFont f = font();
    f.setPointSizeF(size);
    setFont(f);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(f).height() + 6);
}

double SSDBGrid::headFontSize() const
{
    return horizontalHeader()->font().pointSizeF();
}

void SSDBGrid::setHeadFontSize(double size)
{
    QFont f = horizontalHeader()->font();
    f.setPointSizeF(size);
    horizontalHeader()->setFont(f);
}

void SSDBGrid::setCaption(const QString &caption)
{
    m_caption = caption;
    // The header's height changes with the band; the table lays out anew.
    horizontalHeader()->updateGeometry();
    updateGeometries();
    horizontalHeader()->viewport()->update();
}

QString SSDBGrid::caption() const
{
    return m_caption;
}

void SSDBGrid::keyReleaseEvent(QKeyEvent *event)
{
    QTableWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        Q_EMIT KeyUp(vbKeyCode(event), vbShift(event->modifiers()));
}

void SSDBGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableWidget::mouseDoubleClickEvent(event);
    // Anywhere in the grid, an empty one or below the last row included.
    if (event->button() == Qt::LeftButton)
        Q_EMIT DblClick();
}

void SSDBGrid::Export(int exportType, int options, const QString &fileName) const
{
    Q_UNUSED(exportType);
    Q_UNUSED(options);
    QList<int> visible;
    for (int c = 0; c < columnCount(); ++c)
        if (!isColumnHidden(c))
            visible << c;
    QStringList lines;
    QStringList fields;
    for (int c : visible)
        fields << columnCaption(c);
    lines << fields.join(QLatin1Char('\t'));
    for (int r = 0; r < rowCount(); ++r) {
        fields.clear();
        for (int c : visible)
            fields << cellText(r, c);
        lines << fields.join(QLatin1Char('\t'));
    }
    const QByteArray bytes = (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toLatin1();
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw com::ComError(com::err::PathNotFound, QStringLiteral("SSDBGrid"),
                            QStringLiteral("Path not found: %1 (%2)").arg(fileName, file.errorString()));
    if (file.write(bytes) != bytes.size())
        throw com::ComError(com::err::FileAccess, QStringLiteral("SSDBGrid"),
                            QStringLiteral("Path/File access error: %1").arg(file.errorString()));
}

} // namespace controls
