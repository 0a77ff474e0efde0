// Clock.h: calendar arithmetic and the texts of dates. Nothing here reads the clock.
#include <array>
#include <ctime>
#include <optional>

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

/// Takes a date's text from its front, piece by piece.
class DateScanner {
public:
    explicit DateScanner(std::string_view text) : rest_(text) {}

    bool AtEnd() const { return rest_.empty(); }

    bool Take(std::string_view piece) {
        if (!rest_.starts_with(piece)) return false;
        rest_.remove_prefix(piece.size());
        return true;
    }

    /// 1 to `longest` digits
    std::optional<int> Number(std::size_t longest) {
        int value = 0;
        std::size_t count = 0;
        for (; count < longest && count < rest_.size() && rest_[count] >= '0' && rest_[count] <= '9'; ++count) {
            value = value * 10 + (rest_[count] - '0');
        }
        if (count == 0) return std::nullopt;
        rest_.remove_prefix(count);
        return value;
    }

private:
    std::string_view rest_;
};

[[noreturn]] void Refuse() {
    throw RunTimeError(ErrorNumber::TypeMismatch);
}

int Required(std::optional<int> number) {
    if (!number) Refuse();
    return *number;
}

/// "2004-03-01" or "3/1/2004"
DateTime ReadDay(DateScanner &scanner) {
    const int first = Required(scanner.Number(4));
    const bool isIso = scanner.Take("-");
    if (!isIso && !scanner.Take("/")) Refuse();
    const int second = Required(scanner.Number(2));
    if (!scanner.Take(isIso ? "-" : "/")) Refuse();
    const int third = Required(scanner.Number(4));

    const auto date =
        isIso ? std::chrono::year_month_day{std::chrono::year{first}, std::chrono::month{static_cast<unsigned>(second)},
                                            std::chrono::day{static_cast<unsigned>(third)}}
              : std::chrono::year_month_day{std::chrono::year{third}, std::chrono::month{static_cast<unsigned>(first)},
                                            std::chrono::day{static_cast<unsigned>(second)}};
    // Below 100 a year would be a guess at the century.
    if (!date.ok() || date.year() < std::chrono::year{100}) Refuse();
    return std::chrono::local_days{date};
}

/// "16:05:06" or "4:05:06 PM"
seconds ReadTime(DateScanner &scanner) {
    int hour = Required(scanner.Number(2));
    if (!scanner.Take(":")) Refuse();
    const int minute = Required(scanner.Number(2));
    if (!scanner.Take(":")) Refuse();
    const int second = Required(scanner.Number(2));

    const bool isMorning = scanner.Take(" AM");
    const bool isAfternoon = !isMorning && scanner.Take(" PM");
    if (isMorning || isAfternoon) {
        if (hour < 1 || hour > 12) Refuse();
        hour = hour % 12 + (isAfternoon ? 12 : 0);
    }
    if (hour > 23 || minute > 59 || second > 59) Refuse();
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
    DateScanner scanner(text);
    DateTime date = ReadDay(scanner);
    if (scanner.Take(" ")) date += ReadTime(scanner);
    if (!scanner.AtEnd()) Refuse();
    return date;
}

}  // namespace pixmora
