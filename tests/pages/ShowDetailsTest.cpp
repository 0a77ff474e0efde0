// Tests of the details page.
#include "pages/FileDetails.h"
#include "support/ExifBlock.h"
#include "support/PageSite.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

/// The start of a JPEG whose camera noted its model, the day and a size.
std::string JpegWithExif() {
    return BlockBuilder(true).File(
        {{272, 2, 8, 0, {}, "Acme 200"}},
        {{36867, 2, 19, 0, {}, "2004:03:01 16:05:09"}, {40962, 4, 1, 4, {4000}}, {40963, 4, 1, 4, {3000}}});
}

class ShowDetailsTest : public PageSite {
protected:
    std::string Views() { return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount"); }
};

TEST_F(ShowDetailsTest, ShowsAPicture) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a b/O'Brien's_dog & cat.bmp", BitmapFile(40, 20));
    const std::string page = Get("ShowDetails?1&nocount&/a b/O'Brien's_dog <amp>and<amp> cat.bmp", "Anna");
    EXPECT_TRUE(page.starts_with(WriteResponseHead("text/html", true) + "ShowDetails\n"));
    EXPECT_EQ(Filled(page, "LOGIN_NAME") + Filled(page, "DIR_TITLE"), "User: Annaa b");
    const std::string path = "/a%20b/O'Brien's_dog%20<amp>and<amp>%20cat.bmp";
    EXPECT_EQ(Filled(page, "FILE_LINK") + Filled(page, "DOWNLOAD_IMG"),
              "ShowPicture?1&full&" + path + "downloadpicture.gif");
    EXPECT_TRUE(Filled(page, "FILE_REPRESENTATION")
                    .ends_with("ShowPicture?1&preview&" + path +
                               "\" border=0><br><br>"
                               "<font class=\"lblPictureList\">O'Brien's dog & cat</font></a>"));
    const FileFacts facts = GetFileFacts(album.Directory + "\\a b\\O'Brien's_dog & cat.bmp");
    EXPECT_EQ(Filled(page, "DETAILS"),
              "&nbsp;&nbsp;<b>Picture File</b><br><br>\r\n&nbsp;&nbsp;Dimensions: 40 x 20<br>\r\n"
              "&nbsp;&nbsp;Size: 2.39 KB<br><br>\r\n&nbsp;&nbsp;Date Created: " +
                  FileTimeText(facts.CreationTime) + "<br>\r\n&nbsp;&nbsp;Date Modified: " +
                  FileTimeText(facts.LastWriteTime) + "<br>\r\n&nbsp;&nbsp;Date Taken: N/A<br>");
}

TEST_F(ShowDetailsTest, ShowsWhatTheCameraNoted) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.JPG", JpegWithExif());
    AddFile(album, "b.jpg", "no picture");
    AddFile(album, "no size noted.bmp", BitmapFile(40, 20) + std::string("Exif\0\0II*\0", 10));
    const std::string details = Filled(Get("ShowDetails?1&nocount&/a.JPG"), "DETAILS");
    EXPECT_TRUE(Contains(details, "Dimensions: 4000 x 3000<br>\r\n")) << details;
    EXPECT_TRUE(
        details.ends_with("<br>\r\n&nbsp;&nbsp;Camera Model: Acme 200<br>\r\n"
                          "&nbsp;&nbsp;Date Taken: 03/01/2004 4:05:09 PM<br>"))
        << details;
    EXPECT_TRUE(Contains(Get("ShowDetails?1&nocount&/b.jpg"), "Dimensions: N/A<br>"));
    const std::string noSize = Get("ShowDetails?1&nocount&/no size noted.bmp");
    EXPECT_TRUE(Contains(noSize, "Dimensions: 40 x 20<br>") && Contains(noSize, "Camera Model: N/A<br>"));
}

