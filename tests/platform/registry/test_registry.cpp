// The registry: as the platform keeps it, as the program reads and writes its
// settings, and as the About box reads it to find the system information
// program.
#include "app/basregistry.h"
#include "dialogs/sysinfo.h"
#include "platform/registry/defaults.h"
#include "platform/registry/registry.h"
#include "tests/support/testenv.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <latch>
#include <thread>

using namespace registry;
using namespace Qt::StringLiterals;

namespace {

const QString kGeneral = u"Software\\Kelverd\\Sorrelin\\5.5\\General"_s;

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
    void init()
    {
        // The last test's registry closed and its home gone before the next.
        m_reg.reset();
        m_home.reset();
        m_home = std::make_unique<testsupport::TestHome>();
        m_reg = std::make_unique<Registry>(m_home->file(u"registry.db"_s));
    }

    void keyTree()
    {
        HKEY key = 0;
        for (const char *path : {"P\\beta", "P\\Alpha", "P\\Gamma\\deep\\down", "Q\\other"}) {
            QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, QString::fromLatin1(path), &key),
                     ERROR_SUCCESS);
            m_reg->RegCloseKey(key);
        }
        QCOMPARE(subkeys(*m_reg, HKEY_CURRENT_USER), (QStringList{u"P"_s, u"Q"_s}));
        // Creating an existing key opens it, whatever its case; children in name
        // order, whatever their case.
        HKEY parent = 0;
        QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, u"p"_s, &parent), ERROR_SUCCESS);
        QCOMPARE(subkeys(*m_reg, parent), (QStringList{u"Alpha"_s, u"beta"_s, u"Gamma"_s}));
        // Below an open key, the parents made on the way.
        QCOMPARE(m_reg->RegOpenKeyEx(parent, u"GAMMA\\Deep"_s, &key), ERROR_SUCCESS);
        QCOMPARE(subkeys(*m_reg, key), QStringList{u"down"_s});
        QCOMPARE(m_reg->RegSetValueEx(key, u"V"_s, REG_SZ, "x"), ERROR_SUCCESS);
        m_reg->RegCloseKey(key);
        QCOMPARE(text(*m_reg, parent, u"gamma\\deep"_s, u"V"_s), u"x"_s);
        // A name is matched whole, never by a prefix.
        QCOMPARE(m_reg->RegOpenKeyEx(parent, u"gam"_s, &key), ERROR_FILE_NOT_FOUND);
        m_reg->RegCloseKey(parent);
        QCOMPARE(subkeys(*m_reg, HKEY_CURRENT_USER), (QStringList{u"P"_s, u"Q"_s}));
    }

    void valueNamesIgnoreCase()
    {
        HKEY key = 0;
        QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, u"V"_s, &key), ERROR_SUCCESS);
        QCOMPARE(m_reg->RegSetValueEx(key, u"FontSize"_s, REG_SZ, "10.8"), ERROR_SUCCESS);
        QCOMPARE(m_reg->RegSetValueEx(key, u"FONTSIZE"_s, REG_DWORD, QByteArray("\x0c\0\0\0", 4)),
                 ERROR_SUCCESS);
        QByteArray data;
        uint32_t type = 0;
        QCOMPARE(m_reg->RegQueryValueEx(key, u"fontsize"_s, &type, &data, nullptr), ERROR_SUCCESS);
        QCOMPARE(type, REG_DWORD);
        QCOMPARE(data, QByteArray("\x0c\0\0\0", 4));
        QCOMPARE(m_reg->RegDeleteValue(key, u"fONTsIZE"_s), ERROR_SUCCESS);
        QCOMPARE(m_reg->RegQueryValueEx(key, u"FontSize"_s, &type, &data, nullptr), ERROR_FILE_NOT_FOUND);
        m_reg->RegCloseKey(key);
    }

    void firstLayoutIsConverted()
    {
        // A registry as the first release of the program left it.
        const QString path = m_home->file(u"first.db"_s);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"first"_s);
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(u"CREATE TABLE keys(id INTEGER PRIMARY KEY, root INTEGER NOT NULL,"
                           " path TEXT NOT NULL, UNIQUE(root, path COLLATE NOCASE))"_s));
            QVERIFY(
                q.exec(u"CREATE TABLE \"values\"(key INTEGER NOT NULL REFERENCES keys(id) ON DELETE CASCADE,"
                       " name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL,"
                       " PRIMARY KEY(key, name COLLATE NOCASE))"_s));
            QVERIFY(q.exec(u"INSERT INTO keys VALUES(7, %1, 'Software'), (3, %1, 'Software\\Kelverd'),"
                           " (9, %1, 'Software\\Kelverd\\Sorrelin')"_s.arg(HKEY_CURRENT_USER)));
            QVERIFY(q.exec(u"INSERT INTO \"values\" VALUES(9, 'FontName', 1, CAST('Courier' AS BLOB)),"
                           " (9, '', 1, CAST('default' AS BLOB))"_s));
        }
        QSqlDatabase::removeDatabase(u"first"_s);
        Registry converted(path);
        const QString key = u"SOFTWARE\\kelverd\\sorrelin"_s;
        QCOMPARE(text(converted, HKEY_CURRENT_USER, key, u"fontname"_s), u"Courier"_s);
        QCOMPARE(text(converted, HKEY_CURRENT_USER, key, QString()), u"default"_s);
        HKEY h = 0;
        QCOMPARE(converted.RegOpenKeyEx(HKEY_CURRENT_USER, u"Software\\Kelverd"_s, &h), ERROR_SUCCESS);
        QCOMPARE(subkeys(converted, h), QStringList{u"Sorrelin"_s});
        converted.RegCloseKey(h);
        // And it goes on as a registry of today.
        QCOMPARE(converted.RegCreateKeyEx(HKEY_CURRENT_USER, key + u"\\New"_s, &h), ERROR_SUCCESS);
        converted.RegCloseKey(h);
    }

    void desktopDefaults_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("desktopDefault");
        QTest::addColumn<QStringList>("commands"); // Notepad, Wordpad, Visual Basic, system information
        QTest::newRow("nothing installed") << QStringList() << QString() << QStringList{"", "", "", ""};
        QTest::newRow("gedit alone: told to wait")
            << QStringList{u"gedit"_s} << QString()
            << QStringList{"\"/usr/bin/gedit\" --wait %1", "\"/usr/bin/gedit\" --wait \"%1\"",
                           "\"/usr/bin/gedit\" --wait \"%1\"", ""};
        QTest::newRow("mousepad alone: its own process")
            << QStringList{u"mousepad"_s} << QString()
            << QStringList{"\"/usr/bin/mousepad\" --disable-server %1",
                           "\"/usr/bin/mousepad\" --disable-server \"%1\"",
                           "\"/usr/bin/mousepad\" --disable-server \"%1\"", ""};
        QTest::newRow("editors that hand the file over: none")
            << QStringList{u"xed"_s, u"pluma"_s} << QString() << QStringList{"", "", "", ""};
        QTest::newRow("the desktop's editor first")
            << QStringList{u"kate"_s, u"mousepad"_s} << u"org.kde.kate.desktop"_s
            << QStringList{"\"/usr/bin/kate\" --block %1", "\"/usr/bin/kate\" --block \"%1\"",
                           "\"/usr/bin/kate\" --block \"%1\"", ""};
        QTest::newRow("a programmer's editor and system information")
            << QStringList{u"code"_s, u"hardinfo"_s, u"kinfocenter"_s} << QString()
            << QStringList{"", "", "\"/usr/bin/code\" --wait \"%1\"", "/usr/bin/hardinfo"};
    }

    void desktopDefaults()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, desktopDefault);
        QFETCH(QStringList, commands);
        const QString notepad = commands.at(0);
        DesktopLookup lookup;
        lookup.findProgram = [&installed](const QString &name) {
            return installed.contains(name) ? u"/usr/bin/"_s + name : QString();
        };
        lookup.defaultApplication = [&desktopDefault](const QString &mimeType) {
            return mimeType == "text/plain"_L1 ? desktopDefault : QString();
        };
        fillDesktopDefaults(*m_reg, lookup);
        const auto classCommand = [this](const QString &key) {
            return text(*m_reg, HKEY_CLASSES_ROOT, key + u"\\shell\\open\\command"_s, QString());
        };
        QCOMPARE((QStringList{classCommand(u"txtFile"_s), classCommand(u"Wordpad.Document.1"_s),
                              classCommand(u"VisualBasic.Module"_s),
                              text(*m_reg, HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s,
                                   u"PATH"_s)}),
                 commands);
        QCOMPARE(classCommand(u"dspfile"_s), commands.at(2));
        // The file types name their classes wherever there is a text editor.
        const bool plain = !notepad.isEmpty();
        QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, u".txt"_s, QString()), plain ? u"txtfile"_s : QString());
        QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, u".vbs"_s, QString()), plain ? u"VBSFile"_s : QString());
        QCOMPARE(text(*m_reg, HKEY_CLASSES_ROOT, u"VBSFile\\shell\\edit\\command"_s, QString()),
                 plain ? QString(notepad).replace(" %1"_L1, " \"%1\""_L1) : QString());
        QVERIFY(text(*m_reg, HKEY_CLASSES_ROOT, u"VBSFile\\shell\\open\\command"_s, QString()).isNull());
    }

    void settings_data()
    {
        QTest::addColumn<QVariant>("written"); // none: the bytes are stored as they are
        QTest::addColumn<uint>("type");
        QTest::addColumn<QByteArray>("bytes"); // as the registry holds them
        QTest::addColumn<QVariant>("read");    // none: nothing, which reads as the empty text
        const uint sz = REG_SZ;
        const uint dword = REG_DWORD;
        const QString nul(QChar(u'\0'));
        QTest::newRow("text: its own length, no NUL")
            << QVariant(u"Courier"_s) << sz << QByteArray("Courier") << QVariant(u"Courier"_s);
        QTest::newRow("empty text") << QVariant(QString()) << sz << QByteArray() << QVariant(QString());
        const QString text = u"\u00c5ngstr\u00f6m \u65e5\u672c\rtwo\r\nthree"_s;
        QTest::newRow("text beyond Latin-1, line breaks")
            << QVariant(text) << sz << text.toUtf8() << QVariant(text);
        QTest::newRow("number: 4 bytes")
            << QVariant(258) << dword << QByteArray("\x02\x01\0\0", 4) << QVariant(258);
        QTest::newRow("minus one") << QVariant(-1) << dword << QByteArray(4, '\xff') << QVariant(-1);
        QTest::newRow("the sign bit, unsigned")
            << QVariant(0x80000000u) << dword << QByteArray("\0\0\0\x80", 4) << QVariant(INT_MIN);
        QTest::newRow("one trailing NUL taken off")
            << QVariant() << sz << QByteArray("yes\0", 4) << QVariant("yes");
        QTest::newRow("only one NUL taken off")
            << QVariant() << sz << QByteArray("yes\0\0", 5) << QVariant("yes" + nul);
        QTest::newRow("a NUL inside stays")
            << QVariant() << sz << QByteArray("a\0b", 3) << QVariant("a" + nul + "b");
        QTest::newRow("bytes") << QVariant() << uint(REG_BINARY) << QByteArray("ab") << QVariant();
        QTest::newRow("a number too short") << QVariant() << dword << QByteArray("ab") << QVariant();
    }

    void settings()
    {
        QFETCH(QVariant, written);
        QFETCH(uint, type);
        QFETCH(QByteArray, bytes);
        QFETCH(QVariant, read);
        HKEY key = 0;
        if (written.isValid()) {
            QVERIFY(basRegistry::SetKeyValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"V"_s, written, type));
            QCOMPARE(m_reg->RegOpenKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
            uint32_t storedType = 0;
            QByteArray stored;
            QCOMPARE(m_reg->RegQueryValueEx(key, u"V"_s, &storedType, &stored, nullptr), ERROR_SUCCESS);
            QCOMPARE(storedType, uint32_t(type));
            QCOMPARE(stored, bytes);
        } else {
            QCOMPARE(m_reg->RegCreateKeyEx(HKEY_CURRENT_USER, kGeneral, &key), ERROR_SUCCESS);
            QCOMPARE(m_reg->RegSetValueEx(key, u"V"_s, type, bytes), ERROR_SUCCESS);
        }
        m_reg->RegCloseKey(key);
        const QVariant v = basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"V"_s);
        QCOMPARE(v.typeId(), read.typeId());
        QCOMPARE(v, read);
        // Another value, key or root is none.
        QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral, u"W"_s).isValid());
        QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_CURRENT_USER, kGeneral + u"\\V"_s, u"V"_s).isValid());
        QVERIFY(!basRegistry::QueryValue(*m_reg, HKEY_LOCAL_MACHINE, kGeneral, u"V"_s).isValid());
    }

    void refusedWriteStillGivesTrue()
    {
        // A registry that can't be written: every call is refused, and only a
        // raised error would give false.
        Registry refusing(m_home->file(u"no/such/folder/registry.db"_s));
        QVERIFY(basRegistry::SetKeyValue(refusing, HKEY_CURRENT_USER, kGeneral, u"A"_s, u"1"_s, REG_SZ));
        QVERIFY(!basRegistry::QueryValue(refusing, HKEY_CURRENT_USER, kGeneral, u"A"_s).isValid());
    }

    void twoWritersAtOnceLoseNothing()
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
                basRegistry::SetKeyValue(reg, HKEY_CURRENT_USER, u"Shared\\%1\\%2"_s.arg(i % 7).arg(who),
                                         u"v"_s, QString::number(i), REG_SZ);
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

    void getKeyValue_data()
    {
        QTest::addColumn<QByteArray>("data"); // null: no key
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("value");
        QTest::newRow("closing NUL cut") << QByteArray("/usr/bin/x\0", 11) << true << u"/usr/bin/x"_s;
        QTest::newRow("1024 bytes") << QByteArray(1024, 'p') << true << QString(1024, QLatin1Char('p'));
        QTest::newRow("longer than the buffer") << QByteArray(1025, 'p') << false << QString();
        QTest::newRow("no such key") << QByteArray() << false << QString();
    }

    void getKeyValue()
    {
        QFETCH(QByteArray, data);
        QFETCH(bool, result);
        QFETCH(QString, value);
        const QString msinfo = u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s;
        HKEY key = 0;
        if (!data.isNull()) {
            QCOMPARE(m_reg->RegCreateKeyEx(HKEY_LOCAL_MACHINE, msinfo, &key), ERROR_SUCCESS);
            QCOMPARE(m_reg->RegSetValueEx(key, u"PATH"_s, REG_SZ, data), ERROR_SUCCESS);
            m_reg->RegCloseKey(key);
        }
        QString read = u"left over"_s;
        QCOMPARE(dialogs::GetKeyValue(*m_reg, HKEY_LOCAL_MACHINE, msinfo, u"PATH"_s, read), result);
        if (result)
            QCOMPARE(read, value);
    }

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
};

QTEST_GUILESS_MAIN(TestRegistry)
#include "test_registry.moc"
