// Tests of the media page.
#include "platform/runtime/Text.h"
#include "support/PageSite.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowAlbumMediaTest : public PageSite {
protected:
    std::string List(const std::string &args, const std::string &user = "") {
        return Filled(Get("ShowAlbumMedia?" + args, user), "PIC_LIST");
    }
    void AddFiles(int count) {
        const clsAlbum &album = AddAlbum("A");
        for (int i = 0; i < count; ++i) AddFile(album, Concat("f", 100 + i, ".jpg"));
    }
    static std::string LinksOf(const std::string &page, const char *part) {
        return Replace(Join(Links(Filled(page, part)), " "), "ShowAlbumMedia?1&", "");
    }
};

TEST_F(ShowAlbumMediaTest, ShowsPicturesAndMovies) {
    const clsAlbum &album = AddAlbum("A");
    AddFile(album, "my_dogs/at_sea.v2.jpg");
    AddFile(album, "my_dogs/run.avi", std::string(1331, 'x'));
    const std::string page = Get("ShowAlbumMedia?1&thumbs&1&my_dogs", "Anna");
    EXPECT_EQ(Filled(page, "DIR_TITLE") + Filled(page, "LOGIN_NAME"), "my_dogsUser: Anna");
    const std::string list = Filled(page, "PIC_LIST");
    EXPECT_TRUE(Contains(list, R"(<a href="ShowDetails?1&count&/my_dogs/at_sea.v2.jpg"><img src="ShowPicture?1&thumb&)"
                               R"(/my_dogs/at_sea.v2.jpg" border=0 width="150"><br>at sea.v2</a></font>)"));
    EXPECT_TRUE(Contains(list, "<img src=\"ShowGraphic?movie.gif\" border=0><br><br>run</a><br><br>(1.29 KB)</font>"));
    EXPECT_EQ(LinksOf(page, "PIC_VIEW"), "ShowAlbum?1&list&1&my_dogs& ShowAlbum?1&slideshow&1&play&0&5&my_dogs&");
    EXPECT_EQ(gBandwidthSession, static_cast<double>(Body(page).size() / 1024));
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), "A");
    EXPECT_TRUE(List("1&list&1&my_dogs").ends_with("1.29 KB</font></td></tr>\r\n\r\n</tr>\r\n</table>"));
}

TEST_F(ShowAlbumMediaTest, CountsThePagesFromTheLastIndex) {
    AddFiles(9);
    const std::tuple<const char *, int, const char *> cases[] = {
        {"1", 4, "4 cells, 2 rows, Page 1 of 3: , thumbs&2& thumbs&2&"},
        {"2", 4, "4 cells, 2 rows, Page 2 of 3: thumbs&1& thumbs&1&, "},  // no way on to a lone last file
        {"3", 4, "1 cells, 1 rows, Page 3 of 3: thumbs&1& thumbs&2&, "},
        {"4", 4, "0 cells, 0 rows, Page 4 of 3: thumbs&1& thumbs&3&, "},
        {"1", 5, "5 cells, 2 rows, Page 1 of 2: , thumbs&2& thumbs&2&"},
        {"1", 0, "9 cells, 3 rows, Page 1 of 1: , "},
        {"0", 0, "9 cells, 3 rows, Page 0 of 1: thumbs&1& thumbs&-1&, "},
    };
    for (const auto &[number, filesPerPage, expected] : cases) {
        gFilesPerPage = filesPerPage;
        const std::string page = Get(Concat("ShowAlbumMedia?1&thumbs&", number));
        const std::string list = Filled(page, "PIC_LIST");
        EXPECT_EQ(Count(list, "<tr>\r\n"), Count(list, "</tr>\r\n"));
        EXPECT_EQ(Concat(Count(list, "id=\"pic_"), " cells, ", Count(list, "<tr>\r\n"), " rows, ",
                         Filled(page, "PIC_PAGE").substr(28, 11), ": ", LinksOf(page, "PIC_NAV_LEFT"), ", ",
                         LinksOf(page, "PIC_NAV_RIGHT")),
                  expected);
    }
    gFilesPerRow = 0;
    EXPECT_EQ(Get("ShowAlbumMedia?1&thumbs&1"), "Bad Request");
}

