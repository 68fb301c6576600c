#include "app/basregistry.h"
#include "tests/support/testenv.h"

#include <QtTest>

#include <latch>
#include <thread>

using namespace registry;

namespace {

const QString kGeneral = QStringLiteral("Software\\Kelverd\\Sorrelin\\5.5\\General");

/// The type and bytes of a value as the registry holds them; type 0 and
/// null bytes when there is none.
std::pair<uint32_t, QByteArray> stored(Registry &reg, HKEY root, const QString &keyName, const QString &name)
{
    HKEY key = 0;
    if (reg.RegOpenKeyEx(root, keyName, &key) != ERROR_SUCCESS)
        return {0, QByteArray()};
    uint32_t type = 0;
    QByteArray data;
    if (reg.RegQueryValueEx(key, name, &type, &data, nullptr) != ERROR_SUCCESS)
        type = 0;
    reg.RegCloseKey(key);
    return {type, data};
}

void put(Registry &reg, HKEY root, const QString &keyName, const QString &name, uint32_t type,
         const QByteArray &data)
{
    HKEY key = 0;
    QCOMPARE(reg.RegCreateKeyEx(root, keyName, &key), ERROR_SUCCESS);
    QCOMPARE(reg.RegSetValueEx(key, name, type, data), ERROR_SUCCESS);
    reg.RegCloseKey(key);
}

bool keyExists(Registry &reg, HKEY root, const QString &keyName)
{
    HKEY key = 0;
    if (reg.RegOpenKeyEx(root, keyName, &key) != ERROR_SUCCESS)
        return false;
    reg.RegCloseKey(key);
    return true;
}

} // namespace

class TestBasRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void queryValue_data();
    void queryValue();
    void queryValueMakesNoKey();
    void queryValueEx_data();
    void queryValueEx();
    void setValueEx_data();
    void setValueEx();
    void setKeyValue_data();
    void setKeyValue();
    void refusedWriteStillGivesTrue();
    void roundTrip_data();
    void roundTrip();
    void twoWritersAtOnceLoseNothing();

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
};

void TestBasRegistry::init()
{
    m_home = std::make_unique<testsupport::TestHome>();
    m_reg = std::make_unique<Registry>(m_home->file(QStringLiteral("registry.db")));
}

void TestBasRegistry::cleanup()
{
    m_reg.reset();
    m_home.reset();
}

void TestBasRegistry::queryValue_data()
{
    QTest::addColumn<HKEY>("root");
    QTest::addColumn<QString>("keyName");
    QTest::addColumn<QString>("valueName");
    QTest::addColumn<QVariant>("expected"); // none: nothing, which reads as the empty text
    const QChar nul(u'\0');
    const HKEY user = HKEY_CURRENT_USER;
    QTest::newRow("no NUL: whole") << user << kGeneral << "Plain" << QVariant("yes");
    QTest::newRow("one trailing NUL taken off") << user << kGeneral << "OneNul" << QVariant("yes");
    QTest::newRow("only one NUL taken off")
        << user << kGeneral << "TwoNuls" << QVariant("yes" + QString(nul));
    QTest::newRow("a NUL inside stays") << user << kGeneral << "Inside" << QVariant("a" + QString(nul) + "b");
    QTest::newRow("empty") << user << kGeneral << "Empty" << QVariant(QString());
    QTest::newRow("UTF-8") << user << kGeneral << "Utf8" << QVariant(QStringLiteral("Caf\u00e9"));
    QTest::newRow("key missing") << user << kGeneral + QStringLiteral("\\Missing") << "Plain" << QVariant();
    QTest::newRow("value missing") << user << kGeneral << "RefreshOnStartup" << QVariant();
    QTest::newRow("another root") << HKEY_LOCAL_MACHINE << kGeneral << "Plain" << QVariant();
    QTest::newRow("bytes") << user << kGeneral << "Binary" << QVariant();
    QTest::newRow("a number too short") << user << kGeneral << "Short" << QVariant();
}

