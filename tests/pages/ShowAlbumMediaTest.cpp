// Tests of the media page.
#include <gtest/gtest.h>

#include "platform/RunTimeError.h"
#include "support/ErrorOf.h"
#include "support/Links.h"
#include "support/Pictures.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ShowAlbumMediaTest : public SiteFixture {
protected:
    std::string Page(const Arguments &args, const std::string &user = "") {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowAlbumMedia(socket, args); }, user);
    }
    std::string List(const Arguments &args, const std::string &user = "") {
        return Filled(Page(args, user), "PIC_LIST");
    }

    /// Asks for a link as a browser does.
    std::string Follow(const std::string &link) {
        const Target target = ParseTarget(BrowserTarget(link));
        return Answer([&](const Connection &socket) {
            const clsWebServerCommands &pages = *gWebServerCommands;
            if (target.Name == "ShowAlbumMedia") return pages.genShowAlbumMedia(socket, target.Args);
            if (target.Name == "ShowDetails") return pages.genShowDetails(socket, target.Args);
            if (target.Name == "ShowPicture") return pages.genShowPicture(socket, target.Args);
            if (target.Name == "ShowMovie") return pages.genShowMovie(socket, target.Args);
            // The frameset hands an album's address on to this page.
            if (target.Name == "ShowAlbum") return pages.genShowAlbumMedia(socket, target.Args);
            throw std::runtime_error("no such page: " + link);
        });
    }
    void AddFiles(const clsAlbum &album, int count) {
        for (int i = 0; i < count; ++i) AddFile(album, "f" + std::to_string(100 + i) + ".jpg");
    }
};

TEST_F(ShowAlbumMediaTest, ShowsPicturesAndMoviesAsThumbnails) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "my_dogs/at_sea.v2.jpg");
    AddFile(album, "my_dogs/run.avi", std::string(1331, 'x'));
    gFilesPerRow = 2;
    const std::string page = Page({"1", "thumbs", "1", "my_dogs"}, "Anna");
    EXPECT_TRUE(page.starts_with("HTTP/1.0 200 OK\r\n"));
    EXPECT_EQ(Filled(page, "STYLE_SHEET"), ".style {}");
    EXPECT_EQ(Filled(page, "SERVER_TITLE"), "Anna's Site");
    EXPECT_EQ(Filled(page, "DIR_TITLE"), "my_dogs");
    EXPECT_EQ(Filled(page, "AUTHOR"), "Anna O'Neil");
    EXPECT_EQ(Filled(page, "LOGIN_NAME"), "User: Anna");
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              "<table border=0 cellpadding=5 cellspacing=15 align=\"center\"><tr>\r\n"
              R"(<td valign="top"><table width="100%" border=0 cellpadding=5><tr><td align="center" valign="top" )"
              R"(class="tdPictureCell" id="pic_0" onMouseOver="mMouseOver('pic_0');" onMouseOut="mMouseOut('pic_0');">)"
              R"(<font class="lblPictureList"><a href="ShowDetails?1&count&/my_dogs/at_sea.v2.jpg">)"
              R"(<img src="ShowPicture?1&thumb&/my_dogs/at_sea.v2.jpg" border=0 width="150"><br>at sea.v2</a>)"
              "</font></td></tr></table></td>\r\n\r\n"
              R"(<td valign="top"><table width="100%" border=0 cellpadding=5><tr><td align="center" valign="top" )"
              R"(class="tdPictureCell" id="pic_1" onMouseOver="mMouseOver('pic_1');" onMouseOut="mMouseOut('pic_1');">)"
              R"(<font class="lblPictureList"><a href="ShowDetails?1&count&/my_dogs/run.avi">)"
              R"(<img src="ShowGraphic?movie.gif" border=0><br><br>run</a><br><br>(1.29 KB))"
              "</font></td></tr></table></td>\r\n\r\n</tr>\r\n</table>");
    EXPECT_EQ(Filled(page, "PIC_VIEW"),
              R"(<font class="lblPictureView">View As:</font>&nbsp;)"
              R"(<img src="ShowGraphic?thumbson.gif" alt="Thumbnails" align="absmiddle">&nbsp;)"
              R"(<a target="_top" href="ShowAlbum?1&list&1&my_dogs&">)"
              R"(<img src="ShowGraphic?list.gif" border=0 alt="List" align="absmiddle"></a>&nbsp;)"
              R"(<a target="_top" href="ShowAlbum?1&slideshow&1&play&0&5&my_dogs&">)"
              R"(<img src="ShowGraphic?slideshow.gif" border=0 alt="Slideshow" align="absmiddle"></a>)");
}

