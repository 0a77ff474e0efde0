// clsWebServerCommands.h: the statistics page: the site's figures by span, hour, day and month, over all albums.
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/site/Globals.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/database/Database.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "store/Globals.h"

namespace pixmora {

namespace {

constexpr std::string_view plainRow = "<tr>";

/// What one or more of the tables' rows say.
struct Figures {
    double Visitors = 0;
    double Thumbs = 0;
    double Downloads = 0;
    double Bandwidth = 0;  ///< kilobytes

    Figures &operator+=(const Figures &other) {
        Visitors += other.Visitors;
        Thumbs += other.Thumbs;
        Downloads += other.Downloads;
        Bandwidth += other.Bandwidth;
        return *this;
    }
};

double NumberOrZero(const FieldValue &value) {
    return IsNull(value) ? 0 : AsDouble(value);
}

/// A table's figures over all albums, by one or two of its fields, in one question.
/// @param keyOf makes the key of a row, whose first columns are the fields; rows that lack one are left out
template <typename Key, typename KeyOf>
std::map<Key, Figures> SumsBy(const std::vector<std::string_view> &fields, std::string_view table, KeyOf keyOf) {
    std::string columns;
    for (const std::string_view field : fields) Append(columns, columns.empty() ? "" : ", ", field);
    const auto rows = gDatabase->OpenRecordset(
        Concat("SELECT ", columns, ", SUM(Visitors) as v, SUM(Thumbs) as t, SUM(Downloads) as d, SUM(Bandwidth) as b ",
               "FROM ", table, " GROUP BY ", columns),
        RecordsetType::Snapshot);
    const auto count = static_cast<int>(fields.size());
    std::map<Key, Figures> sums;
    for (; !rows->Eof(); rows->MoveNext()) {
        if (IsNull(rows->Value(0)) || IsNull(rows->Value(count - 1))) continue;
        const auto figure = [&](int place) {
            return NumberOrZero(rows->Value(count + place));
        };
        sums[keyOf(*rows)] += Figures{figure(0), figure(1), figure(2), figure(3)};
    }
    return sums;
}

template <typename Key>
Figures At(const std::map<Key, Figures> &sums, const Key &key) {
    const auto found = sums.find(key);
    return found == sums.end() ? Figures() : found->second;
}

using DailySums = std::map<DateTime, Figures>;
using HourlySums = std::map<std::pair<DateTime, std::int64_t>, Figures>;
using MonthlySums = std::map<std::pair<std::int64_t, std::int64_t>, Figures>;

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

void AppendPointer(std::string &row, std::string_view attribute, int index, std::string_view action) {
    Append(row, attribute, R"(="setPointer(this, )", index, ", '", action, R"(', '#ffffff', '#F4F4F4', '#dddddd');")");
}

std::string PointerRow(int index) {
    std::string row = R"(<tr style="cursor: hand;")";
    AppendPointer(row, " onMouseOver", index, "over");
    AppendPointer(row, " onMouseOut", index, "out");
    AppendPointer(row, " onClick", index, "click");
    return row += ">";
}

void AppendHeading(std::string &table, std::string_view column) {
    Append(table, R"(<td class="tdTableRow" width="20%" align="right"><b>)", column, "</b></td>", CrLf);
}

/// The table up to its rows. @param spanColumn heading of the first column
std::string OpenTable(std::string_view title, std::string_view spanColumn) {
    std::string table =
        Concat(R"(<table border=0 width="90%" cellpadding="3" cellspacing="1" class="tblTableHeader">)", CrLf, "<tr>",
               CrLf, R"(<td class="tdTableTitle">)", title, "</td>", CrLf, "</tr>", CrLf, "<tr>", CrLf,
               R"(<td class="tdTableContents">)", CrLf, R"(<table border=0 width="100%">)", CrLf, "<tr>", CrLf,
               R"(<td class="tdTableRow" width="20%"><b>)", spanColumn, "</b></td>", CrLf);
    AppendHeading(table, "Visitors");
    AppendHeading(table, "Thumbnails");
    AppendHeading(table, "File Clicks");
    AppendHeading(table, "Bandwidth");
    Append(table, "</tr>", CrLf);
    return table;
}

constexpr std::string_view tableEnd = "</table></td></tr></table><br><br>";

void AppendFigure(std::string &table, std::string_view figure) {
    Append(table, R"(<td class="tdTableRow" align="right">)", figure, "</td>", CrLf);
}

/// One row. @param opening its "<tr>"
void AppendRow(std::string &table, std::string_view opening, std::string_view label, const Figures &figures) {
    Append(table, opening, CrLf, R"(<td class="tdTableRow">)", label, "</td>", CrLf);
    AppendFigure(table, NumberText(figures.Visitors));
    AppendFigure(table, NumberText(figures.Thumbs));
    AppendFigure(table, NumberText(figures.Downloads));
    AppendFigure(table, FormatByteSize(figures.Bandwidth * 1024));
    Append(table, "</tr>", CrLf);
}

std::string Summary(DateTime today, const DailySums &days, const MonthlySums &months) {
    const auto since = [&](int count) {
        Figures sum;
        for (auto day = days.upper_bound(AddDays(today, -count)); day != days.end(); ++day) sum += day->second;
        return sum;
    };
    Figures overall;
    for (const auto &[month, figures] : months) overall += figures;
    std::string table = OpenTable("Stats Summary", "Timespan");
    AppendRow(table, plainRow, "Today", At(days, today));
    AppendRow(table, plainRow, "Last 7 Days", since(7));
    AppendRow(table, plainRow, "Last 30 Days", since(30));
    AppendRow(table, plainRow, "Overall", overall);
    return table.append(tableEnd);
}

std::string HourLabel(int hour) {
    if (hour == 0) return "12am to 1am";
    if (hour == 11) return "11am to 12pm";
    if (hour == 12) return "12pm to 1pm";
    if (hour == 23) return "11pm to 12am";
    if (hour < 12) return Concat(hour, "am to ", hour + 1, "am");
    return Concat(hour - 12, "pm to ", hour - 11, "pm");
}

std::string Hourly(DateTime today, int currentHour, const HourlySums &hours) {
    std::string table = OpenTable("Last 24 Hours", "Hour");
    for (int i = 0; i < 24; ++i) {
        const int back = currentHour - i;
        const int hour = back < 0 ? back + 24 : back;
        const DateTime day = back < 0 ? AddDays(today, -1) : today;
        AppendRow(table, PointerRow(i), HourLabel(hour), At(hours, {day, hour}));
    }
    return table.append(tableEnd);
}

std::string Daily(DateTime today, const DailySums &days) {
    std::string table = OpenTable("Daily Stats", "Day");
    for (int i = 0; i < 14; ++i) {
        const DateTime day = AddDays(today, -i);
        AppendRow(table, PointerRow(i), ShortDate(day), At(days, day));
    }
    return table.append(tableEnd);
}

std::string Monthly(DateTime today, const MonthlySums &months) {
    std::string table = OpenTable("Monthly Stats", "Month");
    for (int i = 0; i < 12; ++i) {
        const int back = MonthOf(today) - i;
        const int month = back < 1 ? back + 12 : back;
        const int year = back < 1 ? YearOf(today) - 1 : YearOf(today);
        AppendRow(table, PointerRow(i), Concat(MonthName(month), " '", FormatPadded(year % 100, 2)),
                  At(months, {year, month}));
    }
    return table.append(tableEnd);
}

/// The four tables. @param fillings of the page
void AddTables(std::vector<Filling> &fillings) {
    const DateTime now = Now();  // read once, so that midnight can't fall between the tables
    const DateTime today = std::chrono::floor<std::chrono::days>(now);
    const ReadScope reads(*gDatabase);
    const DailySums days = ReadDailySums();
    const MonthlySums months = ReadMonthlySums();
    fillings.push_back({"{STATS_SUMMARY}", Summary(today, days, months)});
    fillings.push_back({"{STATS_HOURLY}", Hourly(today, HourOf(now), ReadHourlySums())});
    fillings.push_back({"{STATS_DAILY}", Daily(today, days)});
    fillings.push_back({"{STATS_MONTHLY}", Monthly(today, months)});
}

}  // namespace

void clsWebServerCommands::genShowStats(const Connection &socket) const {
    std::vector<Filling> fillings = {
        {"{STYLE_SHEET}", gStyleSheet}, {"{SERVER_TITLE}", gServerTitle}, {"{AUTHOR}", gAuthor}};
    AddTables(fillings);
    // Deliberate: this page's own bytes are not counted.
    SendPage(socket, tplShowStats, fillings);
}

}  // namespace pixmora
