// Tests of the details page.
#include <gtest/gtest.h>

#include "pages/FileDetails.h"
#include "support/Pictures.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

/// The start of a JPEG whose camera noted its model, the day and a size.
std::string JpegWithExif() {
    const auto number = [](std::uint32_t value, int width) {
        std::string bytes;
        for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
        return bytes;
    };
    const auto entry = [&](std::uint32_t tag, std::uint32_t format, std::uint32_t count, std::uint32_t value) {
        return number(tag, 2) + number(format, 2) + number(count, 4) + number(value, 4);
    };
    const std::uint32_t camera = 8 + 2 + 2 * 12;
    const std::uint32_t texts = camera + 2 + 3 * 12;
    const std::string block = "II" + number(42, 2) + number(8, 4) + number(2, 2) + entry(272, 2, 9, texts) +
                              entry(34665, 4, 1, camera) + number(3, 2) + entry(36867, 2, 20, texts + 9) +
                              entry(40962, 4, 1, 4000) + entry(40963, 4, 1, 3000) + std::string("Acme 200\0", 9) +
                              std::string("2004:03:01 16:05:09\0", 20);
    return "\xFF\xD8\xFF\xE1" + std::string("\0\xFE", 2) + std::string("Exif\0\0", 6) + block;
}

class ShowDetailsTest : public SiteFixture {
protected:
    std::string Page(const Arguments &args, const std::string &user = "", const std::string &from = "127.0.0.1") {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowDetails(socket, args); }, user, from);
    }
    std::string Views() { return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount"); }
};

TEST_F(ShowDetailsTest, ShowsAPicture) {
    const clsAlbum &album = AddAlbum("A");
    const std::string path = AddFile(album, "a b/O'Brien's_dog & cat.bmp", BitmapFile(40, 20));
    std::filesystem::last_write_time(
        path,
        std::chrono::file_clock::from_sys(std::chrono::sys_seconds(MakeDate(2004, 3, 1, 13, 5, 9).time_since_epoch())));
    const std::string created = FileTimeText(GetFileFacts(ProgramPath(path)).CreationTime);
    const std::string page = Page({"1", "nocount", "/a b/O'Brien's_dog <amp>and<amp> cat.bmp"}, "Anna");
    EXPECT_TRUE(page.starts_with(WriteResponseHead("text/html", true) + "ShowDetails\n"));
    EXPECT_EQ(Filled(page, "STYLE_SHEET") + Filled(page, "SERVER_TITLE") + Filled(page, "AUTHOR"),
              ".style {}Anna's SiteAnna O'Neil");
    EXPECT_EQ(Filled(page, "LOGIN_NAME"), "User: Anna");
    EXPECT_TRUE(Filled(page, "FOOTER").ends_with("</b></a></font>"));
    EXPECT_EQ(Filled(page, "DIR_TITLE"), "a b");
    const std::string link = "ShowPicture?1&full&/a%20b/O'Brien's_dog%20<amp>and<amp>%20cat.bmp";
    EXPECT_EQ(Filled(page, "FILE_LINK"), link);
    EXPECT_EQ(Filled(page, "FILE_REPRESENTATION"),
              "<a href=\"" + link + R"(" target="_top">)" +
                  R"(<img src="ShowPicture?1&preview&/a%20b/O'Brien's_dog%20<amp>and<amp>%20cat.bmp" border=0><br><br>)"
                  R"(<font class="lblPictureList">O'Brien's dog & cat</font></a>)");
    EXPECT_EQ(Filled(page, "DOWNLOAD_IMG"), "downloadpicture.gif");
    EXPECT_EQ(Filled(page, "DETAILS"),
              "&nbsp;&nbsp;<b>Picture File</b><br><br>\r\n&nbsp;&nbsp;Dimensions: 40 x 20<br>\r\n"
              "&nbsp;&nbsp;Size: 2.39 KB<br><br>\r\n&nbsp;&nbsp;Date Created: " +
                  created +
                  "<br>\r\n&nbsp;&nbsp;Date Modified: 3/1/2004 1:05:09 PM<br>\r\n"
                  "&nbsp;&nbsp;Date Taken: N/A<br>");
    EXPECT_EQ(gBandwidthSession, 0);
}

