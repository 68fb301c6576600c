// The pane gives back every byte of a script and its line ends, after the
// user has typed in it.
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QtTest>

class TestScriptPane : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyByteAndLineEndSurvivesAnEdit_data();
    void everyByteAndLineEndSurvivesAnEdit();
    void newLinesTakeTheUsualEnd();
};

namespace {
/// Every byte but the line-end bytes, in lines of 16, ended by `end`.
QByteArray everyByte(const QByteArray &end)
{
    QByteArray script;
    for (int b = 0; b < 256; ++b) {
        if (b != '\r' && b != '\n')
            script.append(static_cast<char>(b));
        if (b % 16 == 15)
            script.append(end);
    }
    return script;
}
} // namespace

void TestScriptPane::everyByteAndLineEndSurvivesAnEdit_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("CR LF") << everyByte("\r\n");
    QTest::newRow("LF") << everyByte("\n");
    QTest::newRow("CR") << everyByte("\r");
    QTest::newRow("mixed, no end on the last line") << QByteArray("a\rb\r\nc\nd\xA0");
}

void TestScriptPane::everyByteAndLineEndSurvivesAnEdit()
{
    QFETCH(QByteArray, script);
    scripts::ScriptPane pane;
    pane.setText(scripts::scriptToPane(script));
    QCOMPARE(scripts::paneToScript(pane.text()), script);
    // The user types a letter at the very start and another at the end.
    QTextCursor cursor = pane.textCursor();
    cursor.movePosition(QTextCursor::Start);
    pane.setTextCursor(cursor);
    QTest::keyClick(&pane, Qt::Key_X);
    cursor.movePosition(QTextCursor::End);
    pane.setTextCursor(cursor);
    QTest::keyClick(&pane, Qt::Key_Y);
    QCOMPARE(scripts::paneToScript(pane.text()), "x" + script + "y");
}

void TestScriptPane::newLinesTakeTheUsualEnd()
{
    scripts::ScriptPane pane;
    pane.setText(QStringLiteral("one\ntwo\nthree\r\n"));
    QCOMPARE(pane.lineCount(), 4);
    QTextCursor cursor = pane.textCursor();
    cursor.movePosition(QTextCursor::Start);
    cursor.movePosition(QTextCursor::EndOfLine);
    pane.setTextCursor(cursor);
    QTest::keyClick(&pane, Qt::Key_Return);
    QCOMPARE(pane.text(), QStringLiteral("one\n\ntwo\nthree\r\n"));
    // A new text without line ends gets the program's own.
    pane.setText(QStringLiteral("single"));
    QTest::keyClick(&pane, Qt::Key_Return);
    QVERIFY(pane.text().contains(QLatin1String("\r\n")));
}

QTEST_MAIN(TestScriptPane)
#include "test_scriptpane.moc"