TEST_F(ShowDetailsTest, TellsTheCamerasFactsInTheirWords) {
    const clsAlbum &album = AddAlbum("A");
    Program.Write("exif.ini", "[ExposureTime]\nFormat=1/@X s\n[FNumber]\nFormat=f/@X\n[Flash]\n16=switched off\n");
    const auto photograph = [](std::uint32_t numerator, std::uint32_t denominator) {
        return BlockBuilder(false).File({}, {{33434, 5, 1, 4, {numerator, denominator}},
                                             {33437, 5, 1, 4, {28, 10}},
                                             {37385, 3, 1, 2, {16}},
                                             {37386, 5, 1, 4, {60000}},
                                             {42036, 2, 9, 0, {}, "50 <mm> &"}});
    };
    const std::tuple<std::uint32_t, std::uint32_t, const char *> exposures[] = {
        {1, 250, "1/250 s"}, {10, 2500, "1/250 s"}, {4, 1, "4 s"}, {1, 2, "0.5 s"}, {25, 10, "2.5 s"}};
    for (const auto &[numerator, denominator, text] : exposures) {
        AddFile(album, "a.jpg", photograph(numerator, denominator));
        EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/a.jpg"), "CAMERA"),
                  Concat("&nbsp;&nbsp;Exposure: ", text, "<br>\r\n&nbsp;&nbsp;Aperture: f/2.8<br>\r\n",
                         "&nbsp;&nbsp;Flash: switched off<br>\r\n&nbsp;&nbsp;Lens: 50 &lt;mm&gt; &amp;<br>\r\n"));
    }
    AddFile(album, "b.bmp", BitmapFile(40, 20));
    EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/b.bmp"), "CAMERA"), "");
}

TEST_F(ShowDetailsTest, ShowsThePlaceOnlyWhereTheOwnerWantsIt) {
    const BlockBuilder builder(true);
    const auto photograph = [&](const char *side, std::uint32_t degrees) {
        const std::uint32_t behind = 8 + 2 + 12;
        return builder.Head() + builder.Directory(8, {{34853, 4, 1, 4, {behind}}}) +
               builder.Directory(behind, {{1, 2, 2, 0, {}, side},
                                          {2, 5, 3, 4, {degrees, 1, 30, 1, 90, 10}},
                                          {3, 2, 2, 0, {}, "E"},
                                          {4, 5, 3, 4, {16, 1, 2250, 100, 0, 1}}});
    };
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg", photograph("S", 48));
    AddFile(album, "nowhere.jpg", photograph("N", 148));
    EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/a.jpg"), "CAMERA"), "");
    SaveSetting("Setup", "ShowPlaces", "1");
    EXPECT_TRUE(Contains(Filled(Get("ShowDetails?1&nocount&/a.jpg"), "CAMERA"),
                         "?mlat=-48.50250&amp;mlon=16.37500#map=15/-48.50250/16.37500\""));
    EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/nowhere.jpg"), "CAMERA"), "");
}

TEST_F(ShowDetailsTest, ShowsAMovie) {
    const clsAlbum &album = AddAlbum("A");
    const auto sample = std::filesystem::path(__FILE__).parent_path() / "../platform/media/mpeg4.avi";
    std::filesystem::copy_file(sample, Program.Path("albums/A/my_m 1.avi"));
    AddFile(album, "b.mov", "no movie");
    const std::string page = Get("ShowDetails?1&nocount&/my_m 1.avi");
    EXPECT_EQ(Filled(page, "FILE_LINK") + Filled(page, "DOWNLOAD_IMG"),
              "ShowMovie?1&fullnocount&/my_m%201.avidownloadmovie.gif");
    const std::string details = Filled(page, "DETAILS");
    EXPECT_TRUE(details.starts_with("&nbsp;&nbsp;<b>Movie File</b><br><br>&nbsp;&nbsp;Dimensions: 64 x 48<br>\r\n"));
    EXPECT_TRUE(
        details.ends_with("<br>\r\n&nbsp;&nbsp;Total Frames: 5<br>\r\n&nbsp;&nbsp;Playing Time: 0m 1s<br>\r\n"
                          "&nbsp;&nbsp;Frames Per Second: 5.0<br>"));
    EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/b.mov"), "DETAILS"), "&nbsp;&nbsp;<b>Movie File</b><br><br>");
}

