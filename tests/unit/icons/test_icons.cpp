#include "app/icons.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

const char *const kToolbarKeys[] = {
    "New",    "OpenScript", "Save", "Delete", "Properties", "ScriptProperties", "Question",
    "Send",   "Grid",       "Cut",  "Copy",   "Paste",      "TimeDate",         "Folder",
    "Script", "Favorite",   "Open", "Print",  "Find",       "FolderScript",     "Map",
};

const char *const kTreeNames[] = {
    "store",         "root",   "open letter", "outbox",        "inbox",     "yellow folder", "with agents",
    "imgFolder",     "public", "imgContact",  "imgAppt",       "imgTask",   "imgJournal",    "imgNote",
    "imgMailUnread", "imgDoc", "imgMailRead", "imgGreyFolder", "imgScript", "imgRoute",      "imgClip",
};

struct Named {
    QString name;
    QIcon icon;
};

QVector<Named> everyIcon()
{
    QVector<Named> all;
    for (int i = 1; i <= 21; ++i)
        all.append({QStringLiteral("tree %1").arg(i), app::icons::treeImage(i)});
    for (const char *key : kToolbarKeys)
        all.append({QString::fromLatin1(key), app::icons::toolbarImage(QString::fromLatin1(key))});
    all.append({QStringLiteral("appIcon"), app::icons::appIcon()});
    return all;
}

QImage image(const QIcon &icon, int size)
{
    return icon.pixmap(QSize(size, size)).toImage().convertToFormat(QImage::Format_ARGB32);
}

int inkedPixels(const QImage &img)
{
    int count = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (qAlpha(img.pixel(x, y)) > 128)
                ++count;
    return count;
}

} // namespace

class TestIcons : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyIconIsPainted_data();
    void everyIconIsPainted();
    void distinctKeysDiffer();
    void sheet();
};

void TestIcons::everyIconIsPainted_data()
{
    QTest::addColumn<QIcon>("icon");
    for (const Named &n : everyIcon())
        QTest::newRow(qPrintable(n.name)) << n.icon;
}

void TestIcons::everyIconIsPainted()
{
    QFETCH(QIcon, icon);
    QVERIFY(!icon.isNull());
    for (int size : {16, 24, 32}) {
        QVERIFY2(icon.availableSizes().contains(QSize(size, size)), qPrintable(QString::number(size)));
        const QPixmap pixmap = icon.pixmap(QSize(size, size));
        QVERIFY(!pixmap.isNull());
        QCOMPARE(pixmap.size(), QSize(size, size));
        // Neither blank nor a solid square.
        const int inked = inkedPixels(pixmap.toImage());
        QVERIFY2(inked >= size * size / 8,
                 qPrintable(QStringLiteral("%1 px: %2 inked").arg(size).arg(inked)));
        QVERIFY2(inked < size * size, qPrintable(QStringLiteral("%1 px: fully opaque").arg(size)));
    }
}

void TestIcons::distinctKeysDiffer()
{
    const QVector<Named> all = everyIcon();
    for (int size : {16, 32}) {
        QVector<QImage> images;
        for (const Named &n : all)
            images.append(image(n.icon, size));
        for (int a = 0; a < all.size(); ++a)
            for (int b = a + 1; b < all.size(); ++b)
                QVERIFY2(images.at(a) != images.at(b),
                         qPrintable(QStringLiteral("%1 and %2 look the same at %3 px")
                                        .arg(all.at(a).name, all.at(b).name)
                                        .arg(size)));
    }
}

// With SORRELIN_ICON_SHEET set to a file name, draws every picture at each
// size, and magnified, on one sheet to look at.
void TestIcons::sheet()
{
    const QString target = qEnvironmentVariable("SORRELIN_ICON_SHEET");
    if (target.isEmpty())
        QSKIP("SORRELIN_ICON_SHEET is not set");

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
        cell(panelWidth + 24, y, QString::fromLatin1(kToolbarKeys[i]),
             app::icons::toolbarImage(QString::fromLatin1(kToolbarKeys[i])));
    }

    // As they will be seen: a toolbar, a tree, and the product's pictures.
    int y = top + rows * rowHeight + 12;
    p.fillRect(8, y, 21 * 24 + 8, 28, QColor(0xE4, 0xE4, 0xE4));
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 24, y + 6,
                     app::icons::toolbarImage(QString::fromLatin1(kToolbarKeys[i])).pixmap(QSize(16, 16)));
    p.fillRect(8, y + 36, 21 * 24 + 8, 28, QColor(0x2B, 0x2B, 0x2B));
    for (int i = 0; i < 21; ++i)
        p.drawPixmap(16 + i * 24, y + 42,
                     app::icons::toolbarImage(QString::fromLatin1(kToolbarKeys[i])).pixmap(QSize(16, 16)));
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
    QVERIFY2(sheet.save(target), qPrintable(target));
    qInfo("sheet written to %s", qPrintable(target));
}

QTEST_MAIN(TestIcons)
#include "test_icons.moc"
