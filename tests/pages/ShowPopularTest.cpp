// Tests of the most popular page.
#include <gtest/gtest.h>

#include "platform/RunTimeError.h"
#include "support/Links.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ShowPopularTest : public SiteFixture {
protected:
    std::string Page(const Arguments &args) {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowPopular(socket, args); });
    }
    void AddFileRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularFiles", {{"AlbumName", album}, {"FilePath", path}, {"FileCount", count}});
    }
    void AddDirRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularDirs", {{"AlbumName", album}, {"DirPath", path}, {"DirCount", count}});
    }
    void AddFileRows(int count) {
        for (int i = 0; i < count; ++i) AddFileRow("A", "\\f" + std::to_string(100 + i) + ".jpg", 1000 - i);
    }

    const std::string tableOpening_ = R"(<table border=0 cellpadding=5 cellspacing=15 align="center">)";
};

TEST_F(ShowPopularTest, ShowsDirectoriesAndThumbnails) {
    AddAlbum("A");
    const clsAlbum &album = AddAlbum("B");
    AddFile(album, "run.avi", std::string(1331, 'x'));
    AddFileRow("B", "\\O%39Brien\\a_b & c.jpg", 1);
    AddFileRow("B", "\\run.avi", 7);
    AddDirRow("A", "\\", 1);
    AddDirRow("B", "\\O%39Brien\\R & B", 12);
    const std::string page = Page({"thumbs"});
    EXPECT_EQ(Filled(page, "STYLE_SHEET") + Filled(page, "SERVER_TITLE"), ".style {}Anna's Site");
    EXPECT_EQ(
        Filled(page, "PIC_VIEW"),
        R"(&nbsp;<font class="lblPictureView">View As:</font>&nbsp;)"
        R"(<img src="ShowGraphic?thumbson.gif" alt="Thumbnails" align="absmiddle">&nbsp;)"
        R"(<a href="ShowPopular?list"><img src="ShowGraphic?list.gif" border=0 alt="List" align="absmiddle"></a>&nbsp;)"
        R"(<a href="ShowPopular?slideshow&play&0&5">)"
        R"(<img src="ShowGraphic?slideshow.gif" border=0 alt="Slideshow" align="absmiddle"></a>)");
    const auto cell = [](const std::string &id) {
        return R"(<td valign="top"><table width="100%" border=0 cellpadding=5><tr><td align="center" valign="top" )"
               R"(class="tdPictureCell" id=")" +
               id + R"(" onMouseOver="mMouseOver(')" + id + R"(');" onMouseOut="mMouseOut(')" + id +
               R"(');"><font class="lblPictureList">)";
    };
    const std::string end = "</font></td></tr></table></td>\r\n\r\n";
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              tableOpening_ +
                  "<tr><td class=\"tdPictureCell\" colspan=2><font class=\"lblPopularDirs\">"
                  "Popular Directories</font></td></tr>\r\n\r\n"
                  R"(<tr><td valign="top" class="tdPictureCell" colspan=2>&nbsp;&nbsp;&nbsp;)"
                  R"(<img src="ShowGraphic?folderclosed16.gif" width=16 height=16>&nbsp;)"
                  R"(<a target="_top" href="ShowAlbum?2&thumbs&1&O'Brien&R%20<amp>and<amp>%20B&" )"
                  "title=\" (12 Views)\"><font class=\"lblPopularSubDir\">B > O'Brien > R & B"
                  "</a><br></td></tr>\r\n\r\n"
                  R"(<tr><td valign="top" class="tdPictureCell" colspan=2>&nbsp;&nbsp;&nbsp;)"
                  R"(<img src="ShowGraphic?album16.gif" width=16 height=16>&nbsp;)"
                  "<a target=\"_top\" href=\"ShowAlbum?1&thumbs&1&\" title=\" (1 View)\">"
                  "<font class=\"lblPopularSubDir\">A</a><br></td></tr>\r\n\r\n"
                  "<tr><td class=\"tdPictureCell\" colspan=2><font class=\"lblPopularMedia\">"
                  "Popular Media</font></td></tr>\r\n\r\n<tr>\r\n" +
                  cell("pic_0") +
                  R"(<a target="_top" href="ShowAlbum?ShowDetails&2&nocount&/run.avi">)"
                  R"(<img src="ShowGraphic?movie.gif" border=0><br><br>run</a><br><br>(1.29 KB))"
                  "<br>7 Views" +
                  end + cell("pic_1") +
                  R"(<a target="_top" href="ShowAlbum?ShowDetails&2&nocount&/O'Brien/a_b%20<amp>and<amp>%20c.jpg">)"
                  R"(<img src="ShowPicture?2&thumb&/O'Brien/a_b%20<amp>and<amp>%20c.jpg" border=0 width="150"><br>)"
                  R"(a b & c</a><br>1 View)" +
                  end + "</tr>\r\n</table>");
    EXPECT_EQ(Filled(page, "PIC_PAGE") + Filled(page, "PIC_NAV_LEFT") + Filled(page, "PIC_NAV_RIGHT"), "&nbsp;");
}

