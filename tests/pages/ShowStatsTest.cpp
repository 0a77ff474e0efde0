// Tests of the statistics page.
#include <gtest/gtest.h>

#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ShowStatsTest : public SiteFixture {
protected:
    std::string Page() {
        return Answer([](const Connection &socket) { gWebServerCommands->genShowStats(socket); });
    }
    /// The cells of a table's rows without their elements: "Today,1,2,3,4.00 KB|...", the heading first.
    static std::string Cells(const std::string &page, const std::string &table) {
        std::vector<std::string> rows;
        for (const std::string &row : Split(Filled(page, table), "<tr")) {
            std::vector<std::string> cells;
            for (const std::string &cell : Split(row, "<td class=\"tdTableRow\"")) {
                if (!Contains(cell, "</td>")) continue;
                const std::string text = cell.substr(cell.find('>') + 1);
                cells.push_back(Replace(Replace(text.substr(0, text.find("</td>")), "<b>", ""), "</b>", ""));
            }
            if (cells.size() == 5) rows.push_back(Join(cells, ","));
        }
        return Join(rows, "|");
    }
    /// @param row 0 is the heading
    static std::string RowOf(const std::string &cells, std::size_t row) { return Split(cells, "|").at(row); }

    void AddHour(DateTime day, std::int64_t hour, std::int64_t visitors) const {
        AddRow("StatsHourly", {{"AlbumName", "A"}, {"WhichDay", day}, {"WhichHour", hour}, {"Visitors", visitors}});
    }
    void AddDay(const std::string &album, DateTime day, std::int64_t thumbs, std::int64_t kilobytes) const {
        AddRow("StatsDaily", {{"AlbumName", album}, {"WhichDay", day}, {"Thumbs", thumbs}, {"Bandwidth", kilobytes}});
    }
    void AddMonth(std::int64_t year, std::int64_t month, std::int64_t downloads) const {
        AddRow("StatsMonthly",
               {{"AlbumName", "A"}, {"WhichYear", year}, {"WhichMonth", month}, {"Downloads", downloads}});
    }
};

TEST_F(ShowStatsTest, ShowsZerosInEveryRowOfAnEmptyDatabase) {
    const std::string page = Page();
    EXPECT_TRUE(page.starts_with(WriteResponseHead("text/html", true) + "ShowStats\n"));
    EXPECT_EQ(Filled(page, "STYLE_SHEET") + Filled(page, "SERVER_TITLE") + Filled(page, "AUTHOR"),
              ".style {}Anna's SiteAnna O'Neil");
    EXPECT_EQ(Cells(page, "STATS_SUMMARY"),
              "Timespan,Visitors,Thumbnails,File Clicks,Bandwidth|Today,0,0,0,0 bytes|Last 7 Days,0,0,0,0 bytes|"
              "Last 30 Days,0,0,0,0 bytes|Overall,0,0,0,0 bytes");
    EXPECT_EQ(Count(Cells(page, "STATS_HOURLY"), ",0,0,0,0 bytes"), 24);
    EXPECT_EQ(Count(Cells(page, "STATS_DAILY"), ",0,0,0,0 bytes"), 14);
    EXPECT_EQ(Count(Cells(page, "STATS_MONTHLY"), ",0,0,0,0 bytes"), 12);
    EXPECT_EQ(gBandwidthSession, 0);
    EXPECT_EQ(Column("StatsTotal", "Stat"), "");
}

TEST_F(ShowStatsTest, BuildsItsTablesToTheLetter) {
    const std::string page = Page();
    const std::string daily = Filled(page, "STATS_DAILY");
    const std::string heading =
        "<table border=0 width=\"90%\" cellpadding=\"3\" cellspacing=\"1\" class=\"tblTableHeader\">\r\n"
        "<tr>\r\n<td class=\"tdTableTitle\">Daily Stats</td>\r\n</tr>\r\n"
        "<tr>\r\n<td class=\"tdTableContents\">\r\n<table border=0 width=\"100%\">\r\n"
        "<tr>\r\n<td class=\"tdTableRow\" width=\"20%\"><b>Day</b></td>\r\n"
        "<td class=\"tdTableRow\" width=\"20%\" align=\"right\"><b>Visitors</b></td>\r\n"
        "<td class=\"tdTableRow\" width=\"20%\" align=\"right\"><b>Thumbnails</b></td>\r\n"
        "<td class=\"tdTableRow\" width=\"20%\" align=\"right\"><b>File Clicks</b></td>\r\n"
        "<td class=\"tdTableRow\" width=\"20%\" align=\"right\"><b>Bandwidth</b></td>\r\n</tr>\r\n";
    const std::string row =
        "<tr style=\"cursor: hand;\""
        " onMouseOver=\"setPointer(this, 0, 'over', '#ffffff', '#F4F4F4', '#dddddd');\""
        " onMouseOut=\"setPointer(this, 0, 'out', '#ffffff', '#F4F4F4', '#dddddd');\""
        " onClick=\"setPointer(this, 0, 'click', '#ffffff', '#F4F4F4', '#dddddd');\">\r\n"
        "<td class=\"tdTableRow\">3/10/2004</td>\r\n"
        "<td class=\"tdTableRow\" align=\"right\">0</td>\r\n"
        "<td class=\"tdTableRow\" align=\"right\">0</td>\r\n"
        "<td class=\"tdTableRow\" align=\"right\">0</td>\r\n"
        "<td class=\"tdTableRow\" align=\"right\">0 bytes</td>\r\n</tr>\r\n";
    EXPECT_EQ(daily.substr(0, heading.size() + row.size()), heading + row);
    EXPECT_TRUE(daily.ends_with("</tr>\r\n</table></td></tr></table><br><br>"));
    EXPECT_TRUE(Contains(daily, "setPointer(this, 13, 'click'"));
    EXPECT_TRUE(Contains(Filled(page, "STATS_SUMMARY"), "<tr>\r\n<td class=\"tdTableRow\">Today</td>"));
    EXPECT_TRUE(Contains(Filled(page, "STATS_HOURLY"), "Last 24 Hours</td>"));
    EXPECT_TRUE(Contains(Filled(page, "STATS_MONTHLY"), "Monthly Stats</td>"));
}

