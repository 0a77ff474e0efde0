// Tests of the frameset and of the counting of visits.
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

class ShowAlbumTest : public PageSite {
protected:
    std::string Page(const Arguments &args, const std::string &user = "", const std::string &from = "127.0.0.1") {
        return Get("ShowAlbum?" + Join(args, "&"), user, from);
    }
    std::string Visits() { return Column("PopularDirs", "DirPath") + " " + Column("PopularDirs", "DirCount"); }
};

TEST_F(ShowAlbumTest, TellsEachFrameWhatToShow) {
    AddAlbum("A");
    const std::tuple<const char *, Arguments, const char *, const char *, const char *> cases[] = {
        // name, arguments, media frame, its arguments, those of the tree
        {"album",
         {"1", "thumbs", "2", "a b", "R<amp>and<amp>B"},
         "ShowAlbumMedia",
         "?1&thumbs&2&a%20b&R<amp>and<amp>B&",
         "1&thumbs&2&a%20b&R<amp>and<amp>B&"},
        {"slide show",
         {"1", "slideshow", "1", "play", "0", "5", "a"},
         "ShowAlbumMedia",
         "?1&slideshow&1&play&0&5&a&",
         "1&slideshow&1&play&0&5&a&"},
        {"details",
         {"ShowDetails", "1", "count", "/a b/c.jpg"},
         "ShowDetails",
         "?1&count&/a%20b/c.jpg&",
         "ShowDetails&1&count&/a%20b/c.jpg&"},
        {"login", {"ShowLogin", "9", "thumbs", "1"}, "ShowLogin", "?9&thumbs&1&", "ShowLogin&9&thumbs&1&"},
        {"popular", {"ShowPopular", "list"}, "ShowPopular", "?list&", "ShowPopular&list&"},
        {"popular without a view", {"ShowPopular"}, "ShowPopular", "?", "ShowPopular&"},
        {"statistics", {"ShowStats"}, "ShowStats", "", "ShowStats&"},
        {"help", {"ShowHelp"}, "ShowHelp", "", "ShowHelp&"},
    };
    for (const auto &[name, args, mediaFrame, mediaArgs, dirArgs] : cases) {
        const std::string page = Page(args);
        EXPECT_EQ(Filled(page, "SERVER_TITLE"), "Anna's Site") << name;
        EXPECT_EQ(Filled(page, "MEDIA_FRAME"), mediaFrame) << name;
        EXPECT_EQ(Filled(page, "MEDIA_ARGS"), mediaArgs) << name;
        EXPECT_EQ(Filled(page, "DIR_ARGS"), dirArgs) << name;
    }
}

TEST_F(ShowAlbumTest, CountsADirectoryOnceForEachVisitorWhateverTheView) {
    AddAlbum("A");
    Page({"1", "thumbs", "1", "O'Brien", "a b"});
    Page({"1", "list", "2", "O'Brien", "a b"});
    Page({"1", "slideshow", "1", "play", "0", "5", "O'Brien", "", "a b"});
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b 1");
    Page({"1", "thumbs", "1", "O'Brien", "a b"}, "", "127.0.0.2");
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b 2");
    Page({"1", "slideshow", "1", "play", "0", "5"});
    Page({"1", "thumbs", "1"});
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b|\\ 2|1");
    EXPECT_EQ(gDownloadCookies.size(), 3U);
    gDownloadCookies.clear();
    Page({"1", "thumbs", "1"});
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b|\\ 2|2");
}

TEST_F(ShowAlbumTest, CountsAProtectedDirectoryOnlyForThoseWhoMaySeeIt) {
    const clsAlbum &album = AddAlbum("A");
    Protect(album, "\\O%34Brien", "bob");
    AddUser("bob", false);
    AddUser("eve", false);
    AddUser("carol", true);
    const Arguments brien = {"1", "thumbs", "1", "O'Brien"};
    const Arguments word = {"1", "thumbs", "1", "Private Stuff"};
    for (const Arguments &args : {brien, word, {"1", "thumbs", "1", "O'Brien", "below"}}) {
        for (const char *user : {"", "eve", "gone"})
            EXPECT_EQ(Filled(Page(args, user), "MEDIA_FRAME"), "ShowAlbumMedia");
    }
    Page({"1", "thumbs", "1", "O'Brien", "below"}, "bob");
    Page({"1", "thumbs", "1", "x", "..", "O'Brien"});
    Page({"1", "thumbs", "1", "./O'Brien"});
    Page(word, "bob");
    EXPECT_EQ(Visits(), " ");
    Page(brien, "bob");
    EXPECT_EQ(Visits(), "\\O%39Brien 1");
    Page(word, "carol");
    EXPECT_EQ(Visits(), "\\O%39Brien|\\Private Stuff 1|1");
}

}  // namespace
}  // namespace pixmora::test