TEST_F(ShowDetailsTest, WalksTheDirectoryByItsArrows) {
    clsAlbum &album = AddAlbum("A");
    for (const char *name : {"d+1/a.txt", "d+1/b & c.jpg", "d+1/d.doc", "d+1/e.avi", "d+1/e.jpg/x", "d+1/f.GIF"})
        AddFile(album, name);
    const auto arrows = [&](const std::string &name) {
        const std::string page = Get("ShowDetails?1&nocount&/d<plus>and<plus>1/" + name);
        const std::string links =
            Join(Links(Filled(page, "PREVIOUS_FILE")), "") + " " + Join(Links(Filled(page, "NEXT_FILE")), "");
        return Replace(links, "ShowDetails?1&count&/d<plus>and<plus>1/", "");
    };
    EXPECT_EQ(arrows("b <amp>and<amp> c.jpg"), " e.avi");
    EXPECT_EQ(arrows("e.avi"), "b%20<amp>and<amp>%20c.jpg f.GIF");
    EXPECT_EQ(arrows("f.GIF"), "e.avi ");
    album.ShowMovies = 0;
    EXPECT_EQ(arrows("f.GIF"), "b%20<amp>and<amp>%20c.jpg ");
    EXPECT_EQ(arrows("e.avi"), "b%20<amp>and<amp>%20c.jpg f.GIF");
}

TEST_F(ShowDetailsTest, CountsAViewOnceForEachVisitor) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"O'Brien/a b.jpg", "closed/x.jpg", "Private.jpg"}) AddFile(album, name);
    Protect(album, "\\closed");
    for (const std::string word : {"nocount", "Count"}) Get("ShowDetails?1&" + word + "&/O'Brien/a b.jpg");
    EXPECT_EQ(Views(), " ");
    for (int i = 0; i < 2; ++i) Get("ShowDetails?1&count&/O'Brien/a b.jpg");
    EXPECT_EQ(Views(), "\\O%39Brien\\a b.jpg 1");
    Get("ShowDetails?1&count&//O'Brien/./a b.jpg", "", "127.0.0.2");
    for (const std::string path : {"/closed/x.jpg", "/./closed/x.jpg", "/Private.jpg"})
        Get("ShowDetails?1&count&" + path);
    EXPECT_EQ(Views(), "\\O%39Brien\\a b.jpg 2");
    EXPECT_EQ(gDownloadsSession, 2);
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + " " + Column("StatsDaily", "Downloads"), "A 2");
}

TEST(FileDetails, WritesTimesOfTheTwelveHourDay) {
    EXPECT_EQ(FileTimeText(MakeDate(2004, 12, 31, 0, 5, 9)), "12/31/2004 12:05:09 AM");
    EXPECT_EQ(FileTimeText(MakeDate(2004, 1, 2, 12, 30, 0)), "1/2/2004 12:30:00 AM");
    EXPECT_EQ(FileTimeText(MakeDate(1980, 1, 1, 23, 59, 59)), "1/1/1980 11:59:59 PM");
    EXPECT_EQ(FileTimeText(MakeDate(1979, 12, 31, 23, 59, 59)), "");
    EXPECT_EQ(CameraTimeText("2004:03:01 00:05:09"), "03/01/2004 12:05:09 AM");
    for (const char *text : {"N/A", "", "2004:03:01", "2004-03-01 16:05:09", "2004:03:01 16:05", "2004:03:01 9e99:0:0",
                             "    :  :     :  :  "})
        EXPECT_EQ(CameraTimeText(text), "N/A") << text;
}

}  // namespace
}  // namespace pixmora::test
