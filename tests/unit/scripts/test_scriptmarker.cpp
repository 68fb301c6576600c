#include "scripts/scriptmarker.h"

#include <QtTest>

class TestScriptMarker : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void marker_data();
    void marker();
};

void TestScriptMarker::marker_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("as written") << "<SCRIPT RunAt=Server Language=VBScript>" << true;
    QTest::newRow("lower case, later in the text")
        << "' note\r\n<script runat=server language=JScript>" << true;
    QTest::newRow("no language attribute") << "<SCRIPT RunAt=Server>" << false;
    QTest::newRow("two blanks") << "<SCRIPT  RunAt=Server Language=VBScript>" << false;
    QTest::newRow("marker alone") << "<SCRIPT RunAt=Server Language=" << true;
}

void TestScriptMarker::marker()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QCOMPARE(scripts::hasScriptMarker(text), valid);
}

QTEST_GUILESS_MAIN(TestScriptMarker)
#include "test_scriptmarker.moc"