TEST_F(ShowAlbumMediaTest, ShowsTheFilesAsAList) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "a.jpg", "1234567");
    AddFile(album, "b.mov", "12");
    const std::string page = Page({"1", "list", "1"});
    EXPECT_EQ(Filled(page, "DIR_TITLE"), "A");
    EXPECT_EQ(Filled(page, "LOGIN_NAME"), "");
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              R"(<table border=0 cellpadding=5 cellspacing=15 align="center">)"
              R"(<tr><td class="tdPictureCell"><img src="ShowGraphic?picture16.gif" align="absbottom">&nbsp;)"
              R"(<a href="ShowDetails?1&count&/a.jpg"><font class="lblPictureList">a</font></a></td>)"
              "<td><font class=\"lblPictureList\">7 bytes</font></td></tr>\r\n\r\n"
              R"(<tr><td class="tdPictureCell"><img src="ShowGraphic?movie16.gif" align="absbottom">&nbsp;)"
              R"(<a href="ShowDetails?1&count&/b.mov"><font class="lblPictureList">b</font></a></td>)"
              "<td><font class=\"lblPictureList\">2 bytes</font></td></tr>\r\n\r\n"
              "</tr>\r\n</table>");
    EXPECT_TRUE(Contains(Filled(page, "PIC_VIEW"), "ShowGraphic?liston.gif"));
}

TEST_F(ShowAlbumMediaTest, CountsThePagesFromTheLastIndex) {
    const clsAlbum &album = AddAlbum("A");
    AddFiles(album, 9);
    struct PageCase {
        const char *Name;
        std::string Page;
        int PerPage;
        int Cells;
        std::string FirstCell;
        std::string Position;
        std::string LeftLinks;
        std::string RightLinks;
    };
    const std::string to = "ShowAlbumMedia?1&thumbs&";
    const PageCase cases[] = {
        {"first", "1", 4, 4, "pic_0", "Page 1 of 3", "", to + "2&|" + to + "2&"},
        {"the page before a lone file has no next", "2", 4, 4, "pic_4", "Page 2 of 3", to + "1&|" + to + "1&", ""},
        {"the lone file", "3", 4, 1, "pic_8", "Page 3 of 3", to + "1&|" + to + "2&", ""},
        {"two pages of five", "1", 5, 5, "pic_0", "Page 1 of 2", "", to + "2&|" + to + "2&"},
        {"behind the files", "4", 4, 0, "", "Page 4 of 3", to + "1&|" + to + "3&", ""},
        {"no paging", "1", 0, 9, "pic_0", "Page 1 of 1", "", ""},
        {"no paging, page 0", "0", 0, 9, "pic_0", "Page 0 of 1", to + "1&|" + to + "-1&", ""},
        {"all on one", "1", 12, 9, "pic_0", "Page 1 of 1", "", ""},
        {"one a page", "8", 1, 1, "pic_7", "Page 8 of 9", to + "1&|" + to + "7&", ""},
    };
    for (const PageCase &test : cases) {
        SCOPED_TRACE(test.Name);
        gFilesPerPage = test.PerPage;
        const std::string page = Page({"1", "thumbs", test.Page});
        const std::string list = Filled(page, "PIC_LIST");
        EXPECT_EQ(Count(list, "tdPictureCell"), test.Cells);
        EXPECT_EQ(Count(list, "<tr>\r\n"), (test.Cells + 2) / 3);
        EXPECT_EQ(Count(list, "</tr>\r\n"), (test.Cells + 2) / 3);
        if (test.Cells > 0) {
            EXPECT_LT(list.find("id=\"" + test.FirstCell), list.find("</td>"));
        }
        EXPECT_EQ(Filled(page, "PIC_PAGE"), R"(<font class="lblPictureNav">)" + test.Position + "</font><br>");
        const auto pageLinks = [&](const char *part) {
            std::vector<std::string> links = Links(Filled(page, part));
            std::erase_if(links, [](const std::string &link) { return link.starts_with("ShowGraphic"); });
            return Join(links, "|");
        };
        EXPECT_EQ(pageLinks("PIC_NAV_LEFT"), test.LeftLinks);
        EXPECT_EQ(pageLinks("PIC_NAV_RIGHT"), test.RightLinks);
    }
}