TEST_F(ShowPopularTest, ShowsAList) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a b/x.gif", "1234567");
    AddFileRow("A", "\\a b\\x.gif", 2);
    AddFileRow("Gone", "\\y.mov", 1);
    const std::string list = Filled(Page({"list"}), "PIC_LIST");
    EXPECT_EQ(list.substr(list.find("Popular Media")),
              "Popular Media</font></td></tr>\r\n\r\n"
              R"(<tr><td align="left" class="tdPictureCell">&nbsp;&nbsp;&nbsp;)"
              R"(<a target="_top" href="ShowAlbum?ShowDetails&1&nocount&/a%20b/x.gif"><font class="lblPictureList">)"
              R"(<img src="ShowGraphic?picture16.gif" border=0>&nbsp;A: x</font></a></td>)"
              R"(<td width="100"><font class="lblPictureList">7 bytes</font></td>)"
              "<td width=\"100\"><font class=\"lblPictureList\">2 Views</font></td></tr>\r\n\r\n"
              R"(<tr><td align="left" class="tdPictureCell">&nbsp;&nbsp;&nbsp;)"
              R"(<a target="_top" href="ShowAlbum?ShowDetails&&nocount&/y.mov"><font class="lblPictureList">)"
              R"(<img src="ShowGraphic?movie16.gif" border=0>&nbsp;Gone: y</font></a></td>)"
              R"(<td width="100"><font class="lblPictureList"></font></td>)"
              "<td width=\"100\"><font class=\"lblPictureList\">1 View</font></td></tr>\r\n\r\n</table>");
}

TEST_F(ShowPopularTest, LimitsWhatItShows) {
    AddAlbum("A");
    for (int i = 0; i < 7; ++i) AddDirRow("A", "\\d" + std::to_string(i), 10 - i);
    AddFileRows(30);
    struct LimitCase {
        const char *Name;
        int PerPage;
        int PerRow;
        int Files;
        int Pictures;  ///< of the files; the rest are empty entries
    };
    for (const LimitCase &test : {LimitCase{"a page's files", 12, 4, 12, 12},
                                  {"a bigger page", 40, 4, 30, 30},
                                  {"all", 0, 4, 21, 21},
                                  {"all, longer than the table", 0, 7, 36, 30}}) {
        SCOPED_TRACE(test.Name);
        gFilesPerPage = test.PerPage;
        gFilesPerRow = test.PerRow;
        const std::string list = Filled(Page({"thumbs"}), "PIC_LIST");
        EXPECT_EQ(Count(list, "lblPopularSubDir"), 5);
        EXPECT_EQ(Count(list, "id=\"pic_"), test.Files);
        EXPECT_EQ(Count(list, "ShowPicture?1"), test.Pictures);
        EXPECT_EQ(Count(list, "ShowDetails"), test.Pictures);
        EXPECT_EQ(Count(list, " colspan=" + std::to_string(test.PerRow) + ">"), 7);
        EXPECT_TRUE(Contains(Filled(Page({"slideshow", "play", "0", "5"}), "PIC_PAGE"),
                             "File 1 of " + std::to_string(test.Files)));
    }
}

TEST_F(ShowPopularTest, SortsByViewsAndThenByPath) {
    AddAlbum("A");
    for (const auto &[path, count] : {std::pair{"\\b.jpg", 5}, {"\\c.jpg", 5}, {"\\z.jpg", 1}, {"\\a.jpg", 9}})
        AddFileRow("A", path, count);
    std::string order;
    for (const std::string &link : Links(Page({"list"}))) {
        if (link.starts_with("ShowAlbum?ShowDetails")) order += link.substr(link.size() - 5, 1);
    }
    EXPECT_EQ(order, "acbz");
}

