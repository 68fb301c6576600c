#pragma once

#include <QString>
#include <QTime>

#include <array>
#include <cstdint>

namespace agents {

/// The schedule being edited: one record for the whole program, which the
/// schedule dialog reads and writes and the install and properties commands
/// copy to and from a binding.
struct udtSchedule {
    QTime At;             ///< time of a daily or weekly run
    int16_t Days = 0;     ///< weekdays, Monday 1 ... Sunday 64
    QTime StartTime;      ///< an hourly run's window opens
    QTime EndTime;        ///< and closes
    int16_t interval = 0; ///< minutes between hourly runs
    int16_t Type = 0;     ///< 0 not set yet, 1 hourly, 2 daily, 3 weekly

    bool operator==(const udtSchedule &) const = default;
};

/// The default record: interval 1, 6:00 AM to 6:00 PM, every day, at
/// 12:00 AM, type 0.
udtSchedule defaultSchedule();

/// The program's one schedule record.
udtSchedule &schedule();

/// The seven day boxes, Monday first, as `GetDays` ticks them from a value:
/// from Sunday (64) down, a box is ticked when the value holds its bit value
/// at least once, and the value becomes the remainder; the walk ends at 0.
std::array<bool, 7> daysToBoxes(int days);

/// `Days` from the ticked boxes, Monday first.
int16_t daysFromBoxes(const std::array<bool, 7> &boxes);

/// The outcome of the interval rule of the schedule dialog's OK.
struct IntervalResult {
    int interval = 0;
    bool adjusted = false; ///< the adjustment message is shown
};

/// The interval from the hours and minutes the user typed. All day: the
/// interval must divide the day; with a window: the window's minutes times
/// 60 must be divisible by it. Otherwise it is adjusted as the dialog has
/// always done; a division that can't be made leaves it as it was.
IntervalResult intervalRule(double hours, double minutes, bool allDay, int windowMinutes);

/// The adjustment message, lines joined by one carriage return.
QString adjustmentMessage();

/// Hours and minutes the dialog shows for an interval.
int intervalHours(int interval);
int intervalMinutes(int interval);

/// Whether a window is the whole day: its end 1439 or more minutes after
/// its start.
bool isAllDay(const QTime &start, const QTime &end);

/// Whole minutes from `start` to `end`; negative when the end comes first.
int windowMinutes(const QTime &start, const QTime &end);

/// A time box's text after a step: "hh:nn AM/PM" ("06:15 AM").
QString formatStepTime(const QTime &time);
/// A time as a box shows it when filled from the record ("6:00:00 AM").
QString formatBoxTime(const QTime &time);
/// The time of day a box's text names; an invalid time when none.
QTime parseBoxTime(const QString &text);
/// The spin controls' and keypad's step of 15 minutes, wrapping at midnight.
QTime stepTime(const QTime &time, int quarters);

} // namespace agents
