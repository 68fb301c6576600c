#include "platform/os/applog.h"
#include "tests/support/testenv.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestAppLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }

    void oneLineAnEvent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("type");
        QTest::newRow("error with carriage returns")
            << "Could not install\rError# 70\rPermission denied" << 1;
        QTest::newRow("beyond ASCII") << u"M\u00fcller \u65e5\u672c"_s << 4;
        QTest::newRow("backslashes, a tab and a NUL") << u"C:\\new\\r\ta"_s + QChar(u'\0') << 2;
    }

    void oneLineAnEvent()
    {
        QFETCH(QString, text);
        QFETCH(int, type);
        os::ApplicationLog log(m_home->file(u"state/app.log"_s));
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        QVERIFY(log.LogEvent(u"first"_s, os::kLogInformation));
        QVERIFY(log.LogEvent(text, type));
        const QVector<os::LogRecord> records = log.read();
        QCOMPARE(records.size(), 2);
        QCOMPARE(records.at(1).text, text);
        QCOMPARE(records.at(1).type, type);
        QCOMPARE(records.at(1).source, u"Sorrelin"_s);
        QVERIFY(records.at(1).time >= before && records.at(1).time <= QDateTime::currentDateTime());
        // Written out at once, one line an event.
        QFile file(log.path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.count('\n'), 2);
        QVERIFY(bytes.endsWith('\n'));
        QVERIFY(!bytes.contains('\r'));
    }

    void eventsKeepTheirOrder()
    {
        // Two writers on one file, as two programs would log.
        os::ApplicationLog one(m_home->file(u"app.log"_s));
        os::ApplicationLog two(m_home->file(u"app.log"_s));
        for (int i = 0; i < 20; ++i)
            QVERIFY((i % 2 ? two : one).LogEvent(QString::number(i), os::kLogInformation));
        const QVector<os::LogRecord> records = one.read();
        QCOMPARE(records.size(), 20);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(records.at(i).text, QString::number(i));
    }

    void linesThatAreNoEvents()
    {
        const QString path = m_home->file(u"app.log"_s);
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
        QCOMPARE(records.at(0).text, u"good one"_s);
        QCOMPARE(records.at(0).time, QDateTime(QDate(2024, 3, 1), QTime(10, 0)));
        QCOMPARE(records.at(1).text, u"written on Windows"_s);
        QCOMPARE(records.at(1).type, os::kLogError);
        QVERIFY(os::ApplicationLog(m_home->file(u"none.log"_s)).read().isEmpty());
    }

    void unwritableLog()
    {
        // A log whose place is a folder can't be written; the caller is told.
        QVERIFY(QDir(m_home->path()).mkpath(u"taken/application.log"_s));
        os::ApplicationLog log(m_home->file(u"taken/application.log"_s));
        QVERIFY(!log.LogEvent(u"lost"_s, os::kLogError));
    }

private:
    std::unique_ptr<testsupport::TestHome> m_home;
};

QTEST_GUILESS_MAIN(TestAppLog)
#include "test_applog.moc"
