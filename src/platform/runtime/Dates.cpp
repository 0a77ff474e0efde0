// Clock.h: calendar arithmetic and the texts of dates. Nothing here reads the clock.
#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr std::array<const char *, 12> monthNames = {"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
constexpr std::array<const char *, 7> weekdayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                      "Thursday", "Friday", "Saturday"};

std::chrono::year_month_day CalendarOf(DateTime date) {
    return std::chrono::year_month_day{floor<days>(date)};
}

std::chrono::hh_mm_ss<seconds> ClockOf(DateTime date) {
    return std::chrono::hh_mm_ss<seconds>{date - floor<days>(date)};
}

bool IsMidnight(DateTime date) {
    return date == floor<days>(date);
}

std::string IsoDay(DateTime date) {
    return FormatPadded(YearOf(date), 4) + "-" + FormatPadded(MonthOf(date), 2) + "-" + FormatPadded(DayOf(date), 2);
}

std::string MinutesAndSeconds(DateTime date) {
    return ":" + FormatPadded(MinuteOf(date), 2) + ":" + FormatPadded(SecondOf(date), 2);
}

void Require(bool isRight) {
    if (!isRight) throw RunTimeError(ErrorNumber::TypeMismatch);
}

/// Takes the piece from the front of the rest, if it is there.
bool Take(std::string_view &rest, std::string_view piece) {
    const bool isThere = rest.starts_with(piece);
    if (isThere) rest.remove_prefix(piece.size());
    return isThere;
}

/// Takes 1 to `longest` digits.
int TakeNumber(std::string_view &rest, std::size_t longest) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + std::min(longest, rest.size()), value);
    Require(error == std::errc());
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return static_cast<int>(value);
}

/// "2004-03-01" or "3/1/2004"
DateTime TakeDay(std::string_view &rest) {
    const int first = TakeNumber(rest, 4);
    const bool isIso = Take(rest, "-");
    Require(isIso || Take(rest, "/"));
    const int second = TakeNumber(rest, 2);
    Require(Take(rest, isIso ? "-" : "/"));
    const int third = TakeNumber(rest, 4);
    const auto [year, month, day] = isIso ? std::array{first, second, third} : std::array{third, first, second};
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                           std::chrono::day{static_cast<unsigned>(day)}};
    Require(date.ok() && year >= 100);  // below 100 a year would be a guess at the century
    return std::chrono::local_days{date};
}

/// "16:05:06" or "4:05:06 PM"
seconds TakeTime(std::string_view &rest) {
    int hour = TakeNumber(rest, 2);
    Require(Take(rest, ":"));
    const int minute = TakeNumber(rest, 2);
    Require(Take(rest, ":"));
    const int second = TakeNumber(rest, 2);
    const bool isAfternoon = Take(rest, " PM");
    if (isAfternoon || Take(rest, " AM")) {
        Require(hour >= 1 && hour <= 12);
        hour = hour % 12 + (isAfternoon ? 12 : 0);
    }
    Require(hour <= 23 && minute <= 59 && second <= 59);
    return hours{hour} + minutes{minute} + seconds{second};
}

}  // namespace

DateTime MakeDate(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
    return std::chrono::local_days{date} + hours{hour} + minutes{minute} + seconds{second};
}

DateTime LocalTime(std::int64_t unixSeconds) {
    const std::time_t moment = unixSeconds;
    std::tm parts{};
    // Only a year beyond an int fails; a file may claim any time.
    if (localtime_r(&moment, &parts) == nullptr) return DateTime{};
    return DateTime{seconds{unixSeconds + parts.tm_gmtoff}};
}

DateTime AddDays(DateTime date, int count) {
    return date + days{count};
}

int DateDiffDays(DateTime from, DateTime to) {
    return static_cast<int>((floor<days>(to) - floor<days>(from)).count());
}

int YearOf(DateTime date) {
    return static_cast<int>(CalendarOf(date).year());
}
int MonthOf(DateTime date) {
    return static_cast<int>(static_cast<unsigned>(CalendarOf(date).month()));
}
int DayOf(DateTime date) {
    return static_cast<int>(static_cast<unsigned>(CalendarOf(date).day()));
}
int HourOf(DateTime date) {
    return static_cast<int>(ClockOf(date).hours().count());
}
int MinuteOf(DateTime date) {
    return static_cast<int>(ClockOf(date).minutes().count());
}
int SecondOf(DateTime date) {
    return static_cast<int>(ClockOf(date).seconds().count());
}

std::string ShortDate(DateTime date) {
    return std::to_string(MonthOf(date)) + "/" + std::to_string(DayOf(date)) + "/" + std::to_string(YearOf(date));
}

std::string LongDate(DateTime date) {
    const std::chrono::weekday weekday{floor<days>(date)};
    return std::string(weekdayNames[weekday.c_encoding()]) + ", " + MonthName(MonthOf(date)) + " " +
           std::to_string(DayOf(date)) + ", " + std::to_string(YearOf(date));
}

std::string DateText(DateTime date) {
    if (IsMidnight(date)) return ShortDate(date);
    const int hour = HourOf(date);
    const int hourOfTwelve = hour % 12 == 0 ? 12 : hour % 12;
    return ShortDate(date) + " " + std::to_string(hourOfTwelve) + MinutesAndSeconds(date) + (hour < 12 ? " AM" : " PM");
}

std::string MonthName(int month) {
    if (month < 1 || month > 12) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    return monthNames[static_cast<std::size_t>(month - 1)];
}

std::string IsoDate(DateTime date) {
    if (IsMidnight(date)) return IsoDay(date);
    return IsoDay(date) + " " + FormatPadded(HourOf(date), 2) + MinutesAndSeconds(date);
}

DateTime ParseDate(std::string_view text) {
    DateTime date = TakeDay(text);
    if (Take(text, " ")) date += TakeTime(text);
    Require(text.empty());
    return date;
}

}  // namespace pixmora
