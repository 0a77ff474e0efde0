// What the pages of a site say, by the rows of pages.tsv and of its figures, and what they book of their own bytes.
#include <filesystem>
#include <fstream>
#include <regex>
#include <tuple>

#include "pages/PageTest.h"
#include "pages/Templates.h"
#include "platform/runtime/Numbers.h"
#include "store/Popularity.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

using Pages = PageTest;

TEST_F(Pages, SayWhatTheTableSays) {
    const auto folder = std::filesystem::path(__FILE__).parent_path();
    for (int i = 0; i < 16; ++i)
        Program.Write("albums/Trips/picture_" + FormatPadded(i, 2) + ".bmp", BitmapFile(40, 30));
    for (const char *file :
         {"b/one.jpg", "b/two.GIF", "b/film.mpeg", "b/c/x.jpg", "b/notes.txt", "b/.hidden/x.jpg", "d'or/a.jpg",
          "d'or/d.gif", "two words/a*b c/in/x.jpg", "50 off/x.jpg", "50 off/Private.jpg", "50%20off/x.jpg",
          "O'Brien/x.jpg", "O'Brien/sub/x.jpg", "Private Stuff/x.jpg", "R&B/x & y.jpg"})
        Program.Write(std::string("albums/Walks/") + file, "x");
    std::filesystem::copy_file(folder / "../platform/media/mpeg4.avi", Program.Path("albums/Walks/d'or/b_c.avi"));
    Program.Write("albums/Zoo/x.jpg");
    for (const char *album : {"Trips", "Walks", "Zoo"}) AddAlbum(album);
    for (const char *user : {"Guest", "Chief"}) SaveUser({user, "p", "p", user == std::string("Chief")}, "");
    AddRight("Walks", "\\O'Brien", "Guest");
    AddRight("Zoo", "\\", "Guest");
    SaveSetting("Setup", "Author", "Anna O'Neil");
    SaveSetting("Setup", "FilesPerPage", "5");
    Start();
    for (const auto &[album, file, views] : {std::tuple{"Walks", "\\d'or\\b_c.avi", 3},
                                             {"Walks", "\\R&B\\x & y.jpg", 2},
                                             {"Gone", "\\y.mov", 1},
                                             {"Trips", "\\picture_00.bmp", 1}})
        for (int view = 0; view < views; ++view) CountFileVisit(album, file);
    for (int view = 0; view < 2; ++view) CountDirVisit("Walks", "\\O'Brien\\R & B");
    CountDirVisit("Trips", "\\");

    std::ifstream table(folder / "pages.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::vector<std::string> row = Split(Replace(Replace(line, "\\r", "\r"), "\\n", "\n"), "\t");
        ASSERT_GT(row.size(), 3U) << line;
        SCOPED_TRACE(row[0]);
        const std::vector<std::string> visitor = Split(row[2] + "@127.0.0.1", "@");
        const std::string cookie = visitor[0].empty() ? "" : "Cookie: ms_username=" + visitor[0] + "; a=b\r\n";
        ExpectParts(Get("/" + row[1], cookie, visitor[1]), {row.begin() + 3, row.end()});
        ++rows;
    }
    EXPECT_GE(rows, 90);
    EXPECT_EQ(Ask("SELECT DirPath, DirCount FROM PopularDirs WHERE AlbumName = 'Walks'"),
              "\\O%39Brien\\R & B|2\n\\b\\c|2\n\\O%39Brien|1\n\\Private Stuff|1\n");
    EXPECT_EQ(Ask("SELECT FilePath, FileCount FROM PopularFiles WHERE AlbumName = 'Walks'"),
              "\\d%39or\\b_c.avi|3\n\\R&B\\x & y.jpg|2\n\\b\\one.jpg|2\n\\b\\film.mpeg|2\n"
              "\\d%39or\\a.jpg|3\n");
    EXPECT_EQ(gDownloadsSession, 5);
    EXPECT_EQ(Ask("SELECT AlbumName, Downloads FROM StatsDaily WHERE Downloads > 0"), "Walks|5\n");
}

TEST_F(Pages, TellTheSessionAndTheStatisticsWhatTheySent) {
    for (const char *album : {"A", "Z"})
        Program.Write(std::string("albums/") + album + "/a.jpg", std::string(3000, 'p'));
    AddAlbum("Z");
    StartAlbum();
    Program.Write("htdocs/my+1.gif", std::string(3000, '\xFE'));
    gStyleSheet = std::string(5000, 's');
    const std::pair<const char *, const char *> pages[] = {
        // address, in whose statistics; none: the session alone
        {"Index", " "},
        {"ShowHelp", " "},
        {"ShowGraphic?my<plus>and<plus>1.gif", " "},
        {"ShowAlbumDirList?2&thumbs&1", "Z"},
        {"ShowAlbumDirList?ShowHelp", "A"},
        {"ShowAlbumDirList?ShowPopular&thumbs", ""},
        {"ShowAlbumMedia?2&thumbs&1", "Z"},
        {"ShowPicture?2&full&/a.jpg", "Z"},
        {"ShowPopular?thumbs", "Most Popular"},
    };
    for (const auto &[address, album] : pages) {
        gBandwidthSession = 0;
        Ask("DELETE FROM StatsDaily; DELETE FROM StatsRecent");
        const std::size_t bytes = Body(Get(Concat("/", address))).size();
        const bool isFraction = address == std::string("Index");  // this page alone
        const double kilobytes = isFraction ? static_cast<double>(bytes) / 1024 : static_cast<double>(bytes / 1024);
        EXPECT_GT(kilobytes, 0) << address;
        EXPECT_DOUBLE_EQ(gBandwidthSession, kilobytes) << address;
        EXPECT_EQ(Ask("SELECT AlbumName FROM StatsDaily"), Concat(album, *album == 0 ? "" : "\n")) << address;
        EXPECT_EQ(Ask("SELECT StatValue FROM StatsRecent"), *album == 0 ? "" : Concat(RoundToLong(kilobytes), "\n"));
    }
    gBandwidthSession = 0;
    Get("/ShowStats");
    EXPECT_EQ(gBandwidthSession, 0) << "its own bytes are not counted";
}

TEST(FillAll, ComesOutAsIfFilledOneAfterTheOther) {
    const std::vector<Filling> fillings = {{"{A}", "<{A}{B}{C}>"}, {"{B}", "[{C}{A}]{"}, {"{C}", "c"}};
    for (const char *text : {"", "{", "x{", "{A", "{}", "{A}{B}{C}", "x {B}}", "{{A}}-{a}{AA}{ A}", "{D}{C}{C} {B"}) {
        std::string expected = text;
        for (const Filling &filling : fillings) expected = Replace(expected, filling.Placeholder, filling.Value);
        EXPECT_EQ(FillAll("{A}: ", text, fillings), "{A}: " + expected) << text;
    }
}

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
