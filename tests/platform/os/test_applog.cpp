#include "platform/os/applog.h"
#include "tests/support/testenv.h"

#include <QtTest>

class TestAppLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void oneLineAnEvent_data();
    void oneLineAnEvent();
    void eventsKeepTheirOrder();
    void linesThatAreNoEvents();
    void lineFormat();
    void folderOfTheLog();
    void unwritableLog();

private:
    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestAppLog::init()
{
    m_home = std::make_unique<testsupport::TestHome>();
}

void TestAppLog::cleanup()
{
    m_home.reset();
}

void TestAppLog::oneLineAnEvent_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("source");
    QTest::newRow("information") << "Greeter installed in \\Mailbox\\Inbox" << 4 << "Sorrelin";
    QTest::newRow("error with carriage returns")
        << "Could not install\rError# 70\rPermission denied" << 1 << "Sorrelin";
    QTest::newRow("beyond ASCII") << QStringLiteral("M\u00fcller \u65e5\u672c") << 4 << "Sorrelin";
    QTest::newRow("backslashes, a tab and a NUL")
        << QStringLiteral("C:\\new\\r\ta") + QChar(u'\0') << 2 << "Source\\with\nbreak";
}

void TestAppLog::oneLineAnEvent()
{
    QFETCH(QString, text);
    QFETCH(int, type);
    QFETCH(QString, source);
    os::ApplicationLog log(m_home->file(QStringLiteral("state/app.log")));
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    QVERIFY(log.LogEvent(QStringLiteral("first"), os::kLogInformation));
    QVERIFY(log.LogEvent(text, type, source));
    const QVector<os::LogRecord> records = log.read();
    QCOMPARE(records.size(), 2);
    QCOMPARE(records.at(0).source, QStringLiteral("Sorrelin"));
    QCOMPARE(records.at(1).text, text);
    QCOMPARE(records.at(1).type, type);
    QCOMPARE(records.at(1).source, source);
    QVERIFY(records.at(1).time >= before && records.at(1).time <= QDateTime::currentDateTime());
    // Written out at once, one line an event.
    QFile file(log.path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.count('\n'), 2);
    QVERIFY(bytes.endsWith('\n'));
    QVERIFY(!bytes.contains('\r'));
}

void TestAppLog::eventsKeepTheirOrder()
{
    // Two writers on one file, as two programs would log.
    os::ApplicationLog one(m_home->file(QStringLiteral("app.log")));
    os::ApplicationLog two(m_home->file(QStringLiteral("app.log")));
    for (int i = 0; i < 20; ++i)
        QVERIFY((i % 2 ? two : one).LogEvent(QString::number(i), os::kLogInformation));
    const QVector<os::LogRecord> records = one.read();
    QCOMPARE(records.size(), 20);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(records.at(i).text, QString::number(i));
}

void TestAppLog::linesThatAreNoEvents()
{
    const QString path = m_home->file(QStringLiteral("app.log"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("2024-03-01 10:00:00\t4\tSorrelin\tgood one\n"
               "not an event\n"
               "\n"
               "2024-03-01 10:00:01\tfour\tSorrelin\tbad type\n"
               "yesterday\t4\tSorrelin\tbad time\n"
               "2024-03-01 10:00:02\t1\tSorrelin\twritten on Windows\r\n"
               "2024-03-01 10:00:03\t4\tSorr");
    file.close();
    const QVector<os::LogRecord> records = os::ApplicationLog(path).read();
    QCOMPARE(records.size(), 2);
    QCOMPARE(records.at(0).text, QStringLiteral("good one"));
    QCOMPARE(records.at(0).time, QDateTime(QDate(2024, 3, 1), QTime(10, 0)));
    QCOMPARE(records.at(1).text, QStringLiteral("written on Windows"));
    QCOMPARE(records.at(1).type, os::kLogError);
    QVERIFY(os::ApplicationLog(m_home->file(QStringLiteral("none.log"))).read().isEmpty());
}

void TestAppLog::lineFormat()
{
    const os::LogRecord r{QDateTime(QDate(2024, 3, 1), QTime(9, 5, 7)), 4, QStringLiteral("Sorrelin"),
                          QStringLiteral("two\rlines")};
    QCOMPARE(os::formatLogLine(r), QStringLiteral("2024-03-01 09:05:07\t4\tSorrelin\ttwo\\rlines"));
}

void TestAppLog::folderOfTheLog()
{
    const QString path = os::ApplicationLog::defaultPath();
    QCOMPARE(path, m_home->path() + QStringLiteral("/state/sorrelin/application.log"));
    // The folder is made with the first event.
    os::ApplicationLog log(path);
    QVERIFY(log.LogEvent(QStringLiteral("made"), os::kLogInformation));
    QCOMPARE(log.read().size(), 1);
}

void TestAppLog::unwritableLog()
{
    // A log whose place is a folder can't be written; the caller is told.
    QVERIFY(QDir(m_home->path()).mkpath(QStringLiteral("taken/application.log")));
    os::ApplicationLog log(m_home->file(QStringLiteral("taken/application.log")));
    QVERIFY(!log.LogEvent(QStringLiteral("lost"), os::kLogError));
}

QTEST_GUILESS_MAIN(TestAppLog)
#include "test_applog.moc"