TEST_F(ShowPopularTest, ShowsEmptyTables) {
    for (const int perPage : {0, 12}) {
        gFilesPerPage = perPage;
        EXPECT_EQ(Filled(Page({"thumbs"}), "PIC_LIST"),
                  tableOpening_ +
                      "<tr><td class=\"tdPictureCell\" colspan=0><font class=\"lblPopularDirs\">"
                      "Popular Directories</font></td></tr>\r\n\r\n"
                      "<tr><td class=\"tdPictureCell\" colspan=0><font class=\"lblPopularMedia\">"
                      "Popular Media</font></td></tr>\r\n\r\n</table>");
        EXPECT_TRUE(Contains(Filled(Page({"slideshow", "play", "0", "5"}), "PIC_LIST"), "No files here."));
    }
}

TEST_F(ShowPopularTest, ShowsOneFileAtATime) {
    AddAlbum("A");
    AddFileRow("A", "\\a b\\x.jpg", 1);
    AddFileRow("A", "\\m.avi", 3);
    const std::string page = Page({"slideshow", "play", "1", "0"});
    const std::string cell =
        R"(<tr><td align="center" valign="top" class="tdPictureCell" id="pic" onMouseOver="mMouseOver('pic');" )"
        R"(onMouseOut="mMouseOut('pic');"><font class="lblPictureList">)";
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              tableOpening_ + cell +
                  R"(<a target="_top" href="ShowAlbum?ShowDetails&1&nocount&/a%20b/x.jpg">)"
                  R"(<img src="ShowPicture?1&slideshow&/a%20b/x.jpg" border=0><br>x</a>)"
                  "</font></td></tr>\r\n\r\n"
                  R"(<tr><td align="center"><font class="lblPictureList">1 Click<br>A, /a b/&nbsp;)"
                  R"(<a target="_top" href="ShowAlbum?1&thumbs&1&a%20b&">)"
                  R"(<img src="ShowGraphic?directory.gif" border=0 alt="Directory"></a>)"
                  "</font></td></tr>\r\n\r\n</table>");
    EXPECT_EQ(Filled(page, "PIC_PAGE"), R"(<font class="lblPictureNav">File 2 of 2</font><br>)");
    EXPECT_EQ(
        Filled(page, "PIC_NAV_LEFT"),
        R"(<a href="ShowPopular?slideshow&play&0&5"><img src="ShowGraphic?back.gif" alt="Back" border=0></a>&nbsp;)"
        R"(<img src="ShowGraphic?playhigh.gif" alt="Play"><a href="ShowPopular?slideshow&pause&1&5">)"
        "<img src=\"ShowGraphic?pause.gif\" border=0 alt=\"Pause\"></a><script language=\"javascript\">\r\n"
        "self.setTimeout('NextPic()', 5000);\r\nfunction NextPic() {\r\n"
        "location.href='ShowPopular?slideshow&play&0&5';\r\n}\r\n</script>\r\n"
        R"(<a href="ShowPopular?slideshow&play&0&5">)"
        R"(<img src="ShowGraphic?forward.gif" alt="Forward" border=0></a>)");
    EXPECT_TRUE(Filled(page, "PIC_NAV_RIGHT")
                    .starts_with(R"(<br><font class="lblPictureNav">Display Time:</font>&nbsp;)"
                                 R"(<a href="ShowPopular?slideshow&play&1&2"><img src="ShowGraphic?time2.gif")"));

    const std::string paused = Page({"slideshow", "pause", "0", "7"});
    EXPECT_TRUE(Contains(Filled(paused, "PIC_LIST"), R"(<img src="ShowGraphic?movie.gif" border=0><br>m</a>)"));
    EXPECT_TRUE(Contains(Filled(paused, "PIC_LIST"), "3 Clicks<br>A, /&nbsp;"));
    EXPECT_TRUE(
        Contains(Filled(paused, "PIC_NAV_LEFT"), R"(&nbsp;<img src="ShowGraphic?pausehigh.gif" alt="Paused">)"));
    EXPECT_EQ(Filled(paused, "PIC_NAV_RIGHT"), "");
    EXPECT_THROW(Page({"slideshow"}), RunTimeError);
    EXPECT_THROW(Page({}), RunTimeError);
}

TEST_F(ShowPopularTest, BooksItsKilobytesUnderANameOfItsOwn) {
    AddAlbum("A");
    AddFileRows(12);
    const std::string page = Page({"thumbs"});
    EXPECT_EQ(gBandwidthSession, static_cast<double>(Body(page).size() / 1024));
    EXPECT_EQ(Column("StatsHourly", "AlbumName"), "Most Popular");
}

}  // namespace
}  // namespace pixmora::test
