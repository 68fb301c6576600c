// The two forms of a handler's class identifier: registry form on the
// binding, memory-order hexadecimal in the binding message's handler field.
#include "platform/events/guid.h"

#include <QtTest>

class TestGuid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toMemoryOrder_data();
    void toMemoryOrder();
    void toRegistryForm_data();
    void toRegistryForm();
};

void TestGuid::toMemoryOrder_data()
{
    QTest::addColumn<QString>("classId");
    QTest::addColumn<QString>("field");
    QTest::newRow("script handler") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"
                                    << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("every group swapped but the last two") << "{01234567-89AB-CDEF-0123-456789ABCDEF}"
                                                          << "67452301AB89EFCD0123456789ABCDEF";
    QTest::newRow("lower-case digits") << "{69e54151-b371-11d0-bcd9-00aa00c1ab1c}"
                                       << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("no braces") << "69E54151-B371-11D0-BCD9-00AA00C1AB1C"
                               << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("one brace only") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C"
                                    << "";
    QTest::newRow("a digit short") << "{69E5415-B371-11D0-BCD9-00AA00C1AB1C}"
                                   << "";
    QTest::newRow("not hexadecimal") << "{69E5415G-B371-11D0-BCD9-00AA00C1AB1C}"
                                     << "";
}

void TestGuid::toMemoryOrder()
{
    QFETCH(QString, classId);
    QFETCH(QString, field);
    QCOMPARE(events::memoryOrderHex(classId), field);
}

void TestGuid::toRegistryForm_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("classId");
    QTest::newRow("script handler") << "5141E56971B3D011BCD900AA00C1AB1C"
                                    << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}";
    QTest::newRow("lower-case digits") << "5141e66971b3d011bcd900aa00c1ab1c"
                                       << "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}";
    QTest::newRow("31 digits") << "5141E56971B3D011BCD900AA00C1AB1"
                               << "";
    QTest::newRow("not hexadecimal") << "5141E56971B3D011BCD900AA00C1AB1X"
                                     << "";
}

void TestGuid::toRegistryForm()
{
    QFETCH(QString, field);
    QFETCH(QString, classId);
    QCOMPARE(events::registryForm(field), classId);
}

QTEST_GUILESS_MAIN(TestGuid)
#include "test_guid.moc"
