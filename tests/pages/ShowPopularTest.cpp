// Tests of the most popular page.
#include "platform/runtime/Text.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

class ShowPopularTest : public PageSite {
protected:
    std::string Page(const std::string &args) { return Get("ShowPopular?" + args); }
    void AddFileRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularFiles", {{"AlbumName", album}, {"FilePath", path}, {"FileCount", count}});
    }
    void AddDirRow(const std::string &album, const std::string &path, std::int64_t count) {
        AddRow("PopularDirs", {{"AlbumName", album}, {"DirPath", path}, {"DirCount", count}});
    }
};

TEST_F(ShowPopularTest, ShowsDirectoriesAndFiles) {
    AddAlbum("A");
    AddFile(AddAlbum("B"), "run.avi", std::string(1331, 'x'));
    AddFileRow("B", "\\O%39Brien\\a_b & c.jpg", 1);
    AddFileRow("B", "\\run.avi", 7);
    AddFileRow("Gone", "\\y.mov", 1);
    AddDirRow("A", "\\", 1);
    AddDirRow("B", "\\O%39Brien\\R & B", 12);
    const std::string page = Page("thumbs");
    const std::string list = Filled(page, "PIC_LIST");
    for (const std::string part :
         {"<tr><td class=\"tdPictureCell\" colspan=3><font class=\"lblPopularDirs\">Popular "
          "Directories</font></td></tr>",
          "folderclosed16.gif\" width=16 height=16>&nbsp;<a target=\"_top\" "
          "href=\"ShowAlbum?2&thumbs&1&O'Brien&R%20<amp>and<amp>%20B&\" title=\" (12 Views)\">"
          "<font class=\"lblPopularSubDir\">B > O'Brien > R & B</a><br></td></tr>",
          "album16.gif\" width=16 height=16>&nbsp;<a target=\"_top\" href=\"ShowAlbum?1&thumbs&1&\" title=\" (1 "
          "View)\">",
          "<a target=\"_top\" href=\"ShowAlbum?ShowDetails&2&nocount&/run.avi\">"
          "<img src=\"ShowGraphic?movie.gif\" border=0><br><br>run</a><br><br>(1.29 KB)<br>7 Views</font>",
          "<img src=\"ShowPicture?2&thumb&/O'Brien/a_b%20<amp>and<amp>%20c.jpg\" border=0 width=\"150\"><br>"
          "a b & c</a><br>1 View</font>"})
        EXPECT_TRUE(Contains(list, part)) << part << "\n" << list;
    EXPECT_EQ(Filled(page, "PIC_PAGE") + Filled(page, "PIC_NAV_LEFT") + Filled(page, "PIC_NAV_RIGHT"), "&nbsp;");
    EXPECT_TRUE(Contains(Filled(page, "PIC_VIEW"), "<a href=\"ShowPopular?slideshow&play&0&5\">"));
    EXPECT_EQ(gBandwidthSession, static_cast<double>(Body(page).size() / 1024));
    EXPECT_EQ(Column("StatsHourly", "AlbumName"), "Most Popular");

    const std::string rows = Filled(Page("list"), "PIC_LIST");
    EXPECT_TRUE(
        Contains(rows,
                 "border=0>&nbsp;B: run</font></a></td><td width=\"100\"><font class=\"lblPictureList\">"
                 "1.29 KB</font></td><td width=\"100\"><font class=\"lblPictureList\">7 Views</font></td></tr>"));
    EXPECT_TRUE(Contains(rows, "ShowDetails&&nocount&/y.mov\"><font class=\"lblPictureList\">"));
}

TEST_F(ShowPopularTest, LimitsWhatItShows) {
    AddAlbum("A");
    for (int i = 0; i < 7; ++i) AddDirRow("A", Concat("\\d", i), 10 - i);
    for (int i = 0; i < 30; ++i) AddFileRow("A", Concat("\\f", 100 + i, ".jpg"), 1000);
    const std::tuple<int, int, int, int> cases[] = {
        {12, 4, 12, 12}, {40, 4, 30, 30}, {0, 4, 21, 21}, {0, 7, 36, 30}};  // per page, per row, entries, files of them
    for (const auto &[perPage, perRow, entries, files] : cases) {
        gFilesPerPage = perPage;
        gFilesPerRow = perRow;
        const std::string list = Filled(Page("thumbs"), "PIC_LIST");
        EXPECT_EQ(Count(list, "lblPopularSubDir"), 5);
        EXPECT_EQ(Count(list, "id=\"pic_"), entries);
        EXPECT_EQ(Count(list, "ShowPicture?1"), files);
        EXPECT_EQ(Count(list, Concat(" colspan=", perRow, ">")), 7);
        EXPECT_TRUE(Contains(Links(list)[5], "/f129.jpg"));  // of equal counts the later path first
        EXPECT_TRUE(Contains(Filled(Page("slideshow&play&99&5"), "PIC_PAGE"), Concat("File 1 of ", entries)));
    }
}

TEST_F(ShowPopularTest, ShowsEmptyTables) {
    gFilesPerPage = 0;
    const std::string list = Filled(Page("thumbs"), "PIC_LIST");
    EXPECT_EQ(Count(list, "colspan=0><font class=\"lblPopular"), 2);
    EXPECT_TRUE(list.ends_with("Popular Media</font></td></tr>\r\n\r\n</table>"));
    EXPECT_TRUE(Contains(Filled(Page("slideshow&play&0&5"), "PIC_LIST"), "No files here."));
}

TEST_F(ShowPopularTest, ShowsOneFileAtATime) {
    AddAlbum("A");
    AddFileRow("A", "\\a b\\x.jpg", 1);
    AddFileRow("A", "\\m.avi", 3);
    const std::string page = Page("slideshow&play&1&0");
    const std::string list = Filled(page, "PIC_LIST");
    EXPECT_TRUE(Contains(list, R"(<a target="_top" href="ShowAlbum?ShowDetails&1&nocount&/a%20b/x.jpg">)"
                               R"(<img src="ShowPicture?1&slideshow&/a%20b/x.jpg" border=0><br>x</a>)"));
    EXPECT_TRUE(Contains(list, R"(1 Click<br>A, /a b/&nbsp;<a target="_top" href="ShowAlbum?1&thumbs&1&a%20b&">)"));
    const std::string controls = Filled(page, "PIC_NAV_LEFT");
    EXPECT_TRUE(controls.starts_with(R"(<a href="ShowPopular?slideshow&play&0&5"><img src="ShowGraphic?back.gif")"));
    EXPECT_TRUE(Contains(controls,
                         "self.setTimeout('NextPic()', 5000);\r\nfunction NextPic() {\r\n"
                         "location.href='ShowPopular?slideshow&play&0&5';"));
    EXPECT_TRUE(Contains(Filled(page, "PIC_NAV_RIGHT"), "<a href=\"ShowPopular?slideshow&play&1&15\">"));
    const std::string paused = Page("slideshow&pause&0&7");
    EXPECT_TRUE(Contains(Filled(paused, "PIC_LIST"), "3 Clicks<br>A, /&nbsp;"));
    EXPECT_TRUE(
        Contains(Filled(paused, "PIC_NAV_LEFT"), "alt=\"Paused\"><a href=\"ShowPopular?slideshow&pause&1&7\">"));
    EXPECT_EQ(Filled(paused, "PIC_NAV_RIGHT"), "");
    EXPECT_EQ(Page("slideshow"), "Bad Request");
}

}  // namespace
}  // namespace pixmora::test