TEST_F(ShowStatsTest, SumsOverAlbumsAndSpans) {
    const DateTime today = Today();
    AddDay("A", today, 3, 3000000);
    AddDay(" ", today, 4, 0);
    AddDay("A", AddDays(today, -6), 10, 1);
    AddDay("A", AddDays(today, -7), 100, 1);
    AddDay("A", AddDays(today, -29), 1000, 1);
    AddDay("A", AddDays(today, -30), 10000, 1);
    AddMonth(1999, 5, 5);
    AddMonth(2004, 3, 6);
    const std::string page = Page();
    EXPECT_EQ(Cells(page, "STATS_SUMMARY"),
              "Timespan,Visitors,Thumbnails,File Clicks,Bandwidth|Today,0,7,0,2.86 GB|Last 7 Days,0,17,0,2.86 GB|"
              "Last 30 Days,0,1117,0,2.86 GB|Overall,0,0,11,0 bytes");
    const std::string daily = Cells(page, "STATS_DAILY");
    EXPECT_EQ(RowOf(daily, 1), "3/10/2004,0,7,0,2.86 GB");
    EXPECT_EQ(RowOf(daily, 7), "3/4/2004,0,10,0,1.00 KB");
    EXPECT_EQ(RowOf(daily, 14), "2/26/2004,0,0,0,0 bytes");
}

TEST_F(ShowStatsTest, GoesBackThroughYesterdayAndLastYear) {
    const DateTime today = MakeDate(2004, 1, 1);
    Clock.SetNow(today + std::chrono::minutes(5));
    AddHour(today, 0, 1);
    AddHour(AddDays(today, -1), 0, 1000);
    AddHour(AddDays(today, -1), 1, 2);
    AddHour(AddDays(today, -1), 23, 3);
    AddHour(AddDays(today, -2), 23, 4000);
    AddMonth(2004, 1, 1);
    AddMonth(2003, 12, 2);
    AddMonth(2003, 2, 3);
    AddMonth(2003, 1, 4000);
    const std::string page = Page();
    const std::string hourly = Cells(page, "STATS_HOURLY");
    EXPECT_EQ(RowOf(hourly, 1), "12am to 1am,1,0,0,0 bytes");
    EXPECT_EQ(RowOf(hourly, 2), "11pm to 12am,3,0,0,0 bytes");
    EXPECT_EQ(RowOf(hourly, 24), "1am to 2am,2,0,0,0 bytes");
    EXPECT_EQ(Count(hourly, ",0,0,0,0 bytes"), 21);
    std::vector<std::string> labels;
    for (const std::string &row : Split(hourly, "|")) labels.push_back(Split(row, ",")[0]);
    EXPECT_EQ(
        Join(labels, "|"),
        "Hour|12am to 1am|11pm to 12am|10pm to 11pm|9pm to 10pm|8pm to 9pm|7pm to 8pm|6pm to 7pm|5pm to 6pm|"
        "4pm to 5pm|3pm to 4pm|2pm to 3pm|1pm to 2pm|12pm to 1pm|11am to 12pm|10am to 11am|9am to 10am|8am to 9am|"
        "7am to 8am|6am to 7am|5am to 6am|4am to 5am|3am to 4am|2am to 3am|1am to 2am");
    const std::string monthly = Cells(page, "STATS_MONTHLY");
    EXPECT_EQ(RowOf(monthly, 1), "January '04,0,0,1,0 bytes");
    EXPECT_EQ(RowOf(monthly, 2), "December '03,0,0,2,0 bytes");
    EXPECT_EQ(RowOf(monthly, 12), "February '03,0,0,3,0 bytes");
    EXPECT_EQ(RowOf(Cells(page, "STATS_DAILY"), 2), "12/31/2003,0,0,0,0 bytes");
}

}  // namespace
}  // namespace pixmora::test