TEST_F(ShowDetailsTest, ShowsWhatTheCameraNoted) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.JPG", JpegWithExif());
    AddFile(album, "b.jpg", "no picture");
    const std::string page = Page({"1", "nocount", "/a.JPG"});
    EXPECT_EQ(Filled(page, "DIR_TITLE"), "A");
    const std::string details = Filled(page, "DETAILS");
    EXPECT_TRUE(Contains(details, "Dimensions: 4000 x 3000<br>\r\n")) << details;
    EXPECT_TRUE(
        details.ends_with("<br>\r\n&nbsp;&nbsp;Camera Model: Acme 200<br>\r\n"
                          "&nbsp;&nbsp;Date Taken: 03/01/2004 4:05:09 PM<br>"))
        << details;
    EXPECT_TRUE(Contains(Filled(Page({"1", "nocount", "/b.jpg"}), "DETAILS"), "Dimensions: N/A<br>"));
}

TEST_F(ShowDetailsTest, ShowsAMovie) {
    const clsAlbum &album = AddAlbum("A");
    const std::filesystem::path samples =
        std::filesystem::path(__FILE__).parent_path().parent_path() / "platform/media";
    const std::string path = Program.Path("albums/A/my_m 1.avi");
    std::filesystem::copy_file(samples / "mpeg4.avi", path);
    AddFile(album, "b.mov", "no movie");
    const std::string created = FileTimeText(GetFileFacts(ProgramPath(path)).CreationTime);
    const std::string page = Page({"1", "nocount", "/my_m 1.avi"});
    EXPECT_EQ(Filled(page, "FILE_LINK"), "ShowMovie?1&fullnocount&/my_m%201.avi");
    EXPECT_EQ(Filled(page, "FILE_REPRESENTATION"),
              R"(<a href="ShowMovie?1&fullnocount&/my_m%201.avi" target="_top">)"
              R"(<img src="ShowGraphic?movie.gif" border=0><br><br><font class="lblPictureList">my m 1</font></a>)");
    EXPECT_EQ(Filled(page, "DOWNLOAD_IMG"), "downloadmovie.gif");
    EXPECT_EQ(Filled(page, "DETAILS"),
              "&nbsp;&nbsp;<b>Movie File</b><br><br>&nbsp;&nbsp;Dimensions: 64 x 48<br>\r\n"
              "&nbsp;&nbsp;Size: " +
                  FormatFileSize(ProgramPath(path)) + "<br><br>\r\n&nbsp;&nbsp;Date Created: " + created +
                  "<br>\r\n&nbsp;&nbsp;Total Frames: 5<br>\r\n&nbsp;&nbsp;Playing Time: 0m 1s<br>\r\n"
                  "&nbsp;&nbsp;Frames Per Second: 5.0<br>");
    EXPECT_EQ(Filled(Page({"1", "nocount", "/b.mov"}), "DETAILS"), "&nbsp;&nbsp;<b>Movie File</b><br><br>");
}

TEST_F(ShowDetailsTest, AnswersWhatItCantShow) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg");
    AddDirectory(album, "folder.jpg");
    Program.Write("albums/secret.jpg");
    for (const Arguments &args : {Arguments{}, {"1", "count"}, {"x", "count", "/a.jpg"}, {"2", "count", "/a.jpg"}})
        EXPECT_EQ(Page(args), "Bad Request!") << Join(args, "&");
    for (const char *path : {"/b.jpg", "/../secret.jpg", "/folder.jpg", "", "/"})
        EXPECT_EQ(Page({"1", "count", path}), "File Not Found!") << path;
    EXPECT_EQ(Views(), " ");
}

