#include "platform/com/routine.h"

#include <QtTest>

#include <functional>
#include <optional>
#include <stdexcept>

using Raise = std::function<void()>;
Q_DECLARE_METATYPE(Raise)

class TestRoutine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyComErrorsAreSkipped_data()
    {
        QTest::addColumn<Raise>("raise");
        QTest::addColumn<bool>("escapes");
        QTest::addColumn<int>("number"); ///< the error remembered
        QTest::newRow("nothing") << Raise([] {}) << false << 0;
        QTest::newRow("a platform error") << Raise([] {
            throw com::ComError(com::err::NotFound, QStringLiteral("Store"), QStringLiteral("gone"));
        }) << false << com::err::NotFound;
        QTest::newRow("an object an earlier step didn't set") << Raise([] {
            std::optional<int> unset;
            com::object(unset) += 1;
        }) << false << com::err::ObjectNotSet;
        QTest::newRow("a fault: an empty optional read") << Raise([] {
            std::optional<int> unset;
            (void)unset.value();
        }) << true << 0;
        QTest::newRow("a fault: an index out of range")
            << Raise([] { throw std::out_of_range("at"); }) << true << 0;
    }

    void onlyComErrorsAreSkipped()
    {
        QFETCH(Raise, raise);
        QFETCH(bool, escapes);
        QFETCH(int, number);
        // A step, a value and a test alike.
        com::ResumeNext routine;
        bool next = false;
        try {
            routine.step(raise);
            next = true;
        } catch (...) {
        }
        QCOMPARE(next, !escapes);
        QCOMPARE(routine.number(), number);
        routine.clear();
        int value = 0;
        try {
            value = routine.value([&] { return raise(), 5; }, -5);
        } catch (...) {
        }
        QCOMPARE(value, escapes ? 0 : number == 0 ? 5 : -5);
        bool guarded = false;
        try {
            guarded = routine.test([&] { return raise(), false; });
        } catch (...) {
        }
        QCOMPARE(guarded, number != 0);
        int handled = 0;
        bool escaped = false;
        try {
            com::withHandler(raise, [&](const com::ComError &e) { handled = e.number(); });
        } catch (...) {
            escaped = true;
        }
        QCOMPARE(escaped, escapes);
        QCOMPARE(handled, number);
    }
};

QTEST_GUILESS_MAIN(TestRoutine)
#include "test_routine.moc"