TEST_F(ShowAlbumMediaTest, PutsTheArrowsIn) {
    const clsAlbum &album = AddAlbum("A");
    AddFiles(album, 5);
    gFilesPerPage = 2;
    const std::string page = Page({"1", "list", "1"});
    EXPECT_EQ(Filled(page, "PIC_NAV_LEFT"), R"(<img src="ShowGraphic?firstdisabled.gif" alt="First">&nbsp;)"
                                            R"(<img src="ShowGraphic?previousdisabled.gif" alt="Previous">&nbsp;)");
    EXPECT_EQ(Filled(page, "PIC_NAV_RIGHT"),
              R"(<a href="ShowAlbumMedia?1&list&2&"><img src="ShowGraphic?next.gif" alt="Next" border=0></a>&nbsp;)"
              R"(<a href="ShowAlbumMedia?1&list&2&"><img src="ShowGraphic?last.gif" alt="Last" border=0></a>&nbsp;)");
}

TEST_F(ShowAlbumMediaTest, RefusesBadArguments) {
    const clsAlbum &album = AddAlbum("A");
    AddFiles(album, 1);
    for (const Arguments &args : {Arguments{},
                                  {"1", "thumbs"},
                                  {"x", "thumbs", "1"},
                                  {"0", "thumbs", "1"},
                                  {"2", "thumbs", "1"},
                                  {"1", "thumbs", "one"},
                                  {"1", "thumbs", "99999999999"},
                                  {"1", "slideshow", "1"},
                                  {"1", "slideshow", "1", "play", "x", "5"}}) {
        EXPECT_EQ(Page(args), "Bad Request!") << Join(args, "&");
    }
    const auto errorOf = [&](const std::string &number) {
        return ErrorOf([&] { Page({"1", "thumbs", number}); });
    };
    EXPECT_EQ(errorOf("0"), CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_EQ(errorOf("-5"), CodeOf(ErrorNumber::SubscriptOutOfRange));
    EXPECT_EQ(errorOf("2000000000"), CodeOf(ErrorNumber::Overflow));
    gFilesPerRow = 0;
    EXPECT_EQ(errorOf("1"), CodeOf(ErrorNumber::DivisionByZero));
}

TEST_F(ShowAlbumMediaTest, ShowsTheWayDownWhereThereAreNoFiles) {
    clsAlbum &album = AddAlbum("A");
    const std::string nothing = R"(<font class="lblPictureNav">No files here.</font>)";
    EXPECT_EQ(List({"1", "thumbs", "0"}), nothing);
    AddDirectory(album, "a b/c");
    AddFile(album, "a b/c/x.jpg");
    const std::string page = Page({"1", "slideshow", "3", "play", "0", "5", "a b"});
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              R"(<font class="lblPictureNav">No files here. Choose a subdirectory.</font><br><br><table border=0>)"
              R"(<tr><td height="20" class="lblFolder" nowrap><a href="ShowAlbum?1&slideshow&1&play&0&5&a%20b&c" )"
              R"(target="_top"><img src="ShowGraphic?folderclosed16.gif" align="absmiddle" border=0> c</a>)"
              "&nbsp;<img src=\"ShowGraphic?new.gif\"></td></tr>\r\n\r\n</table>");
    EXPECT_EQ(Filled(page, "PIC_PAGE") + Filled(page, "PIC_NAV_LEFT") + Filled(page, "PIC_NAV_RIGHT"), "");
    EXPECT_TRUE(Filled(page, "PIC_VIEW").starts_with(R"(<font class="lblPictureView">View As:)"));
    EXPECT_EQ(List({"1", "thumbs", "1", "nowhere"}), nothing);
    EXPECT_EQ(List({"1", "thumbs", "1", ".."}), nothing);
    EXPECT_EQ(List({"1", "thumbs", "1", ".", "a b", "c"}), nothing);
    // Without subdirectories the files below the root are out of reach, those in it are not.
    AddFile(album, "r.jpg");
    album.SubDirectories = 0;
    EXPECT_EQ(List({"1", "thumbs", "1", "a b", "c"}), nothing);
    EXPECT_TRUE(Contains(List({"1", "thumbs", "1"}), "/r.jpg"));
}

