#include "app/iswindowsnt.h"
#include "platform/com/escapes.h"
#include "platform/os/applog.h"
#include "platform/os/system.h"
#include "tests/support/testenv.h"

#include <QElapsedTimer>
#include <QtTest>

class TestOs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void escapes_data();
    void escapes();
    void logRoundTrip();
    void logIsUnderTheStateFolder();
    void execCmdWaits();
    void execCmdOfNothing();
    void versionQuery();

private:
    testsupport::TestHome m_home;
};

void TestOs::escapes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("plain") << "plain"
                           << "plain";
    QTest::newRow("line breaks") << "a\r\nb"
                                 << "a\\r\\nb";
    QTest::newRow("backslash before n") << "C:\\new"
                                        << "C:\\\\new";
    QTest::newRow("tab and NUL") << QStringLiteral("a\tb") + QChar(u'\0') << "a\\tb\\0";
}

void TestOs::escapes()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    QCOMPARE(com::escapeLine(text), line);
    QCOMPARE(com::unescapeLine(line), text);
}

void TestOs::logRoundTrip()
{
    os::ApplicationLog log(m_home.file(QStringLiteral("state/app.log")));
    QVERIFY(log.LogEvent(QStringLiteral("Greeter installed in \\Mailbox\\Inbox"), os::kLogInformation));
    QVERIFY(log.LogEvent(QStringLiteral("two\rlines\tand a tab"), os::kLogError, QStringLiteral("Other")));
    const QVector<os::LogRecord> records = log.read();
    QCOMPARE(records.size(), 2);
    QCOMPARE(records.at(0).type, 4);
    QCOMPARE(records.at(0).text, QStringLiteral("Greeter installed in \\Mailbox\\Inbox"));
    QCOMPARE(records.at(0).source, QStringLiteral("Sorrelin"));
    QCOMPARE(records.at(1).type, 1);
    QCOMPARE(records.at(1).text, QStringLiteral("two\rlines\tand a tab"));
    // One event is one line of the file.
    QFile file(log.path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), 2);
}

void TestOs::logIsUnderTheStateFolder()
{
    QCOMPARE(os::ApplicationLog::defaultPath(),
             m_home.path() + QStringLiteral("/state/sorrelin/application.log"));
}

void TestOs::execCmdWaits()
{
    QElapsedTimer t;
    t.start();
    QCOMPARE(os::ExecCmd(QStringLiteral("sh -c \"sleep 0.3; exit 3\"")), 3);
    QVERIFY(t.elapsed() >= 250);
}

void TestOs::execCmdOfNothing()
{
    QCOMPARE(os::ExecCmd(QStringLiteral("/no/such/program \"x\"")), -1);
    QCOMPARE(os::ExecCmd(QString()), -1);
}

void TestOs::versionQuery()
{
    os::OsVersionInfo wrongSize;
    wrongSize.dwOSVersionInfoSize = 100;
    QVERIFY(!os::GetVersionEx(wrongSize));
#ifdef Q_OS_WIN
    QVERIFY(IsWindowsNT());
#else
    QVERIFY(!IsWindowsNT());
#endif
    QVERIFY(os::GetTempPath().endsWith(QLatin1Char('/')) || os::GetTempPath().endsWith(QLatin1Char('\\')));
}

QTEST_GUILESS_MAIN(TestOs)
#include "test_os.moc"
