// Tests of the details page.
#include "pages/FileDetails.h"
#include "support/ExifBlock.h"
#include "support/PageSite.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowDetailsTest : public PageSite {
protected:
    std::string Views() { return Column("PopularFiles", "FilePath") + " " + Column("PopularFiles", "FileCount"); }
};

TEST_F(ShowDetailsTest, ShowsWhatTheCameraNoted) {
    const std::string photograph = BlockBuilder(true).File(
        {{272, 2, 8, 0, {}, "Acme 200"}},
        {{36867, 2, 19, 0, {}, "2004:03:01 16:05:09"}, {40962, 4, 1, 4, {4000}}, {40963, 4, 1, 4, {3000}}});
    const std::tuple<std::string, const char *, const char *> files[] = {
        // bytes, dimensions, the end of the facts
        {photograph, "4000 x 3000", "Camera Model: Acme 200<br>\r\n&nbsp;&nbsp;Date Taken: 03/01/2004 4:05:09 PM<br>"},
        {"no picture", "N/A", "Date Taken: N/A<br>"},
        {BitmapFile(40, 20) + std::string("Exif\0\0II*\0", 10), "40 x 20",
         "Camera Model: N/A<br>\r\n&nbsp;&nbsp;Date Taken: N/A<br>"},
    };
    const clsAlbum &album = AddAlbum("A");
    for (const auto &[bytes, dimensions, end] : files) {
        AddFile(album, "a.bmp", bytes);
        const std::string details = Filled(Get("ShowDetails?1&nocount&/a.bmp"), "DETAILS");
        EXPECT_TRUE(Contains(details, Concat("Dimensions: ", dimensions, "<br>\r\n"))) << details;
        EXPECT_TRUE(details.ends_with(end)) << details;
    }
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
        {10, 2500, "1/250 s"}, {4, 1, "4 s"}, {1, 2, "0.5 s"}};
    for (const auto &[numerator, denominator, text] : exposures) {
        AddFile(album, "a.jpg", photograph(numerator, denominator));
        EXPECT_EQ(Filled(Get("ShowDetails?1&nocount&/a.jpg"), "CAMERA"),
                  Concat("&nbsp;&nbsp;Exposure: ", text, "<br>\r\n&nbsp;&nbsp;Aperture: f/2.8<br>\r\n",
                         "&nbsp;&nbsp;Flash: switched off<br>\r\n&nbsp;&nbsp;Lens: 50 &lt;mm&gt; &amp;<br>\r\n"));
    }
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

TEST_F(ShowDetailsTest, CountsAViewOnceForEachVisitor) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"O'Brien/a b.jpg", "closed/x.jpg", "Private.jpg"}) AddFile(album, name);
    Protect(album, "\\closed");
    for (const std::string word : {"nocount", "Count", "count", "count"})
        Get("ShowDetails?1&" + word + "&/O'Brien/a b.jpg");
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
    EXPECT_EQ(FileTimeText(MakeDate(1980, 1, 1, 12, 30, 0)), "1/1/1980 12:30:00 AM") << "noon, deliberately";
    EXPECT_EQ(FileTimeText(MakeDate(1979, 12, 31, 23, 59, 59)), "");
    EXPECT_EQ(CameraTimeText("2004:03:01 00:05:09"), "03/01/2004 12:05:09 AM");
    for (const char *text : {"N/A", "2004-03-01 16:05:09", "2004:03:01 16:05", "2004:03:01 9e99:0:0"})
        EXPECT_EQ(CameraTimeText(text), "N/A") << text;
}

}  // namespace
}  // namespace pixmora::test
