#include "platform/registry/defaults.h"
#include "platform/registry/registry.h"
#include "tests/support/testenv.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using namespace registry;

namespace {

/// Every subkey name of a key, in the order the registry gives them.
QStringList subkeys(Registry &reg, HKEY key)
{
    QStringList names;
    QString name;
    for (uint32_t i = 0; reg.RegEnumKeyEx(key, i, &name) == ERROR_SUCCESS; ++i)
        names << name;
    return names;
}

/// A REG_SZ value as text, or a null string when there is none.
QString text(Registry &reg, HKEY root, const QString &keyName, const QString &valueName)
{
    HKEY key = 0;
    if (reg.RegOpenKeyEx(root, keyName, &key) != ERROR_SUCCESS)
        return QString();
    QByteArray data;
    uint32_t type = 0;
    const long rc = reg.RegQueryValueEx(key, valueName, &type, &data, nullptr);
    reg.RegCloseKey(key);
    return rc == ERROR_SUCCESS && type == REG_SZ ? QString::fromUtf8(data) : QString();
}

} // namespace

class TestRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void openKey_data();
    void openKey();
    void keyTree();
    void handles();
    void values_data();
    void values();
    void valueNamesIgnoreCase();
    void readWithABuffer_data();
    void readWithABuffer();
    void keptInTheFile();
    void fileThatCannotBeOpened();
    void firstLayoutIsConverted();
    void desktopDefaults_data();
    void desktopDefaults();

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
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

void TestRegistry::openKey_data()
{
    QTest::addColumn<QString>("created");
    QTest::addColumn<QString>("opened");
    QTest::addColumn<long>("result");
    QTest::newRow("same path") << "Software\\Kelverd\\Sorrelin"
                               << "Software\\Kelverd\\Sorrelin" << ERROR_SUCCESS;
    QTest::newRow("separators at the ends") << "Software\\Kelverd"
                                            << "\\Software\\Kelverd\\" << ERROR_SUCCESS;
    QTest::newRow("a child never made") << "Software\\Kelverd"
                                        << "Software\\Kelverd\\Sorrelin" << ERROR_FILE_NOT_FOUND;
    QTest::newRow("a prefix of a name") << "Software\\Kelverd"
                                        << "Software\\Kel" << ERROR_FILE_NOT_FOUND;
}

void TestRegistry::openKey()
{
    QFETCH(QString, created);
    QFETCH(QString, opened);
    QFETCH(long, result);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, created, &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegCloseKey(key), ERROR_SUCCESS);
    key = 0;
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, opened, &key), result);
    if (result == ERROR_SUCCESS) {
        QVERIFY(key != 0);
        QCOMPARE(m_reg->RegCloseKey(key), ERROR_SUCCESS);
    }
}

void TestRegistry::keyTree()
{
    HKEY key = 0;
    for (const char *path : {"P\\beta", "P\\Alpha", "P\\gamma\\deep\\down", "Q\\other"}) {
        QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QString::fromLatin1(path), &key), ERROR_SUCCESS);
        m_reg->RegCloseKey(key);
    }
    QCOMPARE(subkeys(*m_reg, HKEY_CURRENT_USER), (QStringList{QStringLiteral("P"), QStringLiteral("Q")}));
    // Creating an existing key opens it, whatever its case; children in name order.
    HKEY parent = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("p"), &parent), ERROR_SUCCESS);
    QCOMPARE(subkeys(*m_reg, parent),
             (QStringList{QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("gamma")}));
    // Below an open key, the parents made on the way.
    QCOMPARE(m_reg->RegOpenKeyEx(parent, QStringLiteral("GAMMA\\Deep"), &key), ERROR_SUCCESS);
    QCOMPARE(subkeys(*m_reg, key), QStringList{QStringLiteral("down")});
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("V"), REG_SZ, "x"), ERROR_SUCCESS);
    m_reg->RegCloseKey(key);
    QCOMPARE(text(*m_reg, parent, QStringLiteral("gamma\\deep"), QStringLiteral("V")), QStringLiteral("x"));
    m_reg->RegCloseKey(parent);
    QCOMPARE(subkeys(*m_reg, HKEY_CURRENT_USER), (QStringList{QStringLiteral("P"), QStringLiteral("Q")}));
}

