// Tests of the counting of visits.
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
