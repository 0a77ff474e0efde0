// The clock: ticks and dates. Tests set it; nothing else in the program reads the time.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace pixmora {

/// Milliseconds since the process began, signed 32 bits as the run time's Long: it wraps after some 24.9 days.
using Tick = std::int32_t;

/// A moment of the machine's local calendar, to the second.
using DateTime = std::chrono::local_seconds;

Tick GetTickCount();
/// The same count for what may outlast it: it never wraps.
std::int64_t Uptime();
/// From one tick to another, right across the wrap for spans up to 24.9 days either way. @return ms, negative when `to`
/// is the earlier one
Tick TicksBetween(Tick from, Tick to);
/// The tick so many ms later, or earlier when they are negative.
Tick TickAfter(Tick tick, Tick ms);
/// Whether no more than so many ms have gone since a tick that has been, right up to 49.7 days after it. Never for less
/// than 0 ms.
bool IsWithin(Tick since, Tick ms);
DateTime Now();
/// Midnight at the start of the present day.
DateTime Today();

/// Sets the clock for a test and gives it back at the end of the scope. While it is set it stands still, save that a
/// wait for a moment (WaitUntilTick) moves it to that moment when nothing else is pending.
class ClockSetForTest {
public:
    explicit ClockSetForTest(Tick tick, DateTime now);
    ~ClockSetForTest();
    ClockSetForTest(const ClockSetForTest &) = delete;
    ClockSetForTest &operator=(const ClockSetForTest &) = delete;

    /// Moves ticks and date on together. @param ms milliseconds, 0 or more
    void Advance(std::int32_t ms);
    void SetNow(DateTime now);
};

/// Whether a test has set the clock, and the move that a wait makes then. For MessageLoop only.
bool IsClockSet();
void MoveSetClockTo(Tick tick);

DateTime MakeDate(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0);
/// Seconds since 1970-01-01 UTC as files have them, turned to local time.
DateTime LocalTime(std::int64_t unixSeconds);
DateTime AddDays(DateTime date, int days);
/// Midnights between the two: the run time's DateDiff in days. Negative when `to` is earlier.
int DateDiffDays(DateTime from, DateTime to);

int YearOf(DateTime date);
int MonthOf(DateTime date);  ///< 1 to 12
int DayOf(DateTime date);    ///< 1 to 31
int HourOf(DateTime date);   ///< 0 to 23
int MinuteOf(DateTime date);
int SecondOf(DateTime date);

/// "3/1/2004"
std::string ShortDate(DateTime date);
/// "Monday, March 1, 2004"
std::string LongDate(DateTime date);
/// "3/1/2004 4:05:06 PM", without the time at midnight: how a date turns to text by itself.
std::string DateText(DateTime date);
/// "January" to "December" for 1 to 12
std::string MonthName(int month);
/// "2004-03-01", or "2004-03-01 16:05:06" when there is a time: the form in the database.
std::string IsoDate(DateTime date);
/// Reads any of the forms of ShortDate, DateText and IsoDate. @throws RunTimeError TypeMismatch
DateTime ParseDate(std::string_view text);

}  // namespace pixmora
