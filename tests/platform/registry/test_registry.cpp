#include "platform/registry/defaults.h"
#include "platform/registry/registry.h"
#include "tests/support/testenv.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using namespace registry;
using namespace Qt::StringLiterals;

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
            QVERIFY(q.exec(QStringLiteral("CREATE TABLE keys(id INTEGER PRIMARY KEY, root INTEGER NOT NULL,"
                                          " path TEXT NOT NULL, UNIQUE(root, path COLLATE NOCASE))")));
            QVERIFY(q.exec(QStringLiteral("CREATE TABLE \"values\"(key INTEGER NOT NULL REFERENCES keys(id)"
                                          " ON DELETE CASCADE, name TEXT NOT NULL, type INTEGER NOT NULL,"
                                          " data BLOB NOT NULL, PRIMARY KEY(key, name COLLATE NOCASE))")));
            QVERIFY(q.exec(
                QStringLiteral("INSERT INTO keys VALUES(7, %1, 'Software'), (3, %1, 'Software\\Kelverd'),"
                               " (9, %1, 'Software\\Kelverd\\Sorrelin')")
                    .arg(HKEY_CURRENT_USER)));
            QVERIFY(q.exec(
                QStringLiteral("INSERT INTO \"values\" VALUES(9, 'FontName', 1, CAST('Courier' AS BLOB)),"
                               " (9, '', 1, CAST('default' AS BLOB))")));
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

private:
    std::unique_ptr<testsupport::TestHome> m_home;
    std::unique_ptr<Registry> m_reg;
};

QTEST_GUILESS_MAIN(TestRegistry)
#include "test_registry.moc"
