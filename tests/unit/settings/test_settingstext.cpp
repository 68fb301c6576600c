#include "app/settingstext.h"

#include <QtTest>

class TestSettingsText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void leadingNumber_data();
    void leadingNumber();
    void formatFontSize_data();
    void formatFontSize();
};

void TestSettingsText::leadingNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("expected");
    QTest::newRow("decimal") << "10.8" << 10.8;
    QTest::newRow("trailing words") << "14pt" << 14.0;
    QTest::newRow("leading blanks") << "  9.5" << 9.5;
    QTest::newRow("comma is not a decimal point") << "10,8" << 10.0;
    QTest::newRow("no number") << "large" << 0.0;
    QTest::newRow("point first") << ".5" << 0.5;
}

void TestSettingsText::leadingNumber()
{
    QFETCH(QString, text);
    QFETCH(double, expected);
    QCOMPARE(app::leadingNumber(text), expected);
}

void TestSettingsText::formatFontSize_data()
{
    QTest::addColumn<double>("size");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one place") << 10.8 << "10.8";
    QTest::newRow("whole") << 10.0 << "10";
    QTest::newRow("four places") << 9.1234 << "9.1234";
    QTest::newRow("rounded to four places") << 9.12345678 << "9.1235";
}

void TestSettingsText::formatFontSize()
{
    QFETCH(double, size);
    QFETCH(QString, expected);
    QCOMPARE(app::formatFontSize(size), expected);
}

QTEST_GUILESS_MAIN(TestSettingsText)
#include "test_settingstext.moc"
