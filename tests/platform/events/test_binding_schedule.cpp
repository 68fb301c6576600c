// A binding's schedule object: Clear, the six members, times at minute
// precision, and the way through the store.
#include "platform/events/events.h"
#include "tests/platform/events/eventsfixture.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::StoreKit;

namespace {
const QString kInbox = QStringLiteral("\\Mailbox - Tess Tester\\Inbox");
}

class TestBindingSchedule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(testkit::kEventsFixture); }
    void cleanup() { m_kit.reset(); }
    void storedAndReadBack_data();
    void storedAndReadBack();
    void scheduleIsTheBindings();

private:
    events::Binding first()
    {
        return m_kit->events.GetEventSource(m_kit->folder(kInbox), true).Bindings().Item(1);
    }
    std::unique_ptr<StoreKit> m_kit;
};

void TestBindingSchedule::storedAndReadBack_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("days");
    QTest::addColumn<QTime>("start");
    QTest::addColumn<QTime>("end");
    QTest::addColumn<QTime>("at");
    QTest::addColumn<QTime>("startRead");
    QTest::addColumn<QTime>("atRead");
    QTest::newRow("hourly, all day") << 1 << 60 << 127 << QTime(0, 0) << QTime(23, 59) << QTime(0, 0)
                                     << QTime(0, 0) << QTime(0, 0);
    QTest::newRow("weekly with no day")
        << 3 << 1 << 0 << QTime(6, 0) << QTime(18, 0) << QTime(9, 45) << QTime(6, 0) << QTime(9, 45);
    QTest::newRow("seconds are dropped")
        << 1 << 45 << 127 << QTime(6, 0, 59) << QTime(18, 0) << QTime(1, 2, 3) << QTime(6, 0) << QTime(1, 2);
    QTest::newRow("an invalid time is midnight")
        << 2 << 1 << 1 << QTime() << QTime(18, 0) << QTime(12, 0) << QTime(0, 0) << QTime(12, 0);
}

void TestBindingSchedule::storedAndReadBack()
{
    QFETCH(int, type);
    QFETCH(int, interval);
    QFETCH(int, days);
    QFETCH(QTime, start);
    QFETCH(QTime, end);
    QFETCH(QTime, at);
    QFETCH(QTime, startRead);
    QFETCH(QTime, atRead);
    events::Binding b = first();
    events::Schedule s = b.Schedule();
    s.Clear();
    s.setAt(at);
    s.setDays(static_cast<int16_t>(days));
    s.setEndTime(end);
    s.setStartTime(start);
    s.setInterval(static_cast<int16_t>(interval));
    s.setType(static_cast<int16_t>(type));
    QCOMPARE(s.StartTime(), startRead);
    QCOMPARE(s.At(), atRead);
    b.SaveChanges();

    const events::Schedule read = first().Schedule();
    QCOMPARE(int(read.Type()), type);
    QCOMPARE(int(read.interval()), interval);
    QCOMPARE(int(read.Days()), days);
    QCOMPARE(read.StartTime(), startRead);
    QCOMPARE(read.EndTime(), end);
    QCOMPARE(read.At(), atRead);
}

void TestBindingSchedule::scheduleIsTheBindings()
{
    // Two schedule objects of one binding are the same settings, and the
    // binding's copies share them.
    events::Binding b = first();
    events::Binding copy = b;
    b.Schedule().setInterval(30);
    QCOMPARE(int(copy.Schedule().interval()), 30);
    // Another binding's are apart.
    QCOMPARE(int(m_kit->events.GetEventSource(m_kit->folder(kInbox), true)
                     .Bindings()
                     .Item(2)
                     .Schedule()
                     .interval()),
             0);
}

QTEST_GUILESS_MAIN(TestBindingSchedule)
#include "test_binding_schedule.moc"