TEST_F(ShowAlbumMediaTest, KeepsProtectedDirectoriesClosed) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"O'Brien/x.jpg", "O'Brien/sub/x.jpg", "Private Stuff/x.jpg", "open/x.jpg"})
        AddFile(album, name);
    AddUser("Guest", false);
    AddUser("Chief", true);
    Protect(album, "\\O%34Brien", "Guest");
    struct RightCase {
        const char *Name;
        std::string User;
        Arguments Directories;
        std::string Message;  ///< of the login page; none when the files show
        std::string CountWord;
    };
    const std::string noRight = "Login is correct but you do not have permission to view this directory!";
    const RightCase cases[] = {
        {"open", "", {"open"}, "", "&count&"},
        {"nobody", "", {"O'Brien"}, "(login)", ""},
        {"guest with a right", "Guest", {"O'Brien"}, "", "&nocount&"},
        {"guest, one level down", "Guest", {"O'Brien", "sub"}, noRight, ""},
        {"administrator, one level down", "Chief", {"O'Brien", "sub"}, "", "&nocount&"},
        {"user who is gone", "Ghost", {"O'Brien"}, "You are logged in as an invalid user!", ""},
        {"word", "Guest", {"Private Stuff"}, noRight, ""},
        {"word, hidden behind an empty name", "", {"Private Stuff", ""}, "(login)", ""},
        {"empty name in front", "", {"", "O'Brien"}, "(login)", ""},
    };
    for (const RightCase &test : cases) {
        SCOPED_TRACE(test.Name);
        Arguments args = {"1", "thumbs", "1"};
        args.insert(args.end(), test.Directories.begin(), test.Directories.end());
        const std::string page = Page(args, test.User);
        if (test.Message.empty()) {
            EXPECT_TRUE(Contains(Filled(page, "PIC_LIST"), "ShowDetails?1" + test.CountWord)) << page;
        } else {
            EXPECT_EQ(Filled(page, "FORM_ARGS"), Join(args, "&"));
            EXPECT_EQ(Filled(page, "MESSAGE_TO_VISITOR"), test.Message == "(login)" ? "" : test.Message);
        }
    }
    // Listings show a protected directory to administrators only.
    EXPECT_EQ(Count(List({"1", "list", "1"}, "Guest"), "folderclosed16"), 1);
    EXPECT_EQ(Count(List({"1", "list", "1"}, "Chief"), "folderclosed16"), 3);
}