void TestBasRegistry::queryValue()
{
    QFETCH(HKEY, root);
    QFETCH(QString, keyName);
    QFETCH(QString, valueName);
    QFETCH(QVariant, expected);
    const std::tuple<const char *, uint32_t, QByteArray> values[] = {
        {"Plain", REG_SZ, QByteArray("yes")},
        {"OneNul", REG_SZ, QByteArray("yes\0", 4)},
        {"TwoNuls", REG_SZ, QByteArray("yes\0\0", 5)},
        {"Inside", REG_SZ, QByteArray("a\0b", 3)},
        {"Empty", REG_SZ, QByteArray()},
        {"Utf8", REG_SZ, QByteArray("Caf\xc3\xa9")},
        {"Binary", REG_BINARY, QByteArray("ab")},
        {"Short", REG_DWORD, QByteArray("ab")}};
    for (const auto &[name, type, bytes] : values)
        put(*m_reg, HKEY_CURRENT_USER, kGeneral, QString::fromLatin1(name), type, bytes);
    const QVariant v = basRegistry::QueryValue(*m_reg, root, keyName, valueName);
    QCOMPARE(v.typeId(), expected.isValid() ? QMetaType::QString : QMetaType::UnknownType);
    QCOMPARE(v, expected);
    // Nothing compares equal to the empty text, as the settings' readers take it.
    QCOMPARE(v.toString(), expected.toString());
}

void TestBasRegistry::queryValueMakesNoKey()
{
    QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("A")).isValid());
    QVERIFY(!keyExists(*m_reg, HKEY_CURRENT_USER, QStringLiteral("Software")));
}

void TestBasRegistry::queryValueEx_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<uint>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<long>("result");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << true << uint(REG_SZ) << QByteArray("Courier") << 0L
                          << QVariant(QStringLiteral("Courier"));
    QTest::newRow("text keeps its NUL") << true << uint(REG_SZ) << QByteArray("no\0", 3) << 0L
                                        << QVariant(QStringLiteral("no") + QChar(u'\0'));
    QTest::newRow("number") << true << uint(REG_DWORD) << QByteArray("\xfe\xff\xff\xff", 4) << 0L
                            << QVariant(-2);
    QTest::newRow("bytes: -1") << true << uint(REG_BINARY) << QByteArray("ab") << -1L << QVariant();
    QTest::newRow("expandable text: -1") << true << 2u << QByteArray("%HOME%") << -1L << QVariant();
    QTest::newRow("missing: the registry's code")
        << false << 0u << QByteArray() << ERROR_FILE_NOT_FOUND << QVariant();
}

void TestBasRegistry::queryValueEx()
{
    QFETCH(bool, exists);
    QFETCH(uint, type);
    QFETCH(QByteArray, bytes);
    QFETCH(long, result);
    QFETCH(QVariant, value);
    if (exists)
        put(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("V"), type, bytes);
    else
        put(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("Other"), REG_SZ, "x");
    HKEY key = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
    QVariant read = QStringLiteral("left from before");
    QCOMPARE(basRegistry::QueryValueEx(*m_reg, key, QStringLiteral("V"), read), result);
    QCOMPARE(read.isValid(), value.isValid());
    QCOMPARE(read, value);
    m_reg->RegCloseKey(key);
}

void TestBasRegistry::setValueEx_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<uint>("storedType");
    QTest::addColumn<QByteArray>("storedBytes");
    QTest::newRow("text: its own length, no NUL")
        << uint(REG_SZ) << QVariant(QStringLiteral("Courier")) << uint(REG_SZ) << QByteArray("Courier");
    QTest::newRow("text of a number") << uint(REG_SZ) << QVariant(10.8) << uint(REG_SZ) << QByteArray("10.8");
    QTest::newRow("number: 4 bytes") << uint(REG_DWORD) << QVariant(258) << uint(REG_DWORD)
                                     << QByteArray("\x02\x01\0\0", 4);
    QTest::newRow("bytes: nothing") << uint(REG_BINARY) << QVariant(QStringLiteral("ab")) << 0u
                                    << QByteArray();
    QTest::newRow("expandable text: nothing") << 2u << QVariant(QStringLiteral("ab")) << 0u << QByteArray();
}

void TestBasRegistry::setValueEx()
{
    QFETCH(uint, type);
    QFETCH(QVariant, value);
    QFETCH(uint, storedType);
    QFETCH(QByteArray, storedBytes);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
    QCOMPARE(basRegistry::SetValueEx(*m_reg, key, QStringLiteral("V"), type, value), 0L);
    m_reg->RegCloseKey(key);
    const auto [readType, bytes] = stored(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("V"));
    QCOMPARE(readType, uint32_t(storedType));
    QCOMPARE(bytes, storedBytes);
}

