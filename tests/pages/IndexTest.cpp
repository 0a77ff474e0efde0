// Tests of the front page.
#include <gmock/gmock.h>

#include "platform/runtime/Numbers.h"
#include "store/Statistics.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string directoryIcon = R"("><img src="ShowGraphic?directory.gif" border=0 alt="Directory"></a>)";

class IndexTest : public PageSite {
protected:
    std::string Page(const std::string &user = "") { return Get("Index", user); }
    std::string Rows(const std::string &user = "") { return Filled(Page(user), "SHARE_LIST"); }
    /// Which of the albums A to D, by the letter of its name, have a row.
    std::string Shown(const std::string &user) {
        const std::string rows = Rows(user);
        std::string shown;
        for (const AlbumPointer &album : gAlbums) {
            if (Count(rows, "\"lblAlbumName\">" + album->Name + "<") == 1) shown += album->Name.back();
        }
        return shown;
    }
    void AddMedia(const clsAlbum &album, const std::string &path) {
        if (!gDatabase->TableExists(MediaListName(album.ID))) CreateMediaList(album.ID);
        AddRow(MediaListName(album.ID), {{"AlbumName", album.Name}, {"FilePath", path}});
    }
    void AddPopular(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularFiles", {{"AlbumName", album}, {"FilePath", path}, {"FileCount", count}});
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

TEST_F(IndexTest, BooksTheFractionOfAKilobyte) {
    AddAlbum("A");
    const double kilobytes = static_cast<double>(Body(Page()).size()) / 1024;
    EXPECT_DOUBLE_EQ(gBandwidthSession, kilobytes);
    EXPECT_EQ(Column("StatsRecent", "StatValue"), std::to_string(RoundToLong(kilobytes)));
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), NoAlbum);
}

TEST_F(IndexTest, HidesProtectedAlbumsFromAll) {
    AddAlbum("A");
    Protect(AddAlbum("B"), "\\", "bob");
    AddAlbum("Private C");
    Protect(AddAlbum("D"), "\\sub", "bob");
    AddAlbum("E");
    AddRow("PrivateDirs", {{"AlbumName", "e"}, {"SubDir", "\\"}, {"Username", "bob"}});
    AddUser("bob", false);
    AddUser("carol", true);
    EXPECT_EQ(Shown(""), "AD");
    EXPECT_EQ(Shown("bob"), "AD");
    EXPECT_EQ(Shown("gone"), "AD");
    EXPECT_EQ(Shown("carol"), "AD") << "an address without a query reads no cookie";
}

TEST_F(IndexTest, OffersTheLoginWhenNothingIsShown) {
    const std::string sentence = R"(<tr><td colspan=3 class="lblPictureList">There are no public albums. )"
                                 R"(Please <a href="ShowAlbum?ShowLogin&1&thumbs&1">click here</a> to login.)"
                                 "</font></td></tr><tr><td colspan=3><br><br></td></tr>\r\n\r\n";
    EXPECT_TRUE(Rows().ends_with(sentence));
    Protect(AddAlbum("B"), "\\");
    EXPECT_TRUE(Rows().ends_with(sentence));
    AddAlbum("A");
    EXPECT_THAT(Rows(), Not(HasSubstr("no public albums")));
}

TEST_F(IndexTest, ShowsAnAlbum) {
    clsAlbum &album = AddAlbum("A");
    album.Description = "All of them";
    album.FeaturedImage = 2;
    album.PictureCount = 1204;
    album.PictureSize = 3250000;
    const std::string expected =
        R"(<tr style="cursor: hand;" onclick="location.href='ShowAlbum?1&thumbs&1';"><td valign="top">)"
        "\r\n"
        R"(<a href="ShowAlbum?1&thumbs&1"><img src="ShowGraphic?album32.gif" border=0></a></td>)"
        "\r\n"
        R"(<td valign="top" class="tdAlbumList"><a href="ShowAlbum?1&thumbs&1"><font class="lblAlbumName">A</font></a>)"
        R"(<br><font class="lblPictureList">All of them<br><br><table border=0 cellpadding="1" cellspacing="0"><tr>)"
        R"(<td class="lblPictureList" width="70">Created:</td><td class="lblPictureList">March 1, 2004</td></tr><tr>)"
        R"(<td class="lblPictureList">Updated:</td><td class="lblPictureList">Today</td></tr><tr>)"
        R"(<td class="lblPictureList">Pictures:</td><td class="lblPictureList">1,204 (3.09 MB)</td></tr><tr>)"
        R"(<td class="lblPictureList">Movies:</td><td class="lblPictureList">0</td></tr></table>)"
        R"(<br><b>Click to view!</b></font></td><td><table width="100%" border=0 cellpadding=5><tr>)"
        R"(<td class="tdPictureCell" valign="top" align="center" id="sharepic_1" onMouseOver="mMouseOver('sharepic_1');")"
        R"( onMouseOut="mMouseOut('sharepic_1');"><a href="ShowAlbum?1&thumbs&1"><img src="ShowAlbumIcon?1" border=0 )"
        R"(width="150"></a></td></tr></table></td></tr><tr><td colspan=3><br><br></td></tr>)"
        "\r\n\r\n";
    EXPECT_TRUE(Rows().ends_with(expected)) << Rows();
}

TEST_F(IndexTest, CountsDaysByMidnights) {
    clsAlbum &album = AddAlbum("A");
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
    EXPECT_GT(Count(rows, "&thumb&/a.jpg\" border=0 width=\"150\"></a></td>"), 0);
    EXPECT_GT(Count(rows, "&thumb&/b.jpg\""), 0);
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

TEST_F(IndexTest, ShowsTheMostPopularPictureOfAll) {
    gFilesPerRow = 4;
    EXPECT_THAT(Rows(), HasSubstr("top 20 pictures and movies!"));
    EXPECT_THAT(Rows(), HasSubstr(R"(onMouseOut="mMouseOut('pop');"></td></tr></table></td></tr><tr><td colspan=3>)"));
    AddAlbum("A");
    AddAlbum("B");
    AddPopular("A", "\\z.avi", 9);
    AddPopular("A", "\\a.JPG", 5);
    AddPopular("B", "\\O%39Brien's\\R&B.gif", 5);
    AddPopular("A", "\\zz.bmp", 4);
    const std::string rows = Rows();
    EXPECT_THAT(rows, HasSubstr(R"("><a href="ShowAlbum?ShowDetails&2&nocount&/O'Brien's/R<amp>and<amp>B.gif">)"
                                R"(<img src="ShowPicture?2&thumb&/O'Brien's/R<amp>and<amp>B.gif" border=0></a></td>)"));
    EXPECT_THAT(rows, HasSubstr(R"(<td align="center"><a href="ShowAlbum?2&thumbs&1&O'Brien's&)" + directoryIcon +
                                "</tr><tr><td colspan=3>"));
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
