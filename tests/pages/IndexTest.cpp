// Tests of the front page.
#include "pages/PageTest.h"
#include "platform/runtime/Clock.h"

namespace pixmora::test {
namespace {

using IndexTest = PageTest;

TEST_F(IndexTest, AddsTheSessionToTheTotals) {
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

TEST_F(IndexTest, TellsOfItsAlbumsAndTheWebcam) {
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

TEST_F(IndexTest, DrawsEveryFileOfARandomAlbumAndKeepsItsDirectoryBelow) {
    for (const char *file : {"a.jpg", "b.jpg"}) Program.Write(std::string("albums/1/R&B 50%/") + file);
    for (int i = 0; i < 5; ++i) AddAlbum(std::to_string(i));
    Start();
    for (int i = 0; i < 5; ++i) gAlbums[i]->FeaturedImage = static_cast<std::int16_t>(i == 3 ? 2 : i % 2);
    const std::string path = "R<amp>and<amp>B%2050<percent>num<percent>";
    std::string pages;
    for (int i = 0; i < 40; ++i) pages += Get("/Index");
    for (const char *name : {"/a.jpg\"", "/b.jpg\""}) {
        const std::string file = Concat("/", path, name);
        ExpectParts(pages,
                    {Concat(R"("ShowAlbum?ShowDetails&2&count&)", file, R"(><img src="ShowPicture?2&thumb&)", file)});
    }
    EXPECT_EQ(Count(pages, "ShowPicture?2&thumb&"), 40);
    const std::string icon = "&\"><img src=\"ShowGraphic?directory.gif\" border=0 alt=\"Directory\"></a></td></tr>";
    EXPECT_EQ(Count(pages, "<a href=\"ShowAlbum?2&thumbs&1&" + path + icon), 80) << "the album below shows it again";
    EXPECT_EQ(Count(pages, "alt=\"Directory\""), 80);
    Ask("DELETE FROM " + MediaListName(2));
    ExpectParts(Get("/Index"), {"!alt=\"Directory\""});
}

}  // namespace
}  // namespace pixmora::test