void TestBasRegistry::setKeyValue_data()
{
    QTest::addColumn<QString>("keyName");
    QTest::addColumn<bool>("result");
    QTest::addColumn<bool>("written");
    QTest::newRow("plain") << kGeneral << true << true;
    QTest::newRow("leading backslash: the same key") << QStringLiteral("\\") + kGeneral << true << true;
    QTest::newRow("empty key name") << QString() << false << false;
}

void TestBasRegistry::setKeyValue()
{
    QFETCH(QString, keyName);
    QFETCH(bool, result);
    QFETCH(bool, written);
    QCOMPARE(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, keyName, QStringLiteral("FontName"),
                                      QStringLiteral("Courier"), REG_SZ),
             result);
    const QVariant v =
        basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("FontName"));
    QCOMPARE(v.isValid(), written);
    if (written) {
        QCOMPARE(v.toString(), QStringLiteral("Courier"));
        // Every parent was made on the way.
        QVERIFY(keyExists(*m_reg, HKEY_CURRENT_USER, QStringLiteral("Software\\Kelverd\\Sorrelin\\5.5")));
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
    Registry refusing(m_home->file(QStringLiteral("no/such/folder/registry.db")));
    QVERIFY(basRegistry::SetKeyValue(refusing, HKEY_CURRENT_USER, kGeneral, QStringLiteral("A"),
                                     QStringLiteral("1"), REG_SZ));
    QVERIFY(!basRegistry::QueryValue(refusing, HKEY_CURRENT_USER, kGeneral, QStringLiteral("A")).isValid());
}

void TestBasRegistry::roundTrip_data()
{
    QTest::addColumn<QVariant>("written");
    QTest::addColumn<uint>("type");
    QTest::addColumn<QVariant>("read");
    QTest::newRow("minus one") << QVariant(-1) << uint(REG_DWORD) << QVariant(-1);
    QTest::newRow("all bits, unsigned") << QVariant(0xFFFFFFFFu) << uint(REG_DWORD) << QVariant(-1);
    QTest::newRow("the sign bit, unsigned") << QVariant(0x80000000u) << uint(REG_DWORD) << QVariant(INT_MIN);
    QTest::newRow("empty text") << QVariant(QString()) << uint(REG_SZ) << QVariant(QString());
    const QString text = QStringLiteral("\u00c5ngstr\u00f6m \u65e5\u672c\rtwo\r\nthree");
    QTest::newRow("text beyond Latin-1, line breaks") << QVariant(text) << uint(REG_SZ) << QVariant(text);
}

void TestBasRegistry::roundTrip()
{
    QFETCH(QVariant, written);
    QFETCH(uint, type);
    QFETCH(QVariant, read);
    QVERIFY(
        basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("V"), written, type));
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, QStringLiteral("V"));
    QCOMPARE(v.typeId(), read.typeId());
    QCOMPARE(v, read);
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
            basRegistry::SetKeyValue(reg, HKEY_CURRENT_USER,
                                     QStringLiteral("Shared\\%1\\%2").arg(i % 7).arg(who),
                                     QStringLiteral("v"), QString::number(i), REG_SZ);
        }
    };
    std::thread a(writer, QStringLiteral("a"));
    std::thread b(writer, QStringLiteral("b"));
    a.join();
    b.join();
    for (const QString &who : {QStringLiteral("a"), QStringLiteral("b")}) {
        for (int i = 0; i < kWrites; ++i) {
            const QVariant v =
                basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, who + QString::number(i));
            QVERIFY2(v.isValid(), qPrintable(who + QString::number(i)));
            QCOMPARE(v.toInt(), i);
        }
        for (int k = 0; k < 7; ++k) {
            const QString key = QStringLiteral("Shared\\%1\\%2").arg(k).arg(who);
            const int last = kWrites - 1 - ((kWrites - 1 - k) % 7);
            QCOMPARE(basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, key, QStringLiteral("v")).toString(),
                     QString::number(last));
        }
    }
    // One key a name: the shared parents weren't made twice.
    HKEY shared = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, QStringLiteral("Shared\\3"), &shared), ERROR_SUCCESS);
    QString name;
    QCOMPARE(m_reg->RegEnumKeyEx(shared, 2, &name), ERROR_NO_MORE_ITEMS);
    m_reg->RegCloseKey(shared);
}

QTEST_GUILESS_MAIN(TestBasRegistry)
#include "test_basregistry.moc"
