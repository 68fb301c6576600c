#include "scripts/fontladder.h"

#include <QtTest>

class TestFontLadder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
};

void TestFontLadder::steps_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<double>("size");
    QTest::addColumn<bool>("paneShown");
    QTest::addColumn<double>("expected");

    QTest::newRow("menu decrease from 10.8") << "menuDecrease" << 10.8 << true << 8.8;
    QTest::newRow("menu decrease from 10") << "menuDecrease" << 10.0 << true << 8.0;
    QTest::newRow("menu decrease stops at 8") << "menuDecrease" << 8.0 << true << 8.0;
    QTest::newRow("menu decrease with pane hidden") << "menuDecrease" << 12.0 << false << 12.0;
    QTest::newRow("menu increase from 22") << "menuIncrease" << 22.0 << true << 24.0;
    QTest::newRow("menu increase stops at 24") << "menuIncrease" << 24.0 << true << 24.0;
    QTest::newRow("key decrease from 10") << "keyDecrease" << 10.0 << true << 9.0;
    QTest::newRow("key decrease from 9") << "keyDecrease" << 9.0 << true << 8.0;
    QTest::newRow("key decrease stops at 8") << "keyDecrease" << 8.0 << true << 8.0;
    QTest::newRow("key decrease from 9.5 by two") << "keyDecrease" << 9.5 << true << 7.5;
    QTest::newRow("key decrease with pane hidden") << "keyDecrease" << 12.0 << false << 12.0;
    QTest::newRow("key increase from 8") << "keyIncrease" << 8.0 << true << 9.0;
    QTest::newRow("key increase from 24") << "keyIncrease" << 24.0 << true << 26.0;
    QTest::newRow("key increase stops above 24") << "keyIncrease" << 26.0 << true << 26.0;
    QTest::newRow("key increase with pane hidden") << "keyIncrease" << 12.0 << false << 12.0;
}

void TestFontLadder::steps()
{
    QFETCH(QString, command);
    QFETCH(double, size);
    QFETCH(bool, paneShown);
    QFETCH(double, expected);
    double result = 0;
    if (command == QLatin1String("menuDecrease"))
        result = scripts::menuDecrease(size, paneShown);
    else if (command == QLatin1String("menuIncrease"))
        result = scripts::menuIncrease(size);
    else if (command == QLatin1String("keyDecrease"))
        result = scripts::keyDecrease(size, paneShown);
    else
        result = scripts::keyIncrease(size, paneShown);
    QCOMPARE(result, expected);
}

QTEST_GUILESS_MAIN(TestFontLadder)
#include "test_fontladder.moc"
