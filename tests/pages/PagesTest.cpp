// What the pages of a started site say, by the rows of pages.tsv.
#include <fstream>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Popularity.h"
#include "support/Pictures.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

using Pages = RunningSite;

TEST_F(Pages, SayWhatTheTableSays) {
    const auto folder = std::filesystem::path(__FILE__).parent_path();
    for (int i = 0; i < 16; ++i)
        Program.Write("albums/Trips/picture_" + FormatPadded(i, 2) + ".bmp", BitmapFile(40, 30));
    for (const char *file : {"b/one.jpg", "b/two.GIF", "b/film.mpeg", "b/c/x.jpg", "b/notes.txt", "b/.hidden/x.jpg",
                             "d'or/a.jpg", "d'or/d.gif", "two words/a*b c/in/x.jpg", "50 off/x.jpg", "50%20off/x.jpg",
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
        const std::vector<std::string> row = Split(line, "\t");
        ASSERT_GT(row.size(), 3U) << line;
        const std::string cookie = row[2].empty() ? "" : "Cookie: ms_username=" + row[2] + "; a=b\r\n";
        const std::string page = Get("/" + row[1], cookie);
        for (std::size_t i = 3; i < row.size(); ++i) {
            const bool isThere = !row[i].starts_with('!');
            const std::string part = Replace(Replace(row[i].substr(isThere ? 0 : 1), "\\r", "\r"), "\\n", "\n");
            EXPECT_EQ(Contains(page, part), isThere) << row[0] << ": " << part << "\n" << page;
        }
        ++rows;
    }
    EXPECT_GE(rows, 70);
}

}  // namespace
}  // namespace pixmora::test
