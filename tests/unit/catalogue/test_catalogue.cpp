#include "catalogue/agentwalk.h"
#include "catalogue/frmscripts.h"

#include <QtTest>

class TestCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rowPrint_data();
    void rowPrint();
    void flags_data();
    void flags();
};

namespace {

catalogue::AgentFacts agent(int16_t mask)
{
    catalogue::AgentFacts a;
    a.name = QStringLiteral("Auto \"Reply\"");
    a.folder = QStringLiteral("\\Mailbox\\Inbox");
    a.server = QStringLiteral("EXCH01");
    a.handler = QStringLiteral("Script Handler");
    a.created = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5));
    a.createdBy = QStringLiteral("Alice");
    a.modified = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
    a.modifiedBy = QStringLiteral("Bob");
    a.mask = mask;
    a.entryId = QStringLiteral("ABC");
    return a;
}

} // namespace

void TestCatalogue::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void TestCatalogue::rowPrint_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("printed");
    QTest::newRow("every backslash from the third") << "\\Mailbox - A\\Inbox\\Sub"
                                                    << "\\Mailbox - A \\Inbox \\Sub";
    QTest::newRow("two leading kept together") << "\\\\Server\\Share"
                                               << "\\\\Server \\Share";
    // The end is measured once: insertions push the last backslash past it.
    QTest::newRow("end measured once") << "\\a\\b\\c\\"
                                       << "\\a \\b \\c\\";
}

void TestCatalogue::rowPrint()
{
    QFETCH(QString, folder);
    QFETCH(QString, printed);
    QStringList cells{QStringLiteral("Name"),
                      folder,
                      QString(),
                      QString(),
                      QString(),
                      QString(),
                      QString(),
                      QString(),
                      QStringLiteral("-1"),
                      QStringLiteral("0"),
                      QStringLiteral("-1"),
                      QStringLiteral("0"),
                      QStringLiteral("ID")};
    catalogue::SSDBGrid1_RowPrint(cells);
    QCOMPARE(cells.at(1), printed);
    QCOMPARE(cells.mid(8, 4), (QStringList{QStringLiteral("X"), QString(), QStringLiteral("X"), QString()}));
    QCOMPARE(cells.at(12), QStringLiteral("ID"));
}

void TestCatalogue::flags_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("listFlags"); // New, Update, Delete, Scheduled
    QTest::addColumn<QString>("exportFlags");
    QTest::newRow("2 new") << 2 << "-1\t0\t0\t0"
                           << "-1,0,0,0";
    QTest::newRow("9 delete and scheduled") << 9 << "0\t0\t-1\t-1"
                                            << "0,0,-1,-1";
}

void TestCatalogue::flags()
{
    QFETCH(int, mask);
    QFETCH(QString, listFlags);
    QFETCH(QString, exportFlags);
    const catalogue::AgentFacts a = agent(static_cast<int16_t>(mask));
    const QString created = QStringLiteral("2 Jan 2026 03:04:05");
    const QString modified = QStringLiteral("4 Mar 2026 05:06:07");
    QCOMPARE(catalogue::listRow(a),
             QStringLiteral("Auto \"Reply\"\t\\Mailbox\\Inbox\tEXCH01\tScript Handler\t") + created +
                 QStringLiteral("\tAlice\t") + modified + QStringLiteral("\tBob\t") + listFlags +
                 QStringLiteral("\tABC"));
    // Quotes inside a text go out as they are; "Server" twice; no entry id.
    QCOMPARE(catalogue::exportLine(a),
             QStringLiteral("\"Auto \"Reply\"\",\"\\Mailbox\\Inbox\",\"EXCH01\",\"") + created +
                 QStringLiteral("\",\"Alice\",\"") + modified +
                 QStringLiteral("\",\"Bob\",\"EXCH01\",\"Script Handler\",") + exportFlags +
                 QStringLiteral("\r\n"));
}

QTEST_GUILESS_MAIN(TestCatalogue)
#include "test_catalogue.moc"
