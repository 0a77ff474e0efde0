// Tests of the details page.
#include "pages/FileDetails.h"
#include "pages/PageTest.h"
#include "support/ExifBlock.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowDetailsTest : public PageTest {
protected:
    /// The page of a file with these bytes.
    std::string PageOf(const std::string &bytes, const std::string &name = "a.bmp") const {
        AddFile(name, bytes);
        return Get("/ShowDetails?1&nocount&/" + name);
    }
};

TEST_F(ShowDetailsTest, TellsWhatTheCameraNotedInTheOwnersWords) {
    StartAlbum();
    const std::string photograph = BlockBuilder(true).File(
        {{272, 2, 8, 0, {}, "Acme 200"}},
        {{36867, 2, 19, 0, {}, "2004:03:01 16:05:09"}, {40962, 4, 1, 4, {4000}}, {40963, 4, 1, 4, {3000}}});
    ExpectParts(PageOf(photograph), {"Dimensions: 4000 x 3000<br>\r\n", "Camera Model: Acme 200<br>\r\n",
                                     "Date Taken: 03/01/2004 4:05:09 PM<br>\n"});
    ExpectParts(PageOf("no picture"), {"Dimensions: N/A<br>\r\n", "Date Taken: N/A<br>\n"});
    ExpectParts(PageOf(BitmapFile(40, 20) + std::string("Exif\0\0II*\0", 10)),
                {"Dimensions: 40 x 20<br>\r\n", "Camera Model: N/A<br>\r\n&nbsp;&nbsp;Date Taken: N/A<br>\n"});
    Program.Write("exif.ini", "[ExposureTime]\nFormat=1/@X s\n[FNumber]\nFormat=f/@X\n[Flash]\n16=switched off\n");
    const std::pair<std::vector<std::uint32_t>, const char *> exposures[] = {
        {{10, 2500}, "1/250 s"}, {{4, 1}, "4 s"}, {{1, 2}, "0.5 s"}};
    for (const auto &[fraction, text] : exposures) {
        const std::string bytes = BlockBuilder(false).File({}, {{33434, 5, 1, 4, fraction},
                                                                {33437, 5, 1, 4, {28, 10}},
                                                                {37385, 3, 1, 2, {16}},
                                                                {37386, 5, 1, 4, {60000}},
                                                                {42036, 2, 9, 0, {}, "50 <mm> &"}});
        ExpectParts(PageOf(bytes),
                    {Concat(">&nbsp;&nbsp;Exposure: ", text, "<br>\r\n&nbsp;&nbsp;Aperture: f/2.8<br>\r\n",
                            "&nbsp;&nbsp;Flash: switched off<br>\r\n&nbsp;&nbsp;Lens: 50 &lt;mm&gt; &amp;<br>\r\n<")});
    }
}

TEST_F(ShowDetailsTest, ShowsThePlaceOnlyWhereTheOwnerWantsIt) {
    StartAlbum();
    const auto photograph = [](const char *side, std::uint32_t degrees) {
        const BlockBuilder builder(true);
        const std::uint32_t behind = 8 + 2 + 12;
        return builder.Head() + builder.Directory(8, {{34853, 4, 1, 4, {behind}}}) +
               builder.Directory(behind, {{1, 2, 2, 0, {}, side},
                                          {2, 5, 3, 4, {degrees, 1, 30, 1, 90, 10}},
                                          {3, 2, 2, 0, {}, "E"},
                                          {4, 5, 3, 4, {16, 1, 2250, 100, 0, 1}}});
    };
    ExpectParts(PageOf(photograph("S", 48)), {"!?mlat="});
    SaveSetting("Setup", "ShowPlaces", "1");
    ExpectParts(PageOf(photograph("S", 48)), {"?mlat=-48.50250&amp;mlon=16.37500#map=15/-48.50250/16.37500\""});
    ExpectParts(PageOf(photograph("N", 148)), {"!?mlat="});
}

TEST(FileDetails, WritesTimesOfTheTwelveHourDay) {
    EXPECT_EQ(FileTimeText(MakeDate(2004, 12, 31, 0, 5, 9)), "12/31/2004 12:05:09 AM");
    EXPECT_EQ(FileTimeText(MakeDate(1980, 1, 1, 12, 30, 0)), "1/1/1980 12:30:00 AM") << "noon, deliberately";
    EXPECT_EQ(FileTimeText(MakeDate(1979, 12, 31, 23, 59, 59)), "");
    for (const char *text : {"N/A", "2004-03-01 16:05:09", "2004:03:01 16:05", "2004:03:01 9e99:0:0"})
        EXPECT_EQ(CameraTimeText(text), "N/A") << text;
}

}  // namespace
}  // namespace pixmora::test
