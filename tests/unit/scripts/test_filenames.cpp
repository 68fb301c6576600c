#include "scripts/filenames.h"

#include <QtTest>

class TestFileNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanFileName_data();
    void cleanFileName();
};

void TestFileNames::cleanFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("slash and colon") << "Reply: a/b"
                                     << "Reply  a b";
    QTest::newRow("neighbours not merged") << "a:/b"
                                           << "a  b";
    QTest::newRow("all six") << ":/\\|><"
                             << "      ";
    QTest::newRow("others kept") << "What? *\"now\""
                                 << "What? *\"now\"";
    QTest::newRow("no trimming") << " x: "
                                 << " x  ";
}

void TestFileNames::cleanFileName()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QString argument = name;
    const QString result = scripts::CleanFileName(argument);
    QCOMPARE(result, expected);
    QCOMPARE(argument, expected); // the argument becomes the result too
    QCOMPARE(result.size(), name.size());
}

QTEST_GUILESS_MAIN(TestFileNames)
#include "test_filenames.moc"
