// GetKeyValue: what the About box reads to find the system information
// program.
#include "dialogs/sysinfo.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace registry;

namespace {
const QString kKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
}

class TestGetKeyValue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void read_data()
    {
        QTest::addColumn<uint32_t>("type");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("value");
        QTest::newRow("text") << REG_SZ << QByteArray("/usr/bin/hardinfo") << true
                              << QStringLiteral("/usr/bin/hardinfo");
        QTest::newRow("closing NUL cut")
            << REG_SZ << QByteArray("/usr/bin/x\0", 11) << true << QStringLiteral("/usr/bin/x");
        QTest::newRow("1024 bytes") << REG_SZ << QByteArray(1024, 'p') << true
                                    << QString(1024, QLatin1Char('p'));
        QTest::newRow("longer than the buffer") << REG_SZ << QByteArray(1025, 'p') << false << QString();
        QTest::newRow("a number gives no text")
            << REG_DWORD << QByteArray("\x01\0\0\0", 4) << true << QString();
        QTest::newRow("no such key") << 0u << QByteArray() << false << QString();
    }

    void read()
    {
        QFETCH(uint32_t, type);
        QFETCH(QByteArray, data);
        QFETCH(bool, result);
        QFETCH(QString, value);
        QTemporaryDir dir;
        Registry reg(dir.filePath(QStringLiteral("registry.db")));
        HKEY key = 0;
        if (type != 0) {
            QCOMPARE(reg.RegCreateKeyEx(HKEY_LOCAL_MACHINE, kKey, &key), ERROR_SUCCESS);
            QCOMPARE(reg.RegSetValueEx(key, QStringLiteral("PATH"), type, data), ERROR_SUCCESS);
            reg.RegCloseKey(key);
        }
        QString read = QStringLiteral("left over");
        QCOMPARE(dialogs::GetKeyValue(reg, HKEY_LOCAL_MACHINE, kKey, QStringLiteral("PATH"), read), result);
        if (result)
            QCOMPARE(read, value);
    }
};

QTEST_GUILESS_MAIN(TestGetKeyValue)
#include "test_getkeyvalue.moc"