void TestRegistry::handles()
{
    HKEY first = 0;
    HKEY second = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("K"), &first), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, QStringLiteral("K"), &second), ERROR_SUCCESS);
    QVERIFY(first != second);
    QCOMPARE(m_reg->RegCloseKey(first), ERROR_SUCCESS);
    // A closed handle names nothing any more; the other one still works.
    QCOMPARE(m_reg->RegCloseKey(first), ERROR_INVALID_HANDLE);
    QCOMPARE(m_reg->RegSetValueEx(first, QStringLiteral("V"), REG_SZ, "x"), ERROR_INVALID_HANDLE);
    QCOMPARE(m_reg->RegSetValueEx(second, QStringLiteral("V"), REG_SZ, "x"), ERROR_SUCCESS);
    for (const HKEY bad : {first, HKEY(0), HKEY(4242), HKEY(0x80000005LL)}) {
        HKEY h = 0;
        QCOMPARE(m_reg->RegOpenKeyEx(bad, QStringLiteral("K"), &h), ERROR_INVALID_HANDLE);
    }
    // Roots are always open and can't be closed away.
    QCOMPARE(m_reg->RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    QCOMPARE(subkeys(*m_reg, HKEY_CURRENT_USER), QStringList{QStringLiteral("K")});
    m_reg->RegCloseKey(second);
}

void TestRegistry::values_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<uint>("type");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("text") << "FontName" << uint(REG_SZ) << QByteArray("Times New Roman");
    QTest::newRow("default value") << QString() << uint(REG_SZ) << QByteArray("txtfile");
    QTest::newRow("number") << "Count" << uint(REG_DWORD) << QByteArray("\x2a\0\0\0", 4);
    QTest::newRow("bytes with NULs") << "Blob" << uint(REG_BINARY) << QByteArray("\0\x01\0\xff", 4);
    QTest::newRow("text with a NUL at its end") << "Z" << uint(REG_SZ) << QByteArray("yes\0", 4);
}

void TestRegistry::values()
{
    QFETCH(QString, name);
    QFETCH(uint, type);
    QFETCH(QByteArray, data);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("V"), &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, name, type, data), ERROR_SUCCESS);
    uint32_t readType = 0;
    uint32_t size = 0;
    QCOMPARE(m_reg->RegQueryValueEx(key, name, &readType, nullptr, &size), ERROR_SUCCESS);
    QCOMPARE(readType, type);
    QCOMPARE(size, uint32_t(data.size()));
    QByteArray read("stale");
    QCOMPARE(m_reg->RegQueryValueEx(key, name, nullptr, &read, &size), ERROR_SUCCESS);
    QCOMPARE(read, data);
    // The default value and a named one are two values.
    const QString other = name.isEmpty() ? QStringLiteral("Named") : QString();
    QCOMPARE(m_reg->RegQueryValueEx(key, other, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    m_reg->RegCloseKey(key);
}

void TestRegistry::valueNamesIgnoreCase()
{
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("V"), &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("FontSize"), REG_SZ, "10.8"), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("FONTSIZE"), REG_DWORD, QByteArray("\x0c\0\0\0", 4)),
             ERROR_SUCCESS);
    QByteArray data;
    uint32_t type = 0;
    QCOMPARE(m_reg->RegQueryValueEx(key, QStringLiteral("fontsize"), &type, &data, nullptr), ERROR_SUCCESS);
    QCOMPARE(type, REG_DWORD);
    QCOMPARE(data, QByteArray("\x0c\0\0\0", 4));
    QCOMPARE(m_reg->RegDeleteValue(key, QStringLiteral("fONTsIZE")), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegQueryValueEx(key, QStringLiteral("FontSize"), &type, &data, nullptr),
             ERROR_FILE_NOT_FOUND);
    m_reg->RegCloseKey(key);
}

