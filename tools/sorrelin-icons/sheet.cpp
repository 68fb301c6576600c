#include "tools/sorrelin-icons/sheet.h"

#include "app/icons.h"

#include <QFont>
#include <QImage>
#include <QPainter>

namespace {

const char *const kTreeNames[] = {
    "store",         "root",   "open letter", "outbox",        "inbox",     "yellow folder", "with agents",
    "imgFolder",     "public", "imgContact",  "imgAppt",       "imgTask",   "imgJournal",    "imgNote",
    "imgMailUnread", "imgDoc", "imgMailRead", "imgGreyFolder", "imgScript", "imgRoute",      "imgClip",
};

QImage image(const QIcon &icon, int size)
{
    return icon.pixmap(QSize(size, size)).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

bool writeSheet(const QString &target)
{
    const QStringList keys = app::icons::toolbarKeys();
    const int rowHeight = 72;
    const int labelWidth = 116;
    const int panelWidth = labelWidth + 16 + 24 + 32 + 64 + 64 + 6 * 12;
    const int top = 36;
    const int rows = 21;
    const int footer = 300;
    QImage sheet(2 * panelWidth + 24, top + rows * rowHeight + footer, QImage::Format_ARGB32);
    sheet.fill(QColor(0xF3, 0xF3, 0xF3));
    QPainter p(&sheet);
    QFont font = p.font();
    font.setPixelSize(12);
    p.setFont(font);
    p.setPen(QColor(0x30, 0x30, 0x30));

    auto cell = [&](int x, int y, const QString &label, const QIcon &icon) {
        p.setPen(QColor(0x30, 0x30, 0x30));
        p.drawText(QRect(x + 4, y, labelWidth - 8, rowHeight), Qt::AlignVCenter | Qt::AlignLeft, label);
        int cx = x + labelWidth;
        for (int size : {16, 24, 32}) {
            p.drawPixmap(cx, y + (rowHeight - size) / 2, icon.pixmap(QSize(size, size)));
            cx += size + 12;
        }
        const QImage small = image(icon, 16).scaled(64, 64, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        const QImage large = image(icon, 32).scaled(64, 64, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        p.fillRect(cx, y + 4, 64, 64, Qt::white);
        p.drawImage(cx, y + 4, small);
        cx += 64 + 12;
        p.fillRect(cx, y + 4, 64, 64, Qt::white);
        p.drawImage(cx, y + 4, large);
    };

    font.setBold(true);
    p.setFont(font);
    p.drawText(QRect(8, 8, panelWidth, 20), Qt::AlignLeft,
               QStringLiteral("Tree images: 16, 24, 32, 16x4, 32x2"));
    p.drawText(QRect(panelWidth + 24, 8, panelWidth, 20), Qt::AlignLeft, QStringLiteral("Toolbar images"));
    font.setBold(false);
    p.setFont(font);
    for (int i = 0; i < rows; ++i) {
        const int y = top + i * rowHeight;
        if (i % 2)
            p.fillRect(0, y, sheet.width(), rowHeight, QColor(0xEA, 0xEA, 0xEA));
        cell(0, y, QStringLiteral("%1 %2").arg(i + 1).arg(QString::fromLatin1(kTreeNames[i])),
             app::icons::treeImage(i + 1));
        cell(panelWidth + 24, y, keys.value(i), app::icons::toolbarImage(keys.value(i)));
    }

    // As they will be seen: a toolbar, a tree, and the product's pictures.
    int y = top + rows * rowHeight + 12;
    p.fillRect(8, y, 21 * 24 + 8, 28, QColor(0xE4, 0xE4, 0xE4));
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 24, y + 6, app::icons::toolbarImage(keys.value(i)).pixmap(QSize(16, 16)));
    p.fillRect(8, y + 36, 21 * 24 + 8, 28, QColor(0x2B, 0x2B, 0x2B));
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 24, y + 42, app::icons::toolbarImage(keys.value(i)).pixmap(QSize(16, 16)));
    p.fillRect(8, y + 72, 21 * 24 + 8, 28, Qt::white);
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 24, y + 78, app::icons::treeImage(i + 1).pixmap(QSize(16, 16)));
    p.fillRect(8, y + 108, 21 * 36 + 8, 40, Qt::white);
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 36, y + 112, app::icons::treeImage(i + 1).pixmap(QSize(32, 32)));

    y += 160;
    p.drawPixmap(8, y, app::icons::splashPicture().pixmap(QSize(96, 96)));
    p.fillRect(112, y, 96, 96, QColor(0x2B, 0x2B, 0x2B));
    p.drawPixmap(112, y, app::icons::splashPicture().pixmap(QSize(96, 96)));
    int ax = 224;
    for (int size : {16, 24, 32, 48, 64}) {
        p.drawPixmap(ax, y + (96 - size), app::icons::appIcon().pixmap(QSize(size, size)));
        ax += size + 12;
    }
    p.end();
    return sheet.save(target);
}
