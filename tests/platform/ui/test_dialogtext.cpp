#include "platform/ui/dialogtext.h"

#include <QtTest>

class TestDialogText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void qtNameFilters_data();
    void qtNameFilters();
    void filterIndexOf_data();
    void filterIndexOf();
    void displayText_data();
    void displayText();
};

void TestDialogText::qtNameFilters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("filters");
    QTest::newRow("script files")
        << "Text Files (*.txt)|*.txt|VBScript Files (*.vbs)|*.vbs|All Files (*.*)|*.*"
        << QStringList{"Text Files (*.txt) (*.txt)", "VBScript Files (*.vbs) (*.vbs)", "All Files (*.*) (*)"};
    QTest::newRow("no blank before the parenthesis")
        << "VBScript Files(*.vbs)|*.vbs" << QStringList{"VBScript Files(*.vbs) (*.vbs)"};
    QTest::newRow("several patterns")
        << "Scripts|*.vbs;*.js; *.txt" << QStringList{"Scripts (*.vbs *.js *.txt)"};
    QTest::newRow("a description without patterns takes every file")
        << "Nothing||Text|*.txt" << QStringList{"Nothing (*)", "Text (*.txt)"};
    QTest::newRow("a description left alone at the end")
        << "Text|*.txt|Dangling" << QStringList{"Text (*.txt)"};
}

void TestDialogText::qtNameFilters()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, filters);
    QCOMPARE(ui::qtNameFilters(filter), filters);
}

void TestDialogText::filterIndexOf_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("index");
    QTest::newRow("first") << "Text Files (*.txt) (*.txt)" << 1;
    QTest::newRow("the description alone") << "VBScript Files (*.vbs)" << 2;
    QTest::newRow("the description of all files") << "All Files (*.*)" << 3;
    QTest::newRow("none of them") << "Images (*.png)" << 0;
    QTest::newRow("a part of a description") << "Text Files" << 0;
}

void TestDialogText::filterIndexOf()
{
    QFETCH(QString, chosen);
    QFETCH(int, index);
    const QStringList filters = ui::qtNameFilters(
        QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files (*.vbs)|*.vbs|All Files (*.*)|*.*"));
    QCOMPARE(ui::filterIndexOf(filters, chosen), index);
}

void TestDialogText::displayText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("carriage return") << "Error# 70\rDescription: Permission denied"
                                     << "Error# 70\nDescription: Permission denied";
    QTest::newRow("CR LF is one break") << "a\r\nb"
                                        << "a\nb";
    QTest::newRow("two breaks") << "a\r\rb"
                                << "a\n\nb";
}

void TestDialogText::displayText()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QCOMPARE(ui::displayText(text), shown);
}

QTEST_GUILESS_MAIN(TestDialogText)
#include "test_dialogtext.moc"
