#include "agents/frmproperties.h"
#include "agents/schedule.h"

#include <QtTest>

class TestSchedule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void intervalRule_data()
    {
        QTest::addColumn<double>("hours");
        QTest::addColumn<double>("minutes");
        QTest::addColumn<bool>("allDay");
        QTest::addColumn<int>("window");
        QTest::addColumn<int>("interval");
        QTest::addColumn<bool>("adjusted");
        QTest::newRow("all day 1h30 passes") << 1.0 << 30.0 << true << 0 << 90 << false;
        QTest::newRow("all day 1h45 becomes 60") << 1.0 << 45.0 << true << 0 << 60 << true;
        QTest::newRow("all day 5h becomes 240") << 5.0 << 0.0 << true << 0 << 240 << true;
        QTest::newRow("all day 7h30 becomes 180") << 7.0 << 30.0 << true << 0 << 180 << true;
        QTest::newRow("all day 0h50 stays 50") << 0.0 << 50.0 << true << 0 << 50 << true;
        QTest::newRow("all day zero stays 0") << 0.0 << 0.0 << true << 0 << 0 << true;
        QTest::newRow("all day 24h passes") << 24.0 << 0.0 << true << 0 << 1440 << false;
        QTest::newRow("window 6-18, 50 passes") << 0.0 << 50.0 << false << 720 << 50 << false;
        QTest::newRow("window zero interval stays 0") << 0.0 << 0.0 << false << 720 << 0 << true;
        QTest::newRow("window 7 min negative") << 0.0 << 7.0 << false << -720 << 5 << true;
    }

    void intervalRule()
    {
        QFETCH(double, hours);
        QFETCH(double, minutes);
        QFETCH(bool, allDay);
        QFETCH(int, window);
        QFETCH(int, interval);
        QFETCH(bool, adjusted);
        const agents::IntervalResult r = agents::intervalRule(hours, minutes, allDay, window);
        QCOMPARE(r.interval, interval);
        QCOMPARE(r.adjusted, adjusted);
    }

    void daysToBoxes_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("ticked"); // Monday first, x ticked
        QTest::newRow("Monday") << 1 << "x......";
        QTest::newRow("Sunday") << 64 << "......x";
        QTest::newRow("negative") << -5 << ".......";
        QTest::newRow("above 127 ticks Sunday and the rest below 64") << 130 << ".x....x";
    }

    void daysToBoxes()
    {
        QFETCH(int, days);
        QFETCH(QString, ticked);
        const std::array<bool, 7> boxes = agents::daysToBoxes(days);
        QString actual;
        for (bool b : boxes)
            actual += b ? QLatin1Char('x') : QLatin1Char('.');
        QCOMPARE(actual, ticked);
    }

    void eventBoxes_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<QString>("ticked"); // Scheduled, New, Update, Delete
        QTest::newRow("none") << 0 << "....";
        QTest::newRow("9: scheduled and deleted") << 9 << "x..x";
        QTest::newRow("all") << 15 << "xxxx";
        QTest::newRow("16 is no mask") << 16 << "....";
        QTest::newRow("above 15 with low bits") << 27 << "....";
        QTest::newRow("negative") << -1 << "....";
    }

    void eventBoxes()
    {
        QFETCH(int, mask);
        QFETCH(QString, ticked);
        QString actual;
        for (bool b : agents::eventBoxes(mask))
            actual += b ? QLatin1Char('x') : QLatin1Char('.');
        QCOMPARE(actual, ticked);
    }

    void daysRoundTrip()
    {
        for (int days = 0; days <= 127; ++days)
            QCOMPARE(int(agents::daysFromBoxes(agents::daysToBoxes(days))), days);
    }

    void display_data()
    {
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("hours");
        QTest::addColumn<int>("minutes");
        QTest::newRow("45") << 45 << 0 << 45;
        QTest::newRow("60") << 60 << 1 << 0;
        QTest::newRow("90") << 90 << 1 << 30;
        QTest::newRow("1440") << 1440 << 24 << 0;
    }

    void display()
    {
        QFETCH(int, interval);
        QFETCH(int, hours);
        QFETCH(int, minutes);
        QCOMPARE(agents::intervalHours(interval), hours);
        QCOMPARE(agents::intervalMinutes(interval), minutes);
    }

    void allDay_data()
    {
        QTest::addColumn<QTime>("start");
        QTest::addColumn<QTime>("end");
        QTest::addColumn<bool>("allDay");
        QTest::newRow("12:00 AM to 11:59 PM") << QTime(0, 0) << QTime(23, 59) << true;
        QTest::newRow("12:00 AM to 11:58 PM") << QTime(0, 0) << QTime(23, 58) << false;
        QTest::newRow("end before start") << QTime(18, 0) << QTime(6, 0) << false;
    }

    void allDay()
    {
        QFETCH(QTime, start);
        QFETCH(QTime, end);
        QFETCH(bool, allDay);
        QCOMPARE(agents::isAllDay(start, end), allDay);
    }

    void stepping_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("quarters");
        QTest::addColumn<QString>("expected");
        QTest::newRow("up from the record's form") << "6:00:00 AM" << 1 << "06:15 AM";
        QTest::newRow("down from 6 PM") << "6:00 PM" << -1 << "05:45 PM";
    }

    void stepping()
    {
        QFETCH(QString, text);
        QFETCH(int, quarters);
        QFETCH(QString, expected);
        const QTime time = agents::parseBoxTime(text);
        QVERIFY(time.isValid());
        QCOMPARE(agents::formatStepTime(agents::stepTime(time, quarters)), expected);
    }
};

QTEST_GUILESS_MAIN(TestSchedule)
#include "test_schedule.moc"
