// sorrelin-icons: writes the program's icon, painted by the program's own
// drawing, as the PNG files of the hicolor icon theme.
//
//   sorrelin-icons OUTDIR SIZE...   writes OUTDIR/hicolor/SIZExSIZE/apps/sorrelin.png
//   sorrelin-icons --sheet FILE     every picture at each size on one PNG sheet
#include "app/icons.h"
#include "tools/sorrelin-icons/sheet.h"

#include <QDir>
#include <QGuiApplication>
#include <QPixmap>

#include <cstdio>

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.size() == 2 && args.at(0) == QLatin1String("--sheet")) {
        if (writeSheet(args.at(1)))
            return 0;
        std::fprintf(stderr, "sorrelin-icons: the sheet could not be written to %s\n",
                     qPrintable(args.at(1)));
        return 1;
    }
    if (args.size() < 2) {
        std::fputs("usage: sorrelin-icons OUTDIR SIZE... | --sheet FILE\n", stderr);
        return 2;
    }
    const QIcon icon = app::icons::appIcon();
    for (const QString &word : args.mid(1)) {
        const int size = word.toInt();
        const QString dir = QStringLiteral("%1/hicolor/%2x%2/apps").arg(args.at(0)).arg(size);
        const QPixmap picture = icon.pixmap(size, size);
        if (size <= 0 || !QDir().mkpath(dir) || picture.width() != size ||
            !picture.save(dir + QStringLiteral("/sorrelin.png"))) {
            std::fprintf(stderr, "sorrelin-icons: the %s px icon could not be written to %s\n",
                         qPrintable(word), qPrintable(dir));
            return 1;
        }
    }
    return 0;
}