TEST_F(ShowAlbumMediaTest, ShowsTheWayDownWhereThereAreNoFiles) {
    clsAlbum &album = AddAlbum("A");
    const std::string nothing = R"(<font class="lblPictureNav">No files here.</font>)";
    EXPECT_EQ(List("1&thumbs&0"), nothing);
    AddFile(album, "a b/c/x.jpg");
    const std::string page = Get("ShowAlbumMedia?1&slideshow&3&play&0&5&a b");
    EXPECT_EQ(LinksOf(page, "PIC_LIST"), "ShowAlbum?1&slideshow&1&play&0&5&a%20b&c");
    EXPECT_EQ(LinksOf(Get("ShowAlbumMedia?1&slideshow&3"), "PIC_LIST"), "ShowAlbum?1&slideshow&1&play&0&5&a%20b");
    EXPECT_TRUE(
        Filled(page, "PIC_LIST").ends_with("> c</a>&nbsp;<img src=\"ShowGraphic?new.gif\"></td></tr>\r\n\r\n</table>"));
    EXPECT_EQ(Filled(page, "PIC_PAGE") + Filled(page, "PIC_NAV_LEFT") + Filled(page, "PIC_NAV_RIGHT"), "");
    EXPECT_TRUE(Contains(Filled(page, "PIC_VIEW"), "View As:"));
    for (const char *args : {"1&thumbs&1&nowhere", "1&thumbs&1&..", "1&thumbs&1&.&a b&c"})
        EXPECT_EQ(List(args), nothing);
    // Without subdirectories the files below the root are out of reach, those in it are not.
    AddFile(album, "r.jpg");
    album.SubDirectories = 0;
    EXPECT_EQ(List("1&thumbs&1&a b&c"), nothing);
    EXPECT_TRUE(Contains(List("1&thumbs&1"), "/r.jpg"));
}

TEST_F(ShowAlbumMediaTest, KeepsProtectedDirectoriesClosed) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"O'Brien/x.jpg", "O'Brien/sub/x.jpg", "Private Stuff/x.jpg", "open/x.jpg"})
        AddFile(album, name);
    AddUser("Guest", false);
    AddUser("Chief", true);
    Protect(album, "\\O%34Brien", "Guest");
    const std::string noRight = "(Login is correct but you do not have permission to view this directory!)";
    const std::tuple<const char *, const char *, std::string> cases[] = {
        // user, directory, word or (login message)
        {"", "open", "count"},
        {"", "O'Brien", "()"},
        {"", "&O'Brien", "()"},
        {"Guest", "O'Brien", "nocount"},
        {"Guest", "O'Brien&sub", noRight},
        {"Chief", "O'Brien&sub", "nocount"},
        {"Ghost", "O'Brien", "(You are logged in as an invalid user!)"},
        {"Guest", "Private Stuff", noRight},
        {"", "Private Stuff&&", "()"},
    };
    for (const auto &[user, directory, expected] : cases) {
        const std::string page = Get(Concat("ShowAlbumMedia?1&thumbs&1&", directory), user);
        const bool isOpen = expected[0] != '(';
        EXPECT_EQ(isOpen, Contains(page, Concat("ShowDetails?1&", expected, "&"))) << user << directory;
        if (!isOpen) {
            EXPECT_EQ("(" + Filled(page, "MESSAGE_TO_VISITOR") + ")", expected) << user << directory;
        }
    }
    // Listings show a protected directory to administrators only.
    EXPECT_EQ(Count(List("1&list&1", "Guest"), "folderclosed16"), 1);
    EXPECT_EQ(Count(List("1&list&1", "Chief"), "folderclosed16"), 3);
}

