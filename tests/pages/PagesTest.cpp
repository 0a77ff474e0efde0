// What the pages of a site say, by the rows of pages.tsv, and what they book of their own bytes.
#include <filesystem>
#include <fstream>
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

}  // namespace
}  // namespace pixmora::test