TEST_F(ShowDetailsTest, WalksTheDirectoryByItsArrows) {
    clsAlbum &album = AddAlbum("A");
    for (const char *name :
         {"d + 1/a.txt", "d + 1/b & c.jpg", "d + 1/d.doc", "d + 1/e.avi", "d + 1/f.GIF", "alone.jpg"})
        AddFile(album, name);
    AddDirectory(album, "d + 1/e.jpg");
    const auto arrows = [&](const std::string &path) {
        const std::string page = Page({"1", "nocount", path});
        return Filled(page, "PREVIOUS_FILE") + "\n" + Filled(page, "NEXT_FILE");
    };
    const std::string noPrevious = R"(<img src="ShowGraphic?previousdisabled.gif">)";
    const std::string noNext = R"(<img src="ShowGraphic?nextdisabled.gif">)";
    const auto arrow = [](const std::string &name, const std::string &graphic) {
        return R"(<a href="ShowDetails?1&count&/d%20<plus>and<plus>%201/)" + name + R"("><img src="ShowGraphic?)" +
               graphic + R"(.gif" border=0 alt="Previous File"></a>)";
    };
    const std::string directory = "/d <plus>and<plus> 1/";
    EXPECT_EQ(arrows(directory + "b <amp>and<amp> c.jpg"), noPrevious + "\n" + arrow("e.avi", "next"));
    EXPECT_EQ(arrows(directory + "e.avi"),
              arrow("b%20<amp>and<amp>%20c.jpg", "previous") + "\n" + arrow("f.GIF", "next"));
    EXPECT_EQ(arrows(directory + "f.GIF"), arrow("e.avi", "previous") + "\n" + noNext);
    EXPECT_EQ(arrows("/alone.jpg"), noPrevious + "\n" + noNext);
    album.ShowMovies = 0;
    EXPECT_EQ(arrows(directory + "f.GIF"), arrow("b%20<amp>and<amp>%20c.jpg", "previous") + "\n" + noNext);
    EXPECT_EQ(arrows(directory + "e.avi"),
              arrow("b%20<amp>and<amp>%20c.jpg", "previous") + "\n" + arrow("f.GIF", "next"));
}

TEST_F(ShowDetailsTest, CountsAViewOnceForEachVisitor) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"O'Brien/a b.jpg", "closed/x.jpg", "Censored/x.jpg", "Private.jpg"}) AddFile(album, name);
    Protect(album, "\\closed");
    Page({"1", "nocount", "/O'Brien/a b.jpg"});
    Page({"1", "Count", "/O'Brien/a b.jpg"});
    EXPECT_EQ(Views(), " ");
    Page({"1", "count", "/O'Brien/a b.jpg"});
    Page({"1", "count", "//O'Brien/./a b.jpg"});
    EXPECT_EQ(Views(), "\\O%39Brien\\a b.jpg 1");
    Page({"1", "count", "/O'Brien/a b.jpg"}, "", "127.0.0.2");
    EXPECT_EQ(Views(), "\\O%39Brien\\a b.jpg 2");
    Page({"1", "count", "/closed/x.jpg"});
    Page({"1", "count", "/./closed/x.jpg"});
    Page({"1", "count", "/Private.jpg"});
    EXPECT_EQ(Views(), "\\O%39Brien\\a b.jpg 2");
    EXPECT_EQ(gDownloadsSession, 2);
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + " " + Column("StatsDaily", "Downloads"), "A 2");
    EXPECT_EQ(gDownloadCookies[0].FilePath, album.Directory + "\\O'Brien\\a b.jpg");
    // A word closes the directory of its own name; a file in it has another.
    Page({"1", "count", "/Censored/x.jpg"});
    EXPECT_EQ(gDownloadsSession, 3);
}

TEST(FileDetails, WritesTimesOfTheTwelveHourDay) {
    EXPECT_EQ(FileTimeText(MakeDate(2004, 12, 31, 0, 5, 9)), "12/31/2004 12:05:09 AM");
    EXPECT_EQ(FileTimeText(MakeDate(2004, 1, 2, 9, 0, 0)), "1/2/2004 9:00:00 AM");
    EXPECT_EQ(FileTimeText(MakeDate(2004, 1, 2, 12, 30, 0)), "1/2/2004 12:30:00 AM");
    EXPECT_EQ(FileTimeText(MakeDate(1980, 1, 1, 23, 59, 59)), "1/1/1980 11:59:59 PM");
    EXPECT_EQ(FileTimeText(MakeDate(1979, 12, 31, 23, 59, 59)), "");
    EXPECT_EQ(CameraTimeText("2004:03:01 16:05:09"), "03/01/2004 4:05:09 PM");
    EXPECT_EQ(CameraTimeText("2004:03:01 00:05:09"), "03/01/2004 12:05:09 AM");
    for (const char *text :
         {"N/A", "", "2004:03:01", "2004-03-01 16:05:09", "2004:03:01 16:05", "a b c", "    :  :     :  :  "})
        EXPECT_EQ(CameraTimeText(text), "N/A") << text;
}

}  // namespace
}  // namespace pixmora::test
