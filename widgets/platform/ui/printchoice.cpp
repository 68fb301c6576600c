#include "platform/ui/printchoice.h"

#include <QDir>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QStandardPaths>

namespace ui {

bool printToDocuments(QPrinter &printer, const QString &title)
{
    if (!QPrinterInfo::defaultPrinter().isNull())
        return false;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QDir().mkpath(folder);
    QString name = title.trimmed().isEmpty() ? QStringLiteral("Sorrelin") : title.trimmed();
    name.replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|]")), QStringLiteral(" "));
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder + QLatin1Char('/') + name + QStringLiteral(".pdf"));
    return true;
}

} // namespace ui
