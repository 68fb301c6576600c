#include "app/positionform.h"

#include <QtTest>

class TestPositionForm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void centred_data();
    void centred();
};

// A screen of 1024 by 768 pixels, 15 twips to a pixel: 15360 by 11520
// twips; a window of 7536 by 6060 twips.
void TestPositionForm::centred_data()
{
    QTest::addColumn<QRect>("taskbar");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("no taskbar") << QRect() << QPoint(3912, 2730);
    QTest::newRow("at the bottom, 30 high") << QRect(0, 738, 1024, 30) << QPoint(3912, 2730 - 225);
    QTest::newRow("at the top, 30 high") << QRect(0, 0, 1024, 30) << QPoint(3912, 225 + 2730);
    QTest::newRow("at the left, 60 wide") << QRect(0, 0, 60, 768) << QPoint(450 + 3912, 2730);
    QTest::newRow("at the right, 60 wide") << QRect(964, 0, 60, 768) << QPoint(3912 - 450, 2730);
}

void TestPositionForm::centred()
{
    QFETCH(QRect, taskbar);
    QFETCH(QPoint, expected);
    QCOMPARE(app::centredPosition(QSize(15360, 11520), QSize(7536, 6060), taskbar, 15, 15), expected);
}

QTEST_GUILESS_MAIN(TestPositionForm)
#include "test_positionform.moc"