TEST_F(ShowAlbumMediaTest, ShowsOneFileAtATime) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"d'or/a.jpg", "d'or/b_c.avi", "d'or/d.gif"}) AddFile(album, name);
    const std::string page = Page({"1", "slideshow", "2", "play", "2", "10", "d'or"});
    const std::string cell =
        R"(<table border=0 cellpadding=5 cellspacing=15 align="center"><tr><td align="center" valign="top" )"
        R"(class="tdPictureCell" id="pic" onMouseOver="mMouseOver('pic');" onMouseOut="mMouseOut('pic');">)"
        R"(<font class="lblPictureList">)";
    EXPECT_EQ(Filled(page, "PIC_LIST"),
              cell +
                  R"(<a href="ShowDetails?1&count&/d'or/d.gif"><img src="ShowPicture?1&slideshow&/d'or/d.gif" border=0)"
                  R"( onload="self.setTimeout('NextPic()', 10000);"><br>d</a>)"
                  "</font></td></tr>\r\n\r\n</table>");
    EXPECT_EQ(Filled(page, "PIC_PAGE"), R"(<font class="lblPictureNav">File 3 of 3</font><br>)");
    EXPECT_EQ(
        Filled(page, "PIC_NAV_LEFT"),
        R"(<a href="ShowAlbumMedia?1&slideshow&2&play&1&10&d'or&">)"
        R"(<img src="ShowGraphic?previous.gif" border=0 alt="Back"></a>&nbsp;)"
        R"(<img src="ShowGraphic?playhigh.gif" alt="Play"><a href="ShowAlbumMedia?1&slideshow&2&pause&2&10&d'or&">)"
        "<img src=\"ShowGraphic?pause.gif\" border=0 alt=\"Pause\"></a><script language=\"javascript\">\r\n"
        "function NextPic() {\r\n"
        "location.href='ShowAlbumMedia?1&slideshow&2&play&0&10&d\\'or&';\r\n}\r\n</script>\r\n"
        R"(<a href="ShowAlbumMedia?1&slideshow&2&play&0&10&d'or&">)"
        R"(<img src="ShowGraphic?next.gif" border=0 alt="Forward"></a>)");
    EXPECT_EQ(Filled(page, "PIC_NAV_RIGHT"), R"(<font class="lblPictureNav">Display Time:</font>&nbsp;)"
                                             R"(<a target="_top" href="ShowAlbum?1&slideshow&2&play&2&2&d'or&">)"
                                             R"(<img src="ShowGraphic?time2.gif" border=0 alt="2 secs"></a>)"
                                             R"(<a target="_top" href="ShowAlbum?1&slideshow&2&play&2&5&d'or&">)"
                                             R"(<img src="ShowGraphic?time5.gif" border=0 alt="5 secs"></a>)"
                                             R"(<img src="ShowGraphic?time10on.gif" alt="10 secs">)"
                                             R"(<a target="_top" href="ShowAlbum?1&slideshow&2&play&2&15&d'or&">)"
                                             R"(<img src="ShowGraphic?time15.gif" border=0 alt="15 secs"></a>)");

    const std::string paused = Page({"1", "slideshow", "1", "pause", "1", "7", "d'or"});
    EXPECT_EQ(Filled(paused, "PIC_LIST"), cell + R"(<a href="ShowDetails?1&count&/d'or/b_c.avi">)"
                                                 R"(<img src="ShowGraphic?movie.gif" border=0><br>b c</a>)"
                                                 "</font></td></tr>\r\n\r\n</table>");
    EXPECT_TRUE(Contains(Filled(paused, "PIC_NAV_LEFT"), R"(<a href="ShowAlbumMedia?1&slideshow&1&play&1&7&d'or&">)"
                                                         R"(<img src="ShowGraphic?play.gif" border=0 alt="Play"></a>)"
                                                         R"(&nbsp;<img src="ShowGraphic?pausehigh.gif" alt="Pause">)"
                                                         R"(<a href="ShowAlbumMedia?1&slideshow&1&pause&2&7&d'or&">)"));
    EXPECT_EQ(Filled(paused, "PIC_NAV_RIGHT"), "");
}

TEST_F(ShowAlbumMediaTest, WrapsTheShowAndMendsItsFigures) {
    AddFiles(AddAlbum("A"), 5);
    const auto show = [&](const std::string &index, const std::string &seconds) {
        const std::string page = Page({"1", "slideshow", "1", "pause", index, seconds});
        const std::string controls = Filled(page, "PIC_NAV_LEFT");
        const std::vector<std::string> links = Links(controls);
        return Filled(page, "PIC_PAGE").substr(28, 11) + " " + links.front() + " " + links[links.size() - 2];
    };
    const std::string to = "ShowAlbumMedia?1&slideshow&1&pause&";
    EXPECT_EQ(show("0", "5"), "File 1 of 5 " + to + "4&5& " + to + "1&5&");
    EXPECT_EQ(show("4", "0"), "File 5 of 5 " + to + "3&5& " + to + "0&5&");
    EXPECT_EQ(show("99", "-3"), "File 1 of 5 " + to + "4&5& " + to + "1&5&");
    EXPECT_EQ(show("-1", "86400"), "File 1 of 5 " + to + "4&86400& " + to + "1&86400&");
}

TEST_F(ShowAlbumMediaTest, CarriesAnyNameThroughItsLinks) {
    const clsAlbum &album = AddAlbum("A");
    const std::string directory = "R&B + 50% #1 O'Brien d\xC3\xA9j\xC3\xA0";
    const std::string stem = "a & b+c #1 100%25 off's \xC3\xA9";
    AddFile(album, directory + "/sub dir/deep.jpg");
    EXPECT_TRUE(Contains(Follow(LinkTo(List({"1", "thumbs", "1"}), "ShowAlbum?")), "sub dir</a>"));
    AddFile(album, directory + "/" + stem + ".bmp", BitmapFile(20, 10));
    AddFile(album, directory + "/" + stem + ".mpg", "movie");

    const std::string root = List({"1", "thumbs", "1"});
    EXPECT_TRUE(Contains(root, " " + directory + "</a>"));
    for (const std::string view : {"thumbs&1&", "list&1&", "slideshow&1&play&0&5&"}) {
        SCOPED_TRACE(view);
        const std::string names = LinkTo(root, "ShowAlbum?1&thumbs&1&").substr(21);
        const std::string page = Follow("ShowAlbumMedia?1&" + view + names);
        EXPECT_EQ(Filled(page, "DIR_TITLE"), directory);
        EXPECT_TRUE(Contains(page, stem + "</")) << page;
        for (const std::string &link : Links(page)) {
            if (link.starts_with("ShowGraphic")) continue;
            const std::string answer = Follow(link);
            EXPECT_TRUE(answer.starts_with("HTTP/1.0 200 OK")) << link << "\n" << answer;
            if (link.starts_with("ShowAlbum")) {
                EXPECT_TRUE(Contains(answer, stem)) << link;
            }
            if (link.starts_with("ShowDetails")) {
                EXPECT_TRUE(Contains(answer, stem + "</font>")) << answer;
            }
            if (link.starts_with("ShowPicture")) {
                EXPECT_TRUE(Body(answer).starts_with("\xFF\xD8")) << link;
            }
        }
    }
}

TEST_F(ShowAlbumMediaTest, BooksItsKilobytesUnderTheAlbum) {
    const clsAlbum &album = AddAlbum("A");
    AddFiles(album, 12);
    const std::string first = Page({"1", "thumbs", "1"});
    const auto kilobytes = static_cast<double>(Body(first).size() / 1024);
    EXPECT_GT(kilobytes, 1);
    EXPECT_EQ(gBandwidthSession, kilobytes);
    Page({"1", "thumbs", "1"});
    EXPECT_EQ(Column("StatsDaily", "AlbumName") + " " + Column("StatsDaily", "Bandwidth"),
              "A " + std::to_string(1 + static_cast<int>(kilobytes)));
}

}  // namespace
}  // namespace pixmora::test
