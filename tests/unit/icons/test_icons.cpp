#include "app/icons.h"

#include <QImage>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

const char *const kToolbarKeys[] = {
    "New",    "OpenScript", "Save", "Delete", "Properties", "ScriptProperties", "Question",
    "Send",   "Grid",       "Cut",  "Copy",   "Paste",      "TimeDate",         "Folder",
    "Script", "Favorite",   "Open", "Print",  "Find",       "FolderScript",     "Map",
};

struct Named {
    QString name;
    QIcon icon;
};

QVector<Named> everyIcon()
{
    QVector<Named> all;
    for (int i = 1; i <= 21; ++i)
        all.append({u"tree %1"_s.arg(i), app::icons::treeImage(i)});
    for (const char *key : kToolbarKeys)
        all.append({QString::fromLatin1(key), app::icons::toolbarImage(QString::fromLatin1(key))});
    all.append({u"appIcon"_s, app::icons::appIcon()});
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
    void everyIconIsPainted_data()
    {
        QTest::addColumn<QIcon>("icon");
        for (const Named &n : everyIcon())
            QTest::newRow(qPrintable(n.name)) << n.icon;
    }

    void everyIconIsPainted()
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
            QVERIFY2(inked >= size * size / 8, qPrintable(u"%1 px: %2 inked"_s.arg(size).arg(inked)));
            QVERIFY2(inked < size * size, qPrintable(u"%1 px: fully opaque"_s.arg(size)));
        }
    }

    void distinctKeysDiffer()
    {
        const QVector<Named> all = everyIcon();
        for (int size : {16, 32}) {
            QVector<QImage> images;
            for (const Named &n : all)
                images.append(image(n.icon, size));
            for (int a = 0; a < all.size(); ++a)
                for (int b = a + 1; b < all.size(); ++b)
                    QVERIFY2(images.at(a) != images.at(b), qPrintable(u"%1 and %2 look the same at %3 px"_s
                                                                          .arg(all.at(a).name, all.at(b).name)
                                                                          .arg(size)));
        }
    }
};

QTEST_MAIN(TestIcons)
#include "test_icons.moc"
