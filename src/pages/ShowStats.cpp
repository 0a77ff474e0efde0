// The statistics page: the site's figures by span, hour, day and month, over all albums.
#include <array>

#include "core/site/Globals.h"
#include "pages/Templates.h"
#include "pages/clsWebServerCommands.h"
#include "platform/Clock.h"
#include "platform/Database.h"
#include "platform/Numbers.h"
#include "store/Globals.h"

namespace pixmora {

namespace {

constexpr std::string_view plainRow = "<tr>";

std::string PointerRow(int index) {
    const auto pointer = [index](std::string_view action) {
        return Concat("setPointer(this, ", index, ", '", action, "', '#ffffff', '#F4F4F4', '#dddddd');");
    };
    return Concat(R"(<tr style="cursor: hand;" onMouseOver=")", pointer("over"), R"(" onMouseOut=")", pointer("out"),
                  R"(" onClick=")", pointer("click"), R"(">)");
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

double Sum(const Recordset &row, std::string_view column) {
    const FieldValue value = row.Value(column);
    return IsNull(value) ? 0 : AsDouble(value);
}

void AppendFigure(std::string &table, std::string_view figure) {
    Append(table, R"(<td class="tdTableRow" align="right">)", figure, "</td>", CrLf);
}

/// One row. @param opening its "<tr>" @param source the table and the condition that the figures are summed over
void AppendRow(std::string &table, std::string_view opening, std::string_view label, std::string_view source) {
    const auto sums = gDatabase->OpenRecordset(Concat("SELECT SUM(Visitors) as v, SUM(Thumbs) as t, "
                                                      "SUM(Downloads) as d, SUM(Bandwidth) as b FROM ",
                                                      source),
                                               RecordsetType::Snapshot);
    Append(table, opening, CrLf, R"(<td class="tdTableRow">)", label, "</td>", CrLf);
    AppendFigure(table, NumberText(Sum(*sums, "v")));
    AppendFigure(table, NumberText(Sum(*sums, "t")));
    AppendFigure(table, NumberText(Sum(*sums, "d")));
    AppendFigure(table, FormatByteSize(Sum(*sums, "b") * 1024));
    Append(table, "</tr>", CrLf);
}

std::string Summary(DateTime today) {
    const auto since = [today](int days) {
        return Concat("StatsDaily WHERE WhichDay>", QuotedDate(AddDays(today, -days)));
    };
    std::string table = OpenTable("Stats Summary", "Timespan");
    AppendRow(table, plainRow, "Today", Concat("StatsDaily WHERE WhichDay=", QuotedDate(today)));
    AppendRow(table, plainRow, "Last 7 Days", since(7));
    AppendRow(table, plainRow, "Last 30 Days", since(30));
    AppendRow(table, plainRow, "Overall", "StatsMonthly");
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

std::string Hourly(DateTime today, int currentHour) {
    std::string table = OpenTable("Last 24 Hours", "Hour");
    for (int i = 0; i < 24; ++i) {
        const int back = currentHour - i;
        const int hour = back < 0 ? back + 24 : back;
        const DateTime day = back < 0 ? AddDays(today, -1) : today;
        AppendRow(table, PointerRow(i), HourLabel(hour),
                  Concat("StatsHourly WHERE WhichDay=", QuotedDate(day), " and WhichHour=", hour));
    }
    return table.append(tableEnd);
}

std::string Daily(DateTime today) {
    std::string table = OpenTable("Daily Stats", "Day");
    for (int i = 0; i < 14; ++i) {
        const DateTime day = AddDays(today, -i);
        AppendRow(table, PointerRow(i), ShortDate(day), Concat("StatsDaily WHERE WhichDay=", QuotedDate(day)));
    }
    return table.append(tableEnd);
}

std::string Monthly(DateTime today) {
    std::string table = OpenTable("Monthly Stats", "Month");
    for (int i = 0; i < 12; ++i) {
        const int back = MonthOf(today) - i;
        const int month = back < 1 ? back + 12 : back;
        const int year = back < 1 ? YearOf(today) - 1 : YearOf(today);
        AppendRow(table, PointerRow(i), Concat(MonthName(month), " '", FormatPadded(year % 100, 2)),
                  Concat("StatsMonthly WHERE WhichYear=", year, " and WhichMonth=", month));
    }
    return table.append(tableEnd);
}

void FillTables(std::string &page) {
    const DateTime now = Now();  // read once, so that midnight can't fall between the tables
    const DateTime today = std::chrono::floor<std::chrono::days>(now);
    const ReadScope reads(*gDatabase);  // each row is a question
    Fill(page, "{STATS_SUMMARY}", Summary(today));
    Fill(page, "{STATS_HOURLY}", Hourly(today, HourOf(now)));
    Fill(page, "{STATS_DAILY}", Daily(today));
    Fill(page, "{STATS_MONTHLY}", Monthly(today));
}

}  // namespace

void clsWebServerCommands::genShowStats(const Connection &socket) const {
    std::string page = WriteResponseHead("text/html", true) + tplShowStats;
    Fill(page, "{STYLE_SHEET}", gStyleSheet);
    Fill(page, "{SERVER_TITLE}", gServerTitle);
    Fill(page, "{AUTHOR}", gAuthor);
    FillTables(page);
    // Deliberate: this page's own bytes are not counted.
    SendIgnoringErrors(socket, page);
}

}  // namespace pixmora
