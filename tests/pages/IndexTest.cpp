// Tests of the front page.
#include <gmock/gmock.h>

#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string directoryIcon = R"("><img src="ShowGraphic?directory.gif" border=0 alt="Directory"></a>)";

class IndexTest : public PageSite {
protected:
    std::string Page() { return Get("Index"); }
    std::string Rows() { return Filled(Page(), "SHARE_LIST"); }
    void AddMedia(const clsAlbum &album, const std::string &path) {
        if (!gDatabase->TableExists(MediaListName(album.ID))) CreateMediaList(album.ID);
        AddRow(MediaListName(album.ID), {{"AlbumName", album.Name}, {"FilePath", path}});
    }
};

TEST_F(IndexTest, AddsTheSessionToTheTotals) {
    gThumbsSession = 7;
    gThumbsTotal = 3000000000.0;
    gBandwidthSession = 1.25;
    gBandwidthTotal = 2;
    gRunningTotal = 26 * 60;
    Clock.Advance(86400000);
    EXPECT_EQ(Filled(Page(), "SESSION_RUNTIME"), "24h 0m");
    Clock.Advance(3600000);
    gBandwidthSession = 1.25;
    const std::string page = Page();
    const std::pair<const char *, const char *> filled[] = {
        {"SERVER_TITLE_SLASH", "Anna\\'s Site"}, {"SESSION_RUNTIME", "1d 1h"},     {"TOTAL_RUNTIME", "2d 3h"},
        {"TOTAL_THUMBS", "3000000007"},          {"SESSION_BANDWIDTH", "1.25 KB"}, {"TOTAL_BANDWIDTH", "3.25 KB"}};
    for (const auto &[name, value] : filled) EXPECT_EQ(Filled(page, name), value) << name;
}

TEST_F(IndexTest, OffersTheLoginWhenNothingIsShown) {
    const std::string sentence =
        R"(no public albums. Please <a href="ShowAlbum?ShowLogin&1&thumbs&1">click here</a> to login.)";
    Protect(AddAlbum("B"), "\\");
    EXPECT_THAT(Rows(), HasSubstr(sentence));
    AddAlbum("A");
    EXPECT_THAT(Rows(), Not(HasSubstr(sentence)));
}

TEST_F(IndexTest, CountsDaysByMidnights) {
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImage = 2;
    EXPECT_THAT(Rows(),
                HasSubstr(R"(<a href="ShowAlbum?1&thumbs&1"><img src="ShowAlbumIcon?1" border=0 width="150">)"));
    const std::pair<const char *, const char *> days[] = {
        {"3/10/2004", "Today"}, {"3/9/2004", "1 day ago"}, {"3/8/2004", "2 days ago"}, {"3/11/2004", "-1 days ago"}};
    for (const auto &[date, text] : days) {
        album.DateUpdated = date;
        EXPECT_THAT(Rows(), HasSubstr(std::string("Updated:</td><td class=\"lblPictureList\">") + text + "</td>"));
    }
}

TEST_F(IndexTest, DrawsEveryFileOfARandomAlbum) {
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImage = 1;
    for (const char *path : {"\\a.jpg", "\\b.jpg", "\\R&B 50%\\c.jpg"}) AddMedia(album, path);
    std::string rows;
    for (int i = 0; i < 60; ++i) rows += Rows();
    for (const char *name : {"a", "b"}) EXPECT_THAT(rows, HasSubstr(Concat("&thumb&/", name, ".jpg\"")));
    const std::string path = "/R<amp>and<amp>B%2050<percent>num<percent>/c.jpg\"";
    EXPECT_THAT(rows, HasSubstr("\"ShowAlbum?ShowDetails&1&count&" + path + "><img src=\"ShowPicture?1&thumb&" + path));
    EXPECT_THAT(rows, HasSubstr("\"ShowAlbum?1&thumbs&1&R<amp>and<amp>B%2050<percent>num<percent>&" + directoryIcon +
                                "</td></tr>"));
}

TEST_F(IndexTest, KeepsTheDirectoryIconOfTheRandomAlbumAboveInAnAlbumWithoutPicture) {
    for (const int featured : {0, 1, 0, 2, 0})
        AddAlbum(std::to_string(gAlbums.size()) + "A").FeaturedImage = static_cast<std::int16_t>(featured);
    AddMedia(*gAlbums[1], "\\sub\\a.jpg");
    EXPECT_EQ(Count(Rows(), "<a href=\"ShowAlbum?2&thumbs&1&sub&" + directoryIcon), 2);
    EXPECT_EQ(Count(Rows(), "alt=\"Directory\""), 2);
    DropMediaList(2);
    CreateMediaList(2);
    EXPECT_EQ(Count(Rows(), "alt=\"Directory\""), 0);
}

TEST_F(IndexTest, ShowsTheWebcamWhileItIsLive) {
    EXPECT_THAT(Rows(), Not(HasSubstr("webcam")));
    gSystray->tmrWebCam.SetInterval(5000);
    gSystray->tmrWebCam.SetEnabled(true);
    gLastCaptureTick = GetTickCount() - 62600;
    EXPECT_THAT(Rows(), HasSubstr("Picture Taken 63 secs ago.</font></td><td class=\"tdPictureCell\""));
}

}  // namespace
}  // namespace pixmora::test
