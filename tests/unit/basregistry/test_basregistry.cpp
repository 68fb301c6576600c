// The registry as the program reads and writes its settings, and as the
// About box reads it to find the system information program.
#include "app/basregistry.h"
#include "dialogs/sysinfo.h"
#include "tests/support/testenv.h"

#include <QtTest>

#include <latch>
#include <thread>

using namespace registry;
using namespace Qt::StringLiterals;

namespace {

const QString kGeneral = u"Software\\Kelverd\\Sorrelin\\5.5\\General"_s;

} // namespace

class TestBasRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<testsupport::TestHome>();
        m_reg = std::make_unique<Registry>(m_home->file(u"registry.db"_s));
    }
    void cleanup()
    {
        m_reg.reset();
        m_home.reset();
    }
    void queryValue_data();
    void queryValue();
    void roundTrip_data();
    void roundTrip();
    void setKeyValue_data();
    void setKeyValue();
    void refusedWriteStillGivesTrue();
    void twoWritersAtOnceLoseNothing();
    void getKeyValue_data();
    void getKeyValue();

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
};

void TestBasRegistry::queryValue_data()
{
    QTest::addColumn<HKEY>("root");
    QTest::addColumn<QString>("keyName");
    QTest::addColumn<uint>("type"); // of the value stored under kGeneral
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVariant>("expected"); // none: nothing, which reads as the empty text
    const QChar nul(u'\0');
    const HKEY user = HKEY_CURRENT_USER;
    const uint sz = REG_SZ;
    QTest::newRow("no NUL: whole") << user << kGeneral << sz << QByteArray("yes") << QVariant("yes");
    QTest::newRow("one trailing NUL taken off")
        << user << kGeneral << sz << QByteArray("yes\0", 4) << QVariant("yes");
    QTest::newRow("only one NUL taken off")
        << user << kGeneral << sz << QByteArray("yes\0\0", 5) << QVariant("yes" + QString(nul));
    QTest::newRow("a NUL inside stays")
        << user << kGeneral << sz << QByteArray("a\0b", 3) << QVariant("a" + QString(nul) + "b");
    QTest::newRow("empty") << user << kGeneral << sz << QByteArray() << QVariant(QString());
    QTest::newRow("UTF-8") << user << kGeneral << sz << QByteArray("Caf\xc3\xa9") << QVariant(u"Caf\u00e9"_s);
    QTest::newRow("key missing") << user << kGeneral + u"\\Missing"_s << sz << QByteArray("yes")
                                 << QVariant();
    QTest::newRow("another root") << HKEY_LOCAL_MACHINE << kGeneral << sz << QByteArray("yes") << QVariant();
    QTest::newRow("bytes") << user << kGeneral << uint(REG_BINARY) << QByteArray("ab") << QVariant();
    QTest::newRow("a number too short")
        << user << kGeneral << uint(REG_DWORD) << QByteArray("ab") << QVariant();
}

void TestBasRegistry::queryValue()
{
    QFETCH(HKEY, root);
    QFETCH(QString, keyName);
    QFETCH(uint, type);
    QFETCH(QByteArray, bytes);
    QFETCH(QVariant, expected);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, u"V"_s, type, bytes), ERROR_SUCCESS);
    m_reg->RegCloseKey(key);
    const QVariant v = basRegistry::QueryValue(*m_reg, root, keyName, u"V"_s);
    QCOMPARE(v.typeId(), expected.isValid() ? QMetaType::QString : QMetaType::UnknownType);
    QCOMPARE(v, expected);
    // A value of another name is none.
    QVERIFY(!basRegistry::QueryValue(*m_reg, root, keyName, u"RefreshOnStartup"_s).isValid());
}