void TestRegistry::readWithABuffer_data()
{
    QTest::addColumn<uint>("buffer");
    QTest::addColumn<long>("result");
    QTest::addColumn<uint>("sizeAfter");
    QTest::newRow("larger") << 100u << ERROR_SUCCESS << 6u;
    QTest::newRow("just right") << 6u << ERROR_SUCCESS << 6u;
    QTest::newRow("one short") << 5u << ERROR_MORE_DATA << 6u;
    QTest::newRow("none") << 0u << ERROR_MORE_DATA << 6u;
}

void TestRegistry::readWithABuffer()
{
    QFETCH(uint, buffer);
    QFETCH(long, result);
    QFETCH(uint, sizeAfter);
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("V"), &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("Six"), REG_SZ, "abcdef"), ERROR_SUCCESS);
    QByteArray data("stale");
    uint32_t size = buffer;
    QCOMPARE(m_reg->RegQueryValueEx(key, QStringLiteral("Six"), nullptr, &data, &size), result);
    QCOMPARE(size, uint32_t(sizeAfter));
    QCOMPARE(data, result == ERROR_SUCCESS ? QByteArray("abcdef") : QByteArray("stale"));
    m_reg->RegCloseKey(key);
}

void TestRegistry::keptInTheFile()
{
    HKEY key = 0;
    QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("Kept"), &key), ERROR_SUCCESS);
    QCOMPARE(m_reg->RegSetValueEx(key, QStringLiteral("V"), REG_SZ, "still here"), ERROR_SUCCESS);
    m_reg->RegCloseKey(key);
    const QString path = m_reg->path();
    m_reg.reset();
    Registry again(path);
    QCOMPARE(text(again, HKEY_CURRENT_USER, QStringLiteral("kept"), QStringLiteral("v")),
             QStringLiteral("still here"));
}

void TestRegistry::fileThatCannotBeOpened()
{
    Registry nowhere(m_home->file(QStringLiteral("no/such/folder/registry.db")));
    HKEY key = 0;
    uint32_t size = 0;
    QCOMPARE(nowhere.RegCreateKeyEx(HKEY_CURRENT_USER, QStringLiteral("K"), &key), ERROR_BADDB);
    QCOMPARE(nowhere.RegQueryValueEx(HKEY_CURRENT_USER, QStringLiteral("V"), nullptr, nullptr, &size),
             ERROR_BADDB);
}

