// Tests of the statistics page.
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

class ShowStatsTest : public PageSite {
protected:
    std::string Page() { return Get("ShowStats"); }
    /// The cells of each of a table's rows, without their elements: "Today,1,2,3,4.00 KB". The heading comes first.
    static std::vector<std::string> Rows(const std::string &page, const std::string &table) {
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
        return rows;
    }
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
    for (const auto &[table, rows] :
         {std::pair{"STATS_SUMMARY", 4}, {"STATS_HOURLY", 24}, {"STATS_DAILY", 14}, {"STATS_MONTHLY", 12}})
        EXPECT_EQ(Count(Join(Rows(page, table), "|"), ",0,0,0,0 bytes"), rows);
}

TEST_F(ShowStatsTest, SumsOverAlbumsAndSpansBackIntoLastYear) {
    const DateTime today = MakeDate(2004, 1, 1);
    Clock.SetNow(today + std::chrono::minutes(5));
    AddHour(today, 0, 1);
    AddHour(AddDays(today, -1), 0, 1000);
    AddHour(AddDays(today, -1), 1, 2);
    AddHour(AddDays(today, -1), 23, 3);
    AddHour(AddDays(today, -2), 23, 4000);
    AddDay("A", today, 3, 3000000);
    AddDay(" ", today, 4, 0);
    const std::pair<int, int> days[] = {{6, 10}, {7, 100}, {29, 1000}, {30, 10000}};
    for (const auto &[ago, thumbs] : days) AddDay("A", AddDays(today, -ago), thumbs, 1);
    const std::tuple<int, int, int> months[] = {{2004, 1, 1}, {2003, 12, 2}, {2003, 2, 3}, {2003, 1, 4000}};
    for (const auto &[year, month, downloads] : months) AddMonth(year, month, downloads);
    const std::string page = Page();
    EXPECT_EQ(Join(Rows(page, "STATS_SUMMARY"), "|"),
              "Timespan,Visitors,Thumbnails,File Clicks,Bandwidth|Today,0,7,0,2.86 GB|Last 7 Days,0,17,0,2.86 GB|"
              "Last 30 Days,0,1117,0,2.86 GB|Overall,0,0,4006,0 bytes");
    const std::vector<std::string> hourly = Rows(page, "STATS_HOURLY");
    EXPECT_EQ(hourly[1], "12am to 1am,1,0,0,0 bytes");
    EXPECT_EQ(hourly[2], "11pm to 12am,3,0,0,0 bytes");
    EXPECT_EQ(hourly[24], "1am to 2am,2,0,0,0 bytes");
    EXPECT_EQ(hourly[13], "12pm to 1pm,0,0,0,0 bytes");
    EXPECT_EQ(Count(Join(hourly, "|"), ",0,0,0,0 bytes"), 21);
    const std::vector<std::string> daily = Rows(page, "STATS_DAILY");
    EXPECT_EQ(daily[1], "1/1/2004,0,7,0,2.86 GB");
    EXPECT_EQ(daily[7], "12/26/2003,0,10,0,1.00 KB");
    EXPECT_EQ(daily[14], "12/19/2003,0,0,0,0 bytes");
    const std::vector<std::string> monthly = Rows(page, "STATS_MONTHLY");
    EXPECT_EQ(monthly[1], "January '04,0,0,1,0 bytes");
    EXPECT_EQ(monthly[2], "December '03,0,0,2,0 bytes");
    EXPECT_EQ(monthly[12], "February '03,0,0,3,0 bytes");
}

}  // namespace
}  // namespace pixmora::test
