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
    void roundTrip_data();
    void roundTrip();
};

void TestGuid::toMemoryOrder_data()
{
    QTest::addColumn<QString>("classId");
    QTest::addColumn<QString>("field");
    QTest::newRow("script handler") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"
                                    << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("routing handler") << "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}"
                                     << "5141E66971B3D011BCD900AA00C1AB1C";
    QTest::newRow("every group swapped but the last two") << "{01234567-89AB-CDEF-0123-456789ABCDEF}"
                                                          << "67452301AB89EFCD0123456789ABCDEF";
    QTest::newRow("lower-case digits") << "{69e54151-b371-11d0-bcd9-00aa00c1ab1c}"
                                       << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("no braces") << "69E54151-B371-11D0-BCD9-00AA00C1AB1C"
                               << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("nil identifier") << "{00000000-0000-0000-0000-000000000000}"
                                    << "00000000000000000000000000000000";
    QTest::newRow("one brace only") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C"
                                    << "";
    QTest::newRow("no dashes") << "{69E54151B37111D0BCD900AA00C1AB1C}"
                               << "";
    QTest::newRow("a digit short") << "{69E5415-B371-11D0-BCD9-00AA00C1AB1C}"
                                   << "";
    QTest::newRow("not hexadecimal") << "{69E5415G-B371-11D0-BCD9-00AA00C1AB1C}"
                                     << "";
    QTest::newRow("a name") << "Script Handler"
                            << "";
    QTest::newRow("empty") << ""
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
    QTest::newRow("33 digits") << "5141E56971B3D011BCD900AA00C1AB1C0"
                               << "";
    QTest::newRow("not hexadecimal") << "5141E56971B3D011BCD900AA00C1AB1X"
                                     << "";
    QTest::newRow("registry form") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"
                                   << "";
}

void TestGuid::toRegistryForm()
{
    QFETCH(QString, field);
    QFETCH(QString, classId);
    QCOMPARE(events::registryForm(field), classId);
}

void TestGuid::roundTrip_data()
{
    QTest::addColumn<QString>("classId");
    QTest::newRow("script") << events::kScriptHandler;
    QTest::newRow("routing") << events::kRoutingHandler;
    QTest::newRow("other") << "{8B1C2D3E-4F50-4A6B-9C7D-8E9F0A1B2C3D}";
}

void TestGuid::roundTrip()
{
    QFETCH(QString, classId);
    const QString field = events::memoryOrderHex(classId);
    QCOMPARE(field.size(), 32);
    QCOMPARE(field, field.toUpper());
    QCOMPARE(events::registryForm(field), classId);
}

QTEST_GUILESS_MAIN(TestGuid)
#include "test_guid.moc"