void TestBasRegistry::roundTrip_data()
{
    QTest::addColumn<QVariant>("written");
    QTest::addColumn<uint>("type");
    QTest::addColumn<uint>("storedType"); // 0: nothing stored
    QTest::addColumn<QByteArray>("storedBytes");
    QTest::addColumn<QVariant>("read");
    const uint sz = REG_SZ;
    const uint dword = REG_DWORD;
    QTest::newRow("text: its own length, no NUL")
        << QVariant(u"Courier"_s) << sz << sz << QByteArray("Courier") << QVariant(u"Courier"_s);
    QTest::newRow("text of a number")
        << QVariant(10.8) << sz << sz << QByteArray("10.8") << QVariant(u"10.8"_s);
    QTest::newRow("empty text") << QVariant(QString()) << sz << sz << QByteArray() << QVariant(QString());
    const QString text = u"\u00c5ngstr\u00f6m \u65e5\u672c\rtwo\r\nthree"_s;
    QTest::newRow("text beyond Latin-1, line breaks")
        << QVariant(text) << sz << sz << text.toUtf8() << QVariant(text);
    QTest::newRow("number: 4 bytes") << QVariant(258) << dword << dword << QByteArray("\x02\x01\0\0", 4)
                                     << QVariant(258);
    QTest::newRow("minus one") << QVariant(-1) << dword << dword << QByteArray(4, '\xff') << QVariant(-1);
    QTest::newRow("all bits, unsigned")
        << QVariant(0xFFFFFFFFu) << dword << dword << QByteArray(4, '\xff') << QVariant(-1);
    QTest::newRow("the sign bit, unsigned")
        << QVariant(0x80000000u) << dword << dword << QByteArray("\0\0\0\x80", 4) << QVariant(INT_MIN);
    QTest::newRow("bytes: nothing") << QVariant(u"ab"_s) << uint(REG_BINARY) << 0u << QByteArray()
                                    << QVariant();
    QTest::newRow("expandable text: nothing") << QVariant(u"ab"_s) << 2u << 0u << QByteArray() << QVariant();
}

void TestBasRegistry::roundTrip()
{
    QFETCH(QVariant, written);
    QFETCH(uint, type);
    QFETCH(uint, storedType);
    QFETCH(QByteArray, storedBytes);
    QFETCH(QVariant, read);
    QVERIFY(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"V"_s, written, type));
    // As the registry holds it: the key is there whatever was written.
    HKEY key = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
    uint32_t readType = 0;
    QByteArray bytes;
    const long rc = m_reg->RegQueryValueEx(key, u"V"_s, &readType, &bytes, nullptr);
    m_reg->RegCloseKey(key);
    QCOMPARE(rc == ERROR_SUCCESS ? readType : 0u, uint32_t(storedType));
    QCOMPARE(bytes, storedBytes);
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"V"_s);
    QCOMPARE(v.typeId(), read.typeId());
    QCOMPARE(v, read);
}

void TestBasRegistry::setKeyValue_data()
{
    QTest::addColumn<QString>("keyName");
    QTest::addColumn<bool>("written");
    QTest::newRow("leading backslash: the same key") << u"\\"_s + kGeneral << true;
    QTest::newRow("empty key name") << QString() << false;
}

void TestBasRegistry::setKeyValue()
{
    QFETCH(QString, keyName);
    QFETCH(bool, written);
    QCOMPARE(
        basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, keyName, u"FontName"_s, u"Courier"_s, REG_SZ),
        written);
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"FontName"_s);
    QCOMPARE(v.isValid(), written);
    if (written) {
        QCOMPARE(v.toString(), u"Courier"_s);
        // Every parent was made on the way.
        HKEY parent = 0;
        QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, u"Software\\Kelverd\\Sorrelin\\5.5"_s, &parent),
                 ERROR_SUCCESS);
        m_reg->RegCloseKey(parent);
    } else {
        // Nothing at all was written: no key either.
        QString name;
        QCOMPARE(m_reg->RegEnumKeyEx(HKEY_CURRENT_USER, 0, &name), ERROR_NO_MORE_ITEMS);
    }
}

void TestBasRegistry::refusedWriteStillGivesTrue()
{
    // A registry that can't be written: every call is refused, and only a
    // raised error would give false.
    Registry refusing(m_home->file(u"no/such/folder/registry.db"_s));
    QVERIFY(basRegistry::SetKeyValue(refusing, HKEY_CURRENT_USER, kGeneral, u"A"_s, u"1"_s, REG_SZ));
    QVERIFY(!basRegistry::QueryValue(refusing, HKEY_CURRENT_USER, kGeneral, u"A"_s).isValid());
}

