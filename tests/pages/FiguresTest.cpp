// Tests of what pages tell of the site: the front page, the statistics, and the most popular.
#include <regex>

#include "pages/PageTest.h"
#include "platform/runtime/Clock.h"

namespace pixmora::test {
namespace {

class FiguresTest : public PageTest {
protected:
    /// The page's words, "|" in the place of the elements between them.
    std::string Words() const { return std::regex_replace(Get("/ShowStats"), std::regex(R"((<[^>]*>\s*)+)"), "|"); }
    static void Add(const std::string &table, const std::string &columns, const std::vector<std::string> &rows) {
        for (const std::string &row : rows) Ask("INSERT INTO " + table + " (" + columns + ") VALUES (" + row + ")");
    }
};

TEST_F(FiguresTest, SumsOverAlbumsAndSpansBackIntoLastYear) {
    StartAlbum();
    EXPECT_EQ(Count(Words(), "|0|0|0|0 bytes|"), 4 + 24 + 14 + 12) << "an empty database";
    Clock.SetNow(MakeDate(2004, 1, 1, 0, 5, 0));
    Add("StatsHourly", "AlbumName, WhichDay, WhichHour, Visitors",
        {"'A', '2004-01-01', 0, 1", "'A', '2003-12-31', 0, 1000", "'A', '2003-12-31', 1, 2", "'A', '2003-12-31', 23, 3",
         "'A', '2003-12-30', 23, 4000"});
    Add("StatsDaily", "AlbumName, WhichDay, Thumbs, Bandwidth",
        {"'A', '2004-01-01', 3, 3000000", "' ', '2004-01-01', 4, 0", "'A', '2003-12-26', 10, 1",
         "'A', '2003-12-25', 100, 1", "'A', '2003-12-03', 1000, 1", "'A', '2003-12-02', 10000, 1"});
    Add("StatsMonthly", "AlbumName, WhichYear, WhichMonth, Downloads",
        {"'A', 2004, 1, 1", "'A', 2003, 12, 2", "'A', 2003, 2, 3", "'A', 2003, 1, 4000"});
    const std::string words = Words();
    ExpectParts(words,
                {"|Timespan|Visitors|Thumbnails|File Clicks|Bandwidth|Today|0|7|0|2.86 GB|Last 7 "
                 "Days|0|17|0|2.86 GB|Last 30 Days|0|1117|0|2.86 GB|Overall|0|0|4006|0 bytes|",
                 "|Bandwidth|12am to 1am|1|0|0|0 bytes|11pm to 12am|3|0|0|0 bytes|", "|12pm to 1pm|0|0|0|0 bytes|",
                 "|1am to 2am|2|0|0|0 bytes|", "|Bandwidth|1/1/2004|0|7|0|2.86 GB|", "|12/26/2003|0|10|0|1.00 KB|",
                 "|12/19/2003|0|0|0|0 bytes|", "|January '04|0|0|1|0 bytes|December '03|0|0|2|0 bytes|",
                 "|February '03|0|0|3|0 bytes|"});
    EXPECT_EQ(Count(words.substr(0, words.find("|1/1/2004|")), "|0|0|0|0 bytes|"), 21) << "of 24 hours";
}

TEST_F(FiguresTest, LimitsThePopular) {
    StartAlbum();
    for (int i = 0; i < 7; ++i) Add("PopularDirs", "AlbumName, DirPath, DirCount", {Concat("'A', '\\d", i, "', 9")});
    for (int i = 0; i < 30; ++i)
        Add("PopularFiles", "AlbumName, FilePath, FileCount", {Concat("'A', '\\f", 100 + i, ".jpg', 9")});
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

TEST_F(FiguresTest, AddsTheSessionToTheTotals) {
    StartAlbum();
    gThumbsSession = 7;
    gThumbsTotal = 3000000000.0;
    gBandwidthTotal = 2;
    gRunningTotal = 26 * 60;
    gOnlineTimer->StartTimer();
    Clock.Advance(86400000);
    ExpectParts(Get("/Index"), {">24h 0m<"});
    Clock.Advance(3600000);
    gBandwidthSession = 1.25;
    ExpectParts(Get("/Index"), {">1d 1h<", ">2d 3h<", ">3000000007<", ">1.25 KB<", ">3.25 KB<"});
}

TEST_F(FiguresTest, TellsOfItsAlbumsAndTheWebcam) {
    const std::string login =
        R"(no public albums. Please <a href="ShowAlbum?ShowLogin&1&thumbs&1">click here</a> to login.)";
    AddRight("A", "\\", "nobody");
    clsAlbum &album = StartAlbum();
    ExpectParts(Get("/Index"), {login, "!>My Webcam<"});
    RemoveRight("A", "\\", "nobody");
    album.FeaturedImage = 2;
    album.DateCreated = "March 1, 2004";
    const std::pair<const char *, const char *> days[] = {
        {"3/10/2004", "Today"}, {"3/9/2004", "1 day ago"}, {"3/8/2004", "2 days ago"}, {"3/11/2004", "-1 days ago"}};
    for (const auto &[date, text] : days) {
        album.DateUpdated = date;
        ExpectParts(Get("/Index"),
                    {"!" + login, R"(Created:</td><td class="lblPictureList">March 1, 2004</td>)",
                     Concat(R"(Updated:</td><td class="lblPictureList">)", text, "</td>"),
                     R"(<a href="ShowAlbum?1&thumbs&1"><img src="ShowAlbumIcon?1" border=0 width="150">)"});
    }
    gSystray->tmrWebCam.SetInterval(5000);
    gSystray->tmrWebCam.SetEnabled(true);
    gLastCaptureTick = GetTickCount() - 62600;
    ExpectParts(Get("/Index"), {"Picture Taken 63 secs ago.</font></td><td class=\"tdPictureCell\""});
}

}  // namespace
}  // namespace pixmora::test