void TestRegistry::firstLayoutIsConverted()
{
    // A registry as the first release of the program left it.
    const QString path = m_home->file(QStringLiteral("first.db"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("first"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        QVERIFY(q.exec(QStringLiteral("CREATE TABLE keys(id INTEGER PRIMARY KEY, root INTEGER NOT NULL,"
                                      " path TEXT NOT NULL, UNIQUE(root, path COLLATE NOCASE))")));
        QVERIFY(q.exec(QStringLiteral("CREATE TABLE \"values\"(key INTEGER NOT NULL REFERENCES keys(id)"
                                      " ON DELETE CASCADE, name TEXT NOT NULL, type INTEGER NOT NULL,"
                                      " data BLOB NOT NULL, PRIMARY KEY(key, name COLLATE NOCASE))")));
        QVERIFY(
            q.exec(QStringLiteral("INSERT INTO keys VALUES(7, %1, 'Software'), (3, %1, 'Software\\Kelverd'),"
                                  " (9, %1, 'Software\\Kelverd\\Sorrelin')")
                       .arg(HKEY_CURRENT_USER)));
        QVERIFY(
            q.exec(QStringLiteral("INSERT INTO \"values\" VALUES(9, 'FontName', 1, CAST('Courier' AS BLOB)),"
                                  " (9, '', 1, CAST('default' AS BLOB))")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("first"));
    Registry converted(path);
    const QString key = QStringLiteral("SOFTWARE\\kelverd\\sorrelin");
    QCOMPARE(text(converted, HKEY_CURRENT_USER, key, QStringLiteral("fontname")), QStringLiteral("Courier"));
    QCOMPARE(text(converted, HKEY_CURRENT_USER, key, QString()), QStringLiteral("default"));
    HKEY h = 0;
    QCOMPARE(converted.RegOpenKeyEx(HKEY_CURRENT_USER, QStringLiteral("Software\\Kelverd"), &h),
             ERROR_SUCCESS);
    QCOMPARE(subkeys(converted, h), QStringList{QStringLiteral("Sorrelin")});
    converted.RegCloseKey(h);
    // And it goes on as a registry of today.
    QCOMPARE(converted.RegCreateKeyEx(HKEY_CURRENT_USER, key + QStringLiteral("\\New"), &h), ERROR_SUCCESS);
    converted.RegCloseKey(h);
}

void TestRegistry::desktopDefaults_data()
{
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QString>("desktopDefault");
    QTest::addColumn<QString>("notepad");
    QTest::addColumn<QString>("wordpad");
    QTest::addColumn<QString>("visualBasic");
    QTest::addColumn<QString>("msinfo");
    QTest::newRow("nothing installed")
        << QStringList() << QString() << QString() << QString() << QString() << QString();
    QTest::newRow("gedit alone: told to wait")
        << QStringList{QStringLiteral("gedit")} << QString() << "\"/usr/bin/gedit\" --wait %1"
        << "\"/usr/bin/gedit\" --wait \"%1\""
        << "\"/usr/bin/gedit\" --wait \"%1\"" << QString();
    QTest::newRow("the desktop's editor first")
        << QStringList{QStringLiteral("kate"), QStringLiteral("mousepad")} << "org.kde.kate.desktop"
        << "\"/usr/bin/kate\" --block %1"
        << "\"/usr/bin/kate\" --block \"%1\""
        << "\"/usr/bin/kate\" --block \"%1\"" << QString();
    QTest::newRow("a programmer's editor and system information")
        << QStringList{QStringLiteral("code"), QStringLiteral("hardinfo"), QStringLiteral("kinfocenter")}
        << QString() << QString() << QString() << "\"/usr/bin/code\" --wait \"%1\""
        << "/usr/bin/hardinfo";
}

void TestRegistry::desktopDefaults()
{
    QFETCH(QStringList, installed);
    QFETCH(QString, desktopDefault);
    QFETCH(QString, notepad);
    QFETCH(QString, wordpad);
    QFETCH(QString, visualBasic);
    QFETCH(QString, msinfo);
    DesktopLookup lookup;
    lookup.findProgram = [&installed](const QString &name) {
        return installed.contains(name) ? QStringLiteral("/usr/bin/") + name : QString();
    };
    lookup.defaultApplication = [&desktopDefault](const QString &mimeType) {
        return mimeType == QLatin1String("text/plain") ? desktopDefault : QString();
    };
    fillDesktopDefaults(*m_reg, lookup);
    const auto classCommand = [this](const QString &key) {
        return text(*m_reg, HKEY_CLASSES_ROOT, key + QStringLiteral("\\shell\\open\\command"), QString());
    };
    QCOMPARE(classCommand(QStringLiteral("txtFile")), notepad);
    QCOMPARE(classCommand(QStringLiteral("Wordpad.Document.1")), wordpad);
    QCOMPARE(classCommand(QStringLiteral("VisualBasic.Module")), visualBasic);
    QCOMPARE(classCommand(QStringLiteral("dspfile")), visualBasic);
    QCOMPARE(text(*m_reg, HKEY_LOCAL_MACHINE, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                  QStringLiteral("PATH")),
             msinfo);
    // The file types name their classes wherever there is a text editor.
    const bool plain = !notepad.isEmpty();
    QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, QStringLiteral(".txt"), QString()),
             plain ? QStringLiteral("txtfile") : QString());
    QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, QStringLiteral(".vbs"), QString()),
             plain ? QStringLiteral("VBSFile") : QString());
    QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, QStringLiteral("VBSFile\\shell\\edit\\command"), QString()),
             plain ? QString(notepad).replace(QLatin1String(" %1"), QLatin1String(" \"%1\"")) : QString());
    QVERIFY(
        text(*m_reg, HKEY_CLASSES_ROOT, QStringLiteral("VBSFile\\shell\\open\\command"), QString()).isNull());
}

QTEST_GUILESS_MAIN(TestRegistry)
#include "test_registry.moc"
