// The grid's print: the settings from PrintInitialize, the program's page
// setup and print dialogs, then pages with a header, the column captions,
// the rows with long cells wrapped at blanks, and a footer with the page
// number.
#include "platform/com/comerror.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/ui/prompter.h"

#include <QHeaderView>
#include <QPainter>
#include <QPrinter>

#include <numeric>

namespace controls {

namespace {

constexpr int kTwipsPerInch = 1440;

/// A header or footer line: the parts of a text split at tabs go left,
/// centre and right, so that a leading tab centres the text.
void drawBand(QPainter &painter, const QRectF &band, const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('\t'));
    const Qt::Alignment where[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    for (int i = 0; i < parts.size() && i < 3; ++i)
        painter.drawText(band, where[i] | Qt::AlignVCenter, parts.at(i));
}

class PageWriter {
public:
    PageWriter(QPrinter &printer, QPainter &painter, const PrintInfo &info, const SSDBGrid &grid)
        : m_printer(printer), m_painter(painter), m_info(info), m_grid(grid), m_font(grid.font(), &printer),
          m_headFont(grid.horizontalHeader()->font(), &printer)
    {
        m_headFont.setBold(true);
        const double dpi = printer.resolution();
        double total = 0;
        for (int c = 0; c < grid.columnCount(); ++c) {
            if (grid.isColumnHidden(c))
                continue;
            m_columns << c;
            m_widths << grid.columnWidthTwips(c) * dpi / kTwipsPerInch;
            total += m_widths.constLast();
        }
        m_pad = dpi / 24;
        fitToPage(printer.width(), total);
        m_band = QFontMetricsF(m_font).height() * 2;
    }

    void print()
    {
        startPage();
        for (int r = 0; r < m_grid.rowCount(); ++r) {
            QStringList cells = m_grid.rowCells(r);
            Q_EMIT const_cast<SSDBGrid &>(m_grid).RowPrint(r, m_pageNumber, cells);
            QStringList shown;
            for (int c : m_columns)
                shown << cells.value(c);
            const double height = rowHeight(shown, m_font);
            if (m_y + height > bottom() && m_y > m_top) {
                endPage();
                m_printer.newPage();
                ++m_pageNumber;
                startPage();
            }
            drawRow(shown, m_font, height);
        }
        endPage();
    }

private:
    /// Narrows the columns to the page's width where they are wider
    /// together, but none below the longest word of its heading, so that
    /// every heading prints whole.
    void fitToPage(double page, double total)
    {
        if (total <= page)
            return;
        const QFontMetricsF metrics(m_headFont);
        QList<double> least;
        for (int c : m_columns) {
            double word = 0;
            for (const QString &w : m_grid.columnCaption(c).split(QLatin1Char(' '), Qt::SkipEmptyParts))
                word = qMax(word, metrics.horizontalAdvance(w));
            least << word + 2 * m_pad + 1;
        }
        // Headings too wide for the page together in this font: every column
        // narrows alike.
        if (std::accumulate(least.cbegin(), least.cend(), 0.0) >= page) {
            for (double &w : m_widths)
                w *= page / total;
            return;
        }
        // Columns held at their least width give up no more; the others share the rest.
        QList<bool> held(m_widths.size(), false);
        for (bool again = true; again;) {
            again = false;
            double free = page, flexible = 0;
            for (int i = 0; i < m_widths.size(); ++i) {
                if (held[i])
                    free -= least[i];
                else
                    flexible += m_widths[i];
            }
            const double scale = flexible > 0 ? qMax(0.0, free) / flexible : 1;
            for (int i = 0; i < m_widths.size(); ++i)
                if (!held[i] && m_widths[i] * scale < least[i])
                    held[i] = again = true;
            if (!again)
                for (int i = 0; i < m_widths.size(); ++i)
                    m_widths[i] = held[i] ? least[i] : m_widths[i] * scale;
        }
    }

    double bottom() const { return m_printer.height() - m_band; }

    double rowHeight(const QStringList &cells, const QFont &font) const
    {
        const QFontMetricsF metrics(font);
        double height = metrics.height();
        for (int i = 0; i < cells.size(); ++i) {
            const QRectF box(0, 0, qMax(1.0, m_widths.at(i) - 2 * m_pad), 1e9);
            height = qMax(height, metrics.boundingRect(box, Qt::TextWordWrap, cells.at(i)).height());
        }
        return height + 2 * m_pad;
    }

    void drawRow(const QStringList &cells, const QFont &font, double height)
    {
        m_painter.setFont(font);
        double x = 0;
        for (int i = 0; i < cells.size(); ++i) {
            const QRectF cell(x, m_y, m_widths.at(i), height);
            m_painter.drawRect(cell);
            m_painter.drawText(cell.adjusted(m_pad, m_pad, -m_pad, -m_pad), Qt::TextWordWrap | Qt::AlignTop,
                               cells.at(i));
            x += m_widths.at(i);
        }
        m_y += height;
    }

    void startPage()
    {
        m_painter.setFont(m_font);
        drawBand(m_painter, QRectF(0, 0, m_printer.width(), m_band), m_info.pageHeader);
        m_y = m_band;
        QStringList captions;
        for (int c : m_columns)
            captions << m_grid.columnCaption(c);
        drawRow(captions, m_headFont, rowHeight(captions, m_headFont));
        m_top = m_y;
    }

    void endPage()
    {
        m_painter.setFont(m_font);
        const QRectF band(0, m_printer.height() - m_band, m_printer.width(), m_band);
        QString footer = m_info.pageFooter;
        while (footer.count(QLatin1Char('\t')) < 2)
            footer += QLatin1Char('\t');
        if (footer.section(QLatin1Char('\t'), 2).isEmpty())
            footer += QStringLiteral("Page %1").arg(m_pageNumber);
        drawBand(m_painter, band, footer);
    }

    QPrinter &m_printer;
    QPainter &m_painter;
    const PrintInfo &m_info;
    const SSDBGrid &m_grid;
    QFont m_font;
    QFont m_headFont;
    QList<int> m_columns;
    QList<double> m_widths;
    double m_pad = 0;
    double m_band = 0;
    double m_y = 0;
    double m_top = 0;
    int m_pageNumber = 1;
};

} // namespace

void SSDBGrid::PrintData(int printType, bool pageSetupDialog, bool printDialog, ui::Prompter &prompter)
{
    Q_UNUSED(printType);
    PrintInfo info;
    Q_EMIT PrintInitialize(info);
    QPrinter printer(QPrinter::HighResolution);
    const bool toDocuments = prompter.choosePrinter(printer, window()->windowTitle());
    printer.setPageMargins(QMarginsF(info.marginLeft, info.marginTop, info.marginRight, info.marginBottom),
                           QPageLayout::Inch);
    if (pageSetupDialog && !prompter.pageSetup(printer))
        return;
    if (printDialog && !prompter.print(printer))
        return;
    QPainter painter;
    if (!painter.begin(&printer))
        throw com::ComError(com::err::CallFailed, QStringLiteral("SSDBGrid"),
                            QStringLiteral("The printer can't be written: %1").arg(printer.outputFileName()));
    PageWriter(printer, painter, info, *this).print();
    painter.end();
    if (toDocuments && printer.outputFormat() == QPrinter::PdfFormat)
        Q_EMIT PrintedToFile(printer.outputFileName());
}

} // namespace controls
