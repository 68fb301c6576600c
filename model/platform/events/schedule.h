#pragma once

#include <QTime>

#include <cstdint>
#include <memory>

namespace events {

struct BindingData;

/// A binding's timer settings: `Type` 1 hourly, 2 daily, 3 weekly; `Days`
/// a weekday bit set (Monday 1 ... Sunday 64); times of day at minute
/// precision. Changes are the binding's and reach the store with its
/// `SaveChanges`.
class Schedule {
public:
    explicit Schedule(std::shared_ptr<BindingData> binding) : d(std::move(binding)) {}

    /// Forgets the old settings: every number 0, every time 0:00.
    void Clear();

    QTime At() const;
    void setAt(const QTime &at);
    int16_t Days() const;
    void setDays(int16_t days);
    QTime StartTime() const;
    void setStartTime(const QTime &time);
    QTime EndTime() const;
    void setEndTime(const QTime &time);
    /// Minutes between hourly runs.
    int16_t interval() const;
    void setInterval(int16_t minutes);
    int16_t Type() const;
    void setType(int16_t type);

private:
    std::shared_ptr<BindingData> d;
};

/// A time of day cut to the minute; 0:00 for an invalid time.
QTime toMinute(const QTime &time);

/// Minutes since midnight, as the store keeps times of day, and back.
int minutesOf(const QTime &time);
QTime timeOfMinutes(int minutes);

} // namespace events
