// Tests of the pages of figures: the statistics, and the most popular.
#include "pages/PageTest.h"

namespace pixmora::test {
namespace {

class ShowStatsTest : public PageTest {
protected:
    /// The cells of each of the page's rows, "Today,1,2,3,4.00 KB"; each table's heading comes first.
    std::vector<std::string> Rows() const {
        std::vector<std::string> rows;
        for (const std::string &row : Split(Get("/ShowStats"), "<tr")) {
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
};

TEST_F(ShowStatsTest, SumsOverAlbumsAndSpansBackIntoLastYear) {
    StartAlbum();
    EXPECT_EQ(Count(Join(Rows(), "|"), ",0,0,0,0 bytes"), 4 + 24 + 14 + 12) << "an empty database";
    Clock.SetNow(MakeDate(2004, 1, 1, 0, 5, 0));
    const auto add = [](const char *table, const char *columns, const std::vector<std::string> &rows) {
        for (const std::string &row : rows) Ask(Concat("INSERT INTO ", table, " (", columns, ") VALUES (", row, ")"));
    };
    add("StatsHourly", "AlbumName, WhichDay, WhichHour, Visitors",
        {"'A', '2004-01-01', 0, 1", "'A', '2003-12-31', 0, 1000", "'A', '2003-12-31', 1, 2", "'A', '2003-12-31', 23, 3",
         "'A', '2003-12-30', 23, 4000"});
    add("StatsDaily", "AlbumName, WhichDay, Thumbs, Bandwidth",
        {"'A', '2004-01-01', 3, 3000000", "' ', '2004-01-01', 4, 0", "'A', '2003-12-26', 10, 1",
         "'A', '2003-12-25', 100, 1", "'A', '2003-12-03', 1000, 1", "'A', '2003-12-02', 10000, 1"});
    add("StatsMonthly", "AlbumName, WhichYear, WhichMonth, Downloads",
        {"'A', 2004, 1, 1", "'A', 2003, 12, 2", "'A', 2003, 2, 3", "'A', 2003, 1, 4000"});
    const std::vector<std::string> rows = Rows();
    const std::pair<int, const char *> wanted[] = {
        {0, "Timespan,Visitors,Thumbnails,File Clicks,Bandwidth"},
        {1, "Today,0,7,0,2.86 GB"},
        {2, "Last 7 Days,0,17,0,2.86 GB"},
        {3, "Last 30 Days,0,1117,0,2.86 GB"},
        {4, "Overall,0,0,4006,0 bytes"},
        {6, "12am to 1am,1,0,0,0 bytes"},
        {7, "11pm to 12am,3,0,0,0 bytes"},
        {18, "12pm to 1pm,0,0,0,0 bytes"},
        {29, "1am to 2am,2,0,0,0 bytes"},
        {31, "1/1/2004,0,7,0,2.86 GB"},
        {37, "12/26/2003,0,10,0,1.00 KB"},
        {44, "12/19/2003,0,0,0,0 bytes"},
        {46, "January '04,0,0,1,0 bytes"},
        {47, "December '03,0,0,2,0 bytes"},
        {57, "February '03,0,0,3,0 bytes"},
    };
    ASSERT_EQ(rows.size(), 58U);
    for (const auto &[row, text] : wanted) EXPECT_EQ(rows[row], text);
    EXPECT_EQ(Count(Join({rows.begin() + 5, rows.begin() + 30}, "|"), ",0,0,0,0 bytes"), 21);
}

TEST_F(ShowStatsTest, LimitsThePopular) {
    StartAlbum();
    for (int i = 0; i < 7; ++i)
        Ask(Concat("INSERT INTO PopularDirs (AlbumName, DirPath, DirCount) VALUES ('A', '\\d", i, "', ", 10 - i, ")"));
    for (int i = 0; i < 30; ++i)
        Ask(Concat("INSERT INTO PopularFiles (AlbumName, FilePath, FileCount) VALUES ('A', '\\f", 100 + i,
                   ".jpg', 9)"));
    const std::tuple<int, int, int, int> cases[] = {
        {12, 4, 12, 12}, {40, 4, 30, 30}, {0, 4, 21, 21}, {0, 7, 36, 30}};  // per page, per row, entries, files of them
    for (const auto &[perPage, perRow, entries, files] : cases) {
        gFilesPerPage = perPage;
        gFilesPerRow = perRow;
        const std::string page = Get("/ShowPopular?thumbs");
        EXPECT_EQ(Count(page, "<font class=\"lblPopularSubDir\">"), 5);
        EXPECT_EQ(Count(page, " id=\"pic_"), entries);
        EXPECT_EQ(Count(page, "ShowPicture?1"), files);
        EXPECT_EQ(Count(page, Concat(" colspan=", perRow, ">")), 7);
        EXPECT_LT(page.find("/f129.jpg"), page.find("/f128.jpg")) << "of equal counts the later path first";
        ExpectParts(Get("/ShowPopular?slideshow&play&99&5"), {Concat("File 1 of ", entries)});
    }
}

}  // namespace
}  // namespace pixmora::test
