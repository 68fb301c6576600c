#include "app/images.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestIcons : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Every image loads, at the sizes the windows show; an unknown key gives
    // nothing.
    void everyKeyLoads_data()
    {
        QTest::addColumn<QIcon>("icon");
        for (int i = 1; i <= 21; ++i)
            QTest::newRow(qPrintable(u"tree %1"_s.arg(i))) << app::images::treeImage(i);
        for (const QString &key : app::images::toolbarKeys())
            QTest::newRow(qPrintable(key)) << app::images::toolbarImage(key);
        QTest::newRow("appIcon") << app::images::appIcon();
        QTest::newRow("splash") << app::images::splashPicture();
    }

    void everyKeyLoads()
    {
        QFETCH(QIcon, icon);
        QVERIFY(!icon.isNull());
        for (int size : {16, 24, 32, 48, 96}) {
            const QImage image = icon.pixmap(QSize(size, size)).toImage();
            QCOMPARE(image.size(), QSize(size, size));
            // Neither blank nor a solid square.
            int inked = 0;
            for (int y = 0; y < size; ++y)
                for (int x = 0; x < size; ++x)
                    inked += qAlpha(image.pixel(x, y)) > 128;
            QVERIFY2(inked >= size * size / 8 && inked < size * size,
                     qPrintable(u"%1 px: %2 inked"_s.arg(size).arg(inked)));
        }
    }

    void unknownKeys()
    {
        QVERIFY(app::images::treeImage(0).isNull());
        QVERIFY(app::images::treeImage(22).isNull());
        QVERIFY(app::images::toolbarImage(u"new"_s).isNull());
        QCOMPARE(app::images::treeImageList().size(), 21);
        QCOMPARE(app::images::toolbarKeys().size(), 21);
    }
};

QTEST_MAIN(TestIcons)
#include "test_icons.moc"
