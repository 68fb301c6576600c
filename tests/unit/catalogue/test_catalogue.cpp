#include "catalogue/agentwalk.h"
#include "catalogue/frmscripts.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void rowPrint_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("printed");
        QTest::newRow("every backslash from the third")
            << "\\Mailbox - A\\Inbox\\Sub" << u"\\Mailbox - A \\Inbox \\Sub"_s;
        QTest::newRow("two leading kept together") << "\\\\Server\\Share" << u"\\\\Server \\Share"_s;
        // The end is measured once: insertions push the last backslash past it.
        QTest::newRow("end measured once") << "\\a\\b\\c\\" << u"\\a \\b \\c\\"_s;
    }

    void rowPrint()
    {
        QFETCH(QString, folder);
        QFETCH(QString, printed);
        QStringList cells{u"Name"_s, folder,  QString(), QString(), QString(), QString(), QString(),
                          QString(), u"-1"_s, u"0"_s,    u"-1"_s,   u"0"_s,    u"ID"_s};
        catalogue::SSDBGrid1_RowPrint(cells);
        QCOMPARE(cells.at(1), printed);
        QCOMPARE(cells.mid(8, 4), (QStringList{u"X"_s, QString(), u"X"_s, QString()}));
        QCOMPARE(cells.at(12), u"ID"_s);
    }

    void quotesInsideAreDoubled()
    {
        catalogue::AgentFacts a;
        a.name = u"Auto \"Reply\""_s;
        a.folder = u"\\Mailbox\\Inbox"_s;
        a.server = u"EXCH01"_s;
        a.handler = u"Script Handler"_s;
        a.created = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5));
        a.createdBy = u"Alice"_s;
        a.modified = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
        a.modifiedBy = u"Bob"_s;
        a.mask = 9;
        a.entryId = u"ABC"_s;
        QCOMPARE(catalogue::listRow(a),
                 u"Auto \"Reply\"\t\\Mailbox\\Inbox\tEXCH01\tScript Handler\t2 Jan 2026 03:04:05"
                 "\tAlice\t4 Mar 2026 05:06:07\tBob\t0\t0\t-1\t-1\tABC"_s);
        // A quote inside a text is doubled; "Server" twice; no entry id.
        QCOMPARE(catalogue::exportLine(a),
                 u"\"Auto \"\"Reply\"\"\",\"\\Mailbox\\Inbox\",\"EXCH01\",\"2 Jan 2026 03:04:05\","
                 "\"Alice\",\"4 Mar 2026 05:06:07\",\"Bob\",\"EXCH01\",\"Script Handler\","
                 "0,0,-1,-1\r\n"_s);
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "test_catalogue.moc"