void TestBasRegistry::twoWritersAtOnceLoseNothing()
{
    // Two registries on one file, each in a thread of its own as two
    // programs would hold it, writing at the same moment under shared and
    // own keys. The routines don't look at return codes, so a write lost
    // to the other writer would only show as a missing value.
    constexpr int kWrites = 150;
    const QString path = m_reg->path();
    std::latch start(2);
    const auto writer = [&](const QString &who) {
        Registry reg(path);
        start.arrive_and_wait();
        for (int i = 0; i < kWrites; ++i) {
            basRegistry::SetKeyValue(reg, HKEY_CURRENT_USER, kGeneral, who + QString::number(i), i,
                                     REG_DWORD);
            basRegistry::SetKeyValue(reg, HKEY_CURRENT_USER, u"Shared\\%1\\%2"_s.arg(i % 7).arg(who), u"v"_s,
                                     QString::number(i), REG_SZ);
        }
    };
    std::thread a(writer, u"a"_s);
    std::thread b(writer, u"b"_s);
    a.join();
    b.join();
    for (const QString &who : {u"a"_s, u"b"_s}) {
        for (int i = 0; i < kWrites; ++i) {
            const QVariant v =
                basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, who + QString::number(i));
            QVERIFY2(v.isValid(), qPrintable(who + QString::number(i)));
            QCOMPARE(v.toInt(), i);
        }
        for (int k = 0; k < 7; ++k) {
            const QString key = u"Shared\\%1\\%2"_s.arg(k).arg(who);
            const int last = kWrites - 1 - ((kWrites - 1 - k) % 7);
            QCOMPARE(basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, key, u"v"_s).toString(),
                     QString::number(last));
        }
    }
    // One key a name: the shared parents weren't made twice.
    HKEY shared = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, u"Shared\\3"_s, &shared), ERROR_SUCCESS);
    QString name;
    QCOMPARE(m_reg->RegEnumKeyEx(shared, 2, &name), ERROR_NO_MORE_ITEMS);
    m_reg->RegCloseKey(shared);
}

void TestBasRegistry::getKeyValue_data()
{
    QTest::addColumn<uint32_t>("type"); // 0: no key
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("value");
    QTest::newRow("text") << REG_SZ << QByteArray("/usr/bin/hardinfo") << true << u"/usr/bin/hardinfo"_s;
    QTest::newRow("closing NUL cut") << REG_SZ << QByteArray("/usr/bin/x\0", 11) << true << u"/usr/bin/x"_s;
    QTest::newRow("1024 bytes") << REG_SZ << QByteArray(1024, 'p') << true << QString(1024, QLatin1Char('p'));
    QTest::newRow("longer than the buffer") << REG_SZ << QByteArray(1025, 'p') << false << QString();
    QTest::newRow("no such key") << 0u << QByteArray() << false << QString();
}

void TestBasRegistry::getKeyValue()
{
    QFETCH(uint32_t, type);
    QFETCH(QByteArray, data);
    QFETCH(bool, result);
    QFETCH(QString, value);
    const QString msinfo = u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s;
    HKEY key = 0;
    if (type != 0) {
        QCOMPARE(m_reg->RegCreateKeyEx(HKEY_LOCAL_MACHINE, msinfo, &key), ERROR_SUCCESS);
        QCOMPARE(m_reg->RegSetValueEx(key, u"PATH"_s, type, data), ERROR_SUCCESS);
        m_reg->RegCloseKey(key);
    }
    QString read = u"left over"_s;
    QCOMPARE(dialogs::GetKeyValue(*m_reg, HKEY_LOCAL_MACHINE, msinfo, u"PATH"_s, read), result);
    if (result)
        QCOMPARE(read, value);
}

QTEST_GUILESS_MAIN(TestBasRegistry)
#include "test_basregistry.moc"
