#include "agents/schedule.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace agents {

namespace {
constexpr int kDayValues[7] = {1, 2, 4, 8, 16, 32, 64};

/// Whole numbers of a division's operands, as integer division rounds them.
long long whole(double value)
{
    return static_cast<long long>(std::nearbyint(value));
}
} // namespace

udtSchedule defaultSchedule()
{
    udtSchedule s;
    s.interval = 1;
    s.StartTime = QTime(6, 0);
    s.EndTime = QTime(18, 0);
    s.Days = 127;
    s.At = QTime(0, 0);
    s.Type = 0;
    return s;
}

udtSchedule &schedule()
{
    static udtSchedule record = defaultSchedule();
    return record;
}

std::array<bool, 7> daysToBoxes(int days)
{
    std::array<bool, 7> boxes{};
    for (int i = 6; i >= 0; --i) {
        const int value = kDayValues[i];
        if (days / value >= 1) {
            boxes[i] = true;
            days %= value;
            if (days == 0)
                break;
        }
    }
    return boxes;
}

int16_t daysFromBoxes(const std::array<bool, 7> &boxes)
{
    int16_t days = 0;
    for (int i = 0; i < 7; ++i)
        if (boxes[i])
            days += kDayValues[i];
    return days;
}

IntervalResult intervalRule(double hours, double minutes, bool allDay, int windowMinutes)
{
    IntervalResult r;
    long long n = whole(hours * 60 + minutes);
    const long long hourMinutes = whole(hours * 60);
    if (allDay) {
        // A test that can't be worked out (n is 0) counts as failed.
        const bool fails = n == 0 || 1440 % n != 0;
        if (fails) {
            r.adjusted = true;
            if (minutes != 0) {
                if (hourMinutes != 0)
                    n = 1440 % hourMinutes;
                if (n == 0)
                    n = hourMinutes;
            } else if (n != 0) {
                n = 1440 % n;
            }
        }
    } else {
        const long long product = static_cast<long long>(windowMinutes) * 60;
        const bool fails = n == 0 || product % n != 0;
        if (fails) {
            r.adjusted = true;
            if (n != 0)
                n = 1440 % n;
        }
    }
    r.interval = static_cast<int>(n);
    return r;
}

QString adjustmentMessage()
{
    return QStringLiteral("Either the interval is not on a 15 minute boundary\r"
                          "or the interval does not divide day evenly.\r"
                          "The interval will be adjusted accordingly.");
}

int intervalHours(int interval)
{
    return interval < 60 ? 0 : interval / 60;
}

int intervalMinutes(int interval)
{
    return interval < 60 ? interval : interval % 60;
}

int windowMinutes(const QTime &start, const QTime &end)
{
    return start.secsTo(end) / 60;
}

bool isAllDay(const QTime &start, const QTime &end)
{
    return windowMinutes(start, end) >= 1439;
}

QString formatStepTime(const QTime &time)
{
    return QLocale::c().toString(time, QStringLiteral("hh:mm AP"));
}

QString formatBoxTime(const QTime &time)
{
    return QLocale::c().toString(time, QStringLiteral("h:mm:ss AP"));
}

QTime parseBoxTime(const QString &text)
{
    const QString t = text.trimmed().toUpper();
    for (const QString &format :
         {QStringLiteral("h:mm:ss AP"), QStringLiteral("h:mm AP"), QStringLiteral("hh:mm AP"),
          QStringLiteral("H:mm:ss"), QStringLiteral("H:mm")}) {
        const QTime time = QLocale::c().toTime(t, format);
        if (time.isValid())
            return time;
    }
    return QTime();
}

QTime stepTime(const QTime &time, int quarters)
{
    return time.addSecs(quarters * 15 * 60);
}

} // namespace agents
