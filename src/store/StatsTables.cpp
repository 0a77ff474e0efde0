// The figures of the statistics page: by span, hour, day and month, over all albums.
#include "store/StatsTables.h"

#include <map>
#include <string_view>
#include <utility>

#include "platform/database/Database.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"

namespace pixmora {

namespace {

double NumberOrZero(const FieldValue &value) {
    return IsNull(value) ? 0 : AsDouble(value);
}

/// A table's figures over all albums, by one or two of its fields, in one question.
/// @param keyOf makes the key of a row, whose first columns are the fields; rows that lack one are left out
template <typename Key, typename KeyOf>
std::map<Key, StatsFigures> SumsBy(const std::vector<std::string_view> &fields, std::string_view table, KeyOf keyOf) {
    std::string columns;
    for (const std::string_view field : fields) Append(columns, columns.empty() ? "" : ", ", field);
    const auto rows = gDatabase->OpenRecordset(
        Concat("SELECT ", columns, ", SUM(Visitors) as v, SUM(Thumbs) as t, SUM(Downloads) as d, SUM(Bandwidth) as b ",
               "FROM ", table, " GROUP BY ", columns),
        RecordsetType::Snapshot);
    const auto count = static_cast<int>(fields.size());
    std::map<Key, StatsFigures> sums;
    for (; !rows->Eof(); rows->MoveNext()) {
        if (IsNull(rows->Value(0)) || IsNull(rows->Value(count - 1))) continue;
        const auto figure = [&](int place) {
            return NumberOrZero(rows->Value(count + place));
        };
        sums[keyOf(*rows)] += StatsFigures{figure(0), figure(1), figure(2), figure(3)};
    }
    return sums;
}

template <typename Key>
StatsFigures At(const std::map<Key, StatsFigures> &sums, const Key &key) {
    const auto found = sums.find(key);
    return found == sums.end() ? StatsFigures() : found->second;
}

using DailySums = std::map<DateTime, StatsFigures>;
using HourlySums = std::map<std::pair<DateTime, std::int64_t>, StatsFigures>;
using MonthlySums = std::map<std::pair<std::int64_t, std::int64_t>, StatsFigures>;

DailySums ReadDailySums() {
    return SumsBy<DailySums::key_type>({"WhichDay"}, "StatsDaily",
                                       [](const Recordset &row) { return AsDate(row.Value(0)); });
}

HourlySums ReadHourlySums() {
    return SumsBy<HourlySums::key_type>({"WhichDay", "WhichHour"}, "StatsHourly", [](const Recordset &row) {
        return std::pair(AsDate(row.Value(0)), AsLong(row.Value(1)));
    });
}

MonthlySums ReadMonthlySums() {
    return SumsBy<MonthlySums::key_type>({"WhichYear", "WhichMonth"}, "StatsMonthly", [](const Recordset &row) {
        return std::pair(AsLong(row.Value(0)), AsLong(row.Value(1)));
    });
}

StatsTable Summary(DateTime today, const DailySums &days, const MonthlySums &months) {
    const auto since = [&](int count) {
        StatsFigures sum;
        for (auto day = days.upper_bound(AddDays(today, -count)); day != days.end(); ++day) sum += day->second;
        return sum;
    };
    StatsFigures overall;
    for (const auto &[month, figures] : months) overall += figures;
    return {"Stats Summary",
            "Timespan",
            {{"Today", At(days, today)}, {"Last 7 Days", since(7)}, {"Last 30 Days", since(30)}, {"Overall", overall}}};
}

std::string HourLabel(int hour) {
    if (hour == 0) return "12am to 1am";
    if (hour == 11) return "11am to 12pm";
    if (hour == 12) return "12pm to 1pm";
    if (hour == 23) return "11pm to 12am";
    if (hour < 12) return Concat(hour, "am to ", hour + 1, "am");
    return Concat(hour - 12, "pm to ", hour - 11, "pm");
}

StatsTable Hourly(DateTime today, int currentHour, const HourlySums &hours) {
    StatsTable table{"Last 24 Hours", "Hour", {}};
    for (int i = 0; i < 24; ++i) {
        const int back = currentHour - i;
        const int hour = back < 0 ? back + 24 : back;
        const DateTime day = back < 0 ? AddDays(today, -1) : today;
        table.Rows.push_back({HourLabel(hour), At(hours, {day, hour})});
    }
    return table;
}

StatsTable Daily(DateTime today, const DailySums &days) {
    StatsTable table{"Daily Stats", "Day", {}};
    for (int i = 0; i < 14; ++i) {
        const DateTime day = AddDays(today, -i);
        table.Rows.push_back({ShortDate(day), At(days, day)});
    }
    return table;
}

StatsTable Monthly(DateTime today, const MonthlySums &months) {
    StatsTable table{"Monthly Stats", "Month", {}};
    for (int i = 0; i < 12; ++i) {
        const int back = MonthOf(today) - i;
        const int month = back < 1 ? back + 12 : back;
        const int year = back < 1 ? YearOf(today) - 1 : YearOf(today);
        table.Rows.push_back({Concat(MonthName(month), " '", FormatPadded(year % 100, 2)), At(months, {year, month})});
    }
    return table;
}

}  // namespace

StatsFigures &StatsFigures::operator+=(const StatsFigures &other) {
    Visitors += other.Visitors;
    Thumbs += other.Thumbs;
    Downloads += other.Downloads;
    Bandwidth += other.Bandwidth;
    return *this;
}

std::vector<std::string> FigureTexts(const StatsFigures &figures) {
    return {NumberText(figures.Visitors), NumberText(figures.Thumbs), NumberText(figures.Downloads),
            FormatByteSize(figures.Bandwidth * 1024)};
}

std::vector<StatsTable> ReadStatsTables() {
    const DateTime now = Now();  // read once, so that midnight can't fall between the tables
    const DateTime today = std::chrono::floor<std::chrono::days>(now);
    const ReadScope reads(*gDatabase);
    const DailySums days = ReadDailySums();
    const MonthlySums months = ReadMonthlySums();
    return {Summary(today, days, months), Hourly(today, HourOf(now), ReadHourlySums()), Daily(today, days),
            Monthly(today, months)};
}

}  // namespace pixmora
