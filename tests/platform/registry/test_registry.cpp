#include "app/basregistry.h"
#include "platform/registry/defaults.h"
#include "tests/support/testenv.h"

#include <QProcess>
#include <QtTest>

using namespace registry;

class TestRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void queryValue_data();
    void queryValue();
    void missingKeyOrValue();
    void setKeyValue_data();
    void setKeyValue();
    void dword();
    void otherTypes();
    void caseInsensitiveKeys();
    void twoWritersLoseNothing();
    void desktopDefaults();

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
    const QString m_key = QStringLiteral("Software\\Kelverd\\Sorrelin\\5.5\\General");
};

void TestRegistry::init()
{
    m_home = std::make_unique<testsupport::TestHome>();
    m_reg = std::make_unique<Registry>(m_home->file(QStringLiteral("registry.db")));
}

void TestRegistry::cleanup()
{
    m_reg.reset();
    m_home.reset();
}

void TestRegistry::queryValue_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no NUL: whole") << QByteArray("yes") << "yes";
    QTest::newRow("one trailing NUL taken off") << QByteArray("yes\0", 4) << "yes";
    QTest::newRow("only one NUL taken off")
        << QByteArray("yes\0\0", 5) << QStringLiteral("yes") + QChar(u'\0');
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("NUL alone") << QByteArray("\0", 1) << "";
    QTest::newRow("UTF-8 text") << QByteArray("Caf\xc3\xa9") << QStringLiteral("Caf\u00e9");
}

void TestRegistry::queryValue()
{
    QFETCH(QByteArray, stored);
    QFETCH(QString, expected);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, m_key, &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("Value"), REG_SZ, stored), ERROR_SUCCESS);
    m_reg->RegCloseKey(key);
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("Value"));
    QCOMPARE(v.toString(), expected);
}

void TestRegistry::missingKeyOrValue()
{
    QVariant v =
        basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("RefreshOnStartup"));
    QVERIFY(!v.isValid());
    QCOMPARE(v.toString(), QString()); // compares equal to the empty text
    // Reading doesn't make the key.
    HKEY key = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, m_key, &key), ERROR_FILE_NOT_FOUND);
    QVERIFY(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("A"),
                                     QStringLiteral("1"), REG_SZ));
    v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("B"));
    QVERIFY(!v.isValid());
    // Another root is another tree.
    v = basRegistry::QueryValue(*m_reg, HKEY_LOCAL_MACHINE, m_key, QStringLiteral("A"));
    QVERIFY(!v.isValid());
}

void TestRegistry::setKeyValue_data()
{
    QTest::addColumn<QString>("keyName");
    QTest::addColumn<bool>("result");
    QTest::addColumn<bool>("written");
    QTest::newRow("plain") << m_key << true << true;
    QTest::newRow("leading backslash: same key") << QStringLiteral("\\") + m_key << true << true;
    QTest::newRow("empty key name") << QString() << false << false;
    QTest::newRow("backslash alone") << QStringLiteral("\\") << false << false;
}

void TestRegistry::setKeyValue()
{
    QFETCH(QString, keyName);
    QFETCH(bool, result);
    QFETCH(bool, written);
    QCOMPARE(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, keyName, QStringLiteral("FontName"),
                                      QStringLiteral("Courier"), REG_SZ),
             result);
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("FontName"));
    QCOMPARE(v.isValid(), written);
    if (written) {
        QCOMPARE(v.toString(), QStringLiteral("Courier"));
        // Written with the length of the text, no NUL.
        HKEY key = 0;
        QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, m_key, &key), ERROR_SUCCESS);
        uint32_t type = 0, size = 0;
        QCOMPARE(m_reg->RegQueryValueEx(key, QStringLiteral("FontName"), &type, nullptr, &size),
                 ERROR_SUCCESS);
        QCOMPARE(type, REG_SZ);
        QCOMPARE(size, 7u);
        m_reg->RegCloseKey(key);
    }
}

void TestRegistry::dword()
{
    QVERIFY(
        basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("Count"), -5, REG_DWORD));
    const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("Count"));
    QCOMPARE(v.typeId(), QMetaType::Int);
    QCOMPARE(v.toInt(), -5);
}

void TestRegistry::otherTypes()
{
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, m_key, &key), ERROR_SUCCESS);
    // SetValueEx of another type writes nothing and gives 0.
    QCOMPARE(basRegistry::SetValueEx(*m_reg, key, QStringLiteral("Bin"), REG_BINARY, QByteArray("ab")), 0L);
    uint32_t size = 0;
    QCOMPARE(m_reg->RegQueryValueEx(key, QStringLiteral("Bin"), nullptr, nullptr, &size),
             ERROR_FILE_NOT_FOUND);
    // A binary value written by someone else reads as -1 and empty.
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("Bin"), REG_BINARY, QByteArray("ab")), ERROR_SUCCESS);
    QVariant v = QStringLiteral("untouched");
    QCOMPARE(basRegistry::QueryValueEx(*m_reg, key, QStringLiteral("Bin"), v), -1L);
    QCOMPARE(v.toString(), QStringLiteral("untouched"));
    QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("Bin")).isValid());
    m_reg->RegCloseKey(key);
}

void TestRegistry::caseInsensitiveKeys()
{
    QVERIFY(basRegistry::SetKeyValue(*m_reg, HKEY_CLASSES_ROOT,
                                     QStringLiteral("txtFile\\shell\\open\\command"), QString(),
                                     QStringLiteral("edit \"%1\""), REG_SZ));
    QCOMPARE(basRegistry::QueryValue(*m_reg, HKEY_CLASSES_ROOT,
                                     QStringLiteral("TXTFILE\\Shell\\Open\\Command"), QString())
                 .toString(),
             QStringLiteral("edit \"%1\""));
}

void TestRegistry::twoWritersLoseNothing()
{
    // Two registries on one file, as two programs would hold it.
    Registry other(m_reg->path());
    for (int i = 0; i < 50; ++i) {
        QVERIFY(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("a%1").arg(i), i,
                                         REG_DWORD));
        QVERIFY(basRegistry::SetKeyValue(other, HKEY_CURRENT_USER, m_key, QStringLiteral("b%1").arg(i), i,
                                         REG_DWORD));
    }
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(
            basRegistry::QueryValue(other, HKEY_CURRENT_USER, m_key, QStringLiteral("a%1").arg(i)).toInt(),
            i);
        QCOMPARE(
            basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, m_key, QStringLiteral("b%1").arg(i)).toInt(),
            i);
    }
}

void TestRegistry::desktopDefaults()
{
    const ProgramLookup lookup = [](const QString &name) {
        return name == QLatin1String("gedit") ? QStringLiteral("/usr/bin/gedit") : QString();
    };
    fillDesktopDefaults(*m_reg, lookup);
    QCOMPARE(basRegistry::QueryValue(*m_reg, HKEY_CLASSES_ROOT,
                                     QStringLiteral("txtFile\\shell\\open\\command"), QString())
                 .toString(),
             QStringLiteral("\"/usr/bin/gedit\" \"%1\""));
    QCOMPARE(basRegistry::QueryValue(*m_reg, HKEY_CLASSES_ROOT,
                                     QStringLiteral("Wordpad.Document.1\\shell\\open\\command"), QString())
                 .toString(),
             QStringLiteral("\"/usr/bin/gedit\" \"%1\""));
    // No system information program was found: no value.
    QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_LOCAL_MACHINE,
                                     QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                                     QStringLiteral("PATH"))
                 .isValid());
}

QTEST_GUILESS_MAIN(TestRegistry)
#include "test_registry.moc"