TEST_F(ShowAlbumMediaTest, ShowsOneFileAtATimeAndWraps) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"d'or/a.jpg", "d'or/b_c.avi", "d'or/d.gif"}) AddFile(album, name);
    const std::string page = Get("ShowAlbumMedia?1&slideshow&2&play&2&10&d'or");
    EXPECT_TRUE(Contains(Filled(page, "PIC_LIST"), R"(<img src="ShowPicture?1&slideshow&/d'or/d.gif" border=0 )"
                                                   R"(onload="self.setTimeout('NextPic()', 10000);"><br>d</a>)"));
    EXPECT_EQ(Filled(page, "PIC_PAGE"), R"(<font class="lblPictureNav">File 3 of 3</font><br>)");
    EXPECT_EQ(LinksOf(page, "PIC_NAV_LEFT"),
              "slideshow&2&play&1&10&d'or& slideshow&2&pause&2&10&d'or& slideshow&2&play&0&10&d'or& "
              "slideshow&2&play&0&10&d'or&");
    EXPECT_TRUE(Contains(page, "location.href='ShowAlbumMedia?1&slideshow&2&play&0&10&d\\'or&';\r\n}\r\n</script>"));
    EXPECT_EQ(Replace(LinksOf(page, "PIC_NAV_RIGHT"), "ShowAlbum?1&slideshow&2&play&2&", ""),
              "2&d'or& 5&d'or& 15&d'or&");

    const auto paused = [&](const std::string &figures) {
        const std::string waiting = Get("ShowAlbumMedia?1&slideshow&1&pause&" + figures + "&d'or");
        return Filled(waiting, "PIC_PAGE").substr(28, 11) + " " +
               Replace(Replace(LinksOf(waiting, "PIC_NAV_LEFT"), "slideshow&1&", ""), "&d'or&", "");
    };
    EXPECT_EQ(paused("0&5"), "File 1 of 3 pause&2&5 play&0&5 pause&1&5");
    EXPECT_EQ(paused("2&0"), "File 3 of 3 pause&1&5 play&2&5 pause&0&5");
    EXPECT_EQ(paused("99&-3"), "File 1 of 3 pause&2&5 play&0&5 pause&1&5");
    EXPECT_EQ(paused("-1&7"), "File 1 of 3 pause&2&7 play&0&7 pause&1&7");
    EXPECT_EQ(Filled(Get("ShowAlbumMedia?1&slideshow&1&play&1&7&d'or"), "PIC_NAV_RIGHT"), "");
}

TEST_F(ShowAlbumMediaTest, CarriesAnyNameThroughItsLinks) {
    const clsAlbum &album = AddAlbum("A");
    const std::string directory = "R&B + 50% #1 O'Brien d\xC3\xA9j\xC3\xA0 <amp>and<amp>";
    const std::string stem = "a & b+c #1 100%25 off's *\"<\xE9>";
    AddFile(album, directory + "/sub dir/deep.jpg");
    const auto framed = [](const std::string &link) {
        return Replace(link, "ShowAlbum?", "ShowAlbumMedia?");
    };
    const std::string way = framed(Links(List("1&thumbs&1"))[0]);
    EXPECT_TRUE(Contains(Get(way), "sub dir</a>"));
    AddFile(album, directory + "/" + stem + ".bmp", BitmapFile(20, 10));
    AddFile(album, directory + "/" + stem + ".mpg", "movie");
    for (const char *view : {"&thumbs&1&", "&list&1&", "&slideshow&1&play&0&5&"}) {
        const std::string page = Get(Replace(way, "&thumbs&1&", view));
        EXPECT_EQ(Filled(page, "DIR_TITLE"), directory);
        for (const std::string &link : Links(page)) {
            const bool isPicture = link.starts_with("ShowPicture");
            EXPECT_TRUE(Contains(Get(framed(link)), isPicture ? "\r\n\r\n\xFF\xD8" : stem + "</")) << link;
        }
    }
}

}  // namespace
}  // namespace pixmora::test
