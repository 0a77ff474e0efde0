// Tests of an album's pages: the frameset's counting of visits, and the media.
#include "core/site/RequestGrammar.h"
#include "pages/PageTest.h"
#include "support/Pictures.h"

namespace pixmora::test {
namespace {

class ShowAlbumTest : public PageTest {
protected:
    static std::string Visits() { return Ask("SELECT DirPath, DirCount FROM PopularDirs"); }
};

TEST_F(ShowAlbumTest, CountsADirectoryOnceForEachVisitorWhateverTheView) {
    StartAlbum();
    for (const char *args :
         {"1&thumbs&1&O'Brien&a%20b", "1&list&2&O'Brien&a%20b", "1&slideshow&1&play&0&5&O'Brien&&a%20b"})
        Get(Concat("/ShowAlbum?", args));
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b|1\n");
    Get("/ShowAlbum?1&thumbs&1&O'Brien&a%20b", "", "127.0.0.2");
    Get("/ShowAlbum?1&slideshow&1&play&0&5");
    Get("/ShowAlbum?1&thumbs&1");
    EXPECT_EQ(Visits(), "\\O%39Brien\\a b|2\n\\|1\n");
}

TEST_F(ShowAlbumTest, CountsAProtectedDirectoryOnlyForThoseWhoMaySeeIt) {
    for (const char *user : {"bob", "eve", "carol"}) SaveUser({user, "p", "p", user == std::string("carol")}, "");
    AddRight("A", "\\O'Brien", "bob");
    StartAlbum();
    const auto visit = [this](const std::string &args, const std::string &user) {
        const std::string page = Get("/ShowAlbum?1&thumbs&1&" + args, LoggedIn(user));
        ExpectParts(page, {"src=\"ShowAlbumMedia?"});
        return Visits();
    };
    for (const char *user : {"", "eve", "gone"})
        for (const char *args : {"O'Brien", "Private%20Stuff", "O'Brien&below"}) EXPECT_EQ(visit(args, user), "");
    for (const char *args : {"O'Brien&below", "x&..&O'Brien", "./O'Brien", "Private%20Stuff"})
        EXPECT_EQ(visit(args, "bob"), "") << args;
    EXPECT_EQ(visit("O'Brien", "bob"), "\\O%39Brien|1\n");
    EXPECT_EQ(visit("Private%20Stuff", "carol"), "\\O%39Brien|1\n\\Private Stuff|1\n");
}

TEST_F(ShowAlbumTest, MayShowAllFilesOnOnePageAndNoSubdirectories) {
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg", "sub/x.jpg"}) AddFile(name);
    clsAlbum &album = StartAlbum();
    gFilesPerPage = 0;
    const std::string page = Get("/ShowAlbumMedia?1&thumbs&0");
    EXPECT_EQ(Count(page, "id=\"pic_"), 4);
    EXPECT_EQ(Count(page, "<tr>\r\n"), 2);
    ExpectParts(page, {"Page 0 of 1"});
    gFilesPerPage = 4;
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1"), {"!next.gif"});
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1&sub"), {"/x.jpg"});
    album.SubDirectories = 0;
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1&gone"), {"No files here.<"});
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1"), {"/a.jpg"});
    gFilesPerRow = 0;
    EXPECT_EQ(Get("/ShowAlbumMedia?1&thumbs&1"), "Bad Request");
}

TEST_F(ShowAlbumTest, CarriesAnyNameThroughItsLinks) {
    const std::string directory = "R&B + 50% #1 O'Brien d\xC3\xA9j\xC3\xA0 <amp>and<amp>";
    const std::string stem = "a & b+c #1 100%25 off's *\"<\xE9>";
    AddFile(directory + "/" + stem + ".bmp", BitmapFile(20, 10));
    AddFile(directory + "/" + stem + ".mpg", "movie");
    StartAlbum();
    int followed = 0;
    for (const char *view : {"thumbs&1&", "list&1&", "slideshow&1&play&0&5&"}) {
        const std::string page = Get(Concat("/ShowAlbumMedia?1&", view, EncodeLinkPart(directory)));
        ExpectParts(page, {">" + directory + "<"});
        for (const auto &[operation, answer] :
             {std::pair<std::string, std::string>{"ShowPicture?", "\r\n\r\n\xFF\xD8"}, {"ShowDetails?", stem + "</"}}) {
            const std::vector<std::string> pieces = Split(page, "\"" + operation);
            for (std::size_t i = 1; i < pieces.size(); ++i, ++followed)
                ExpectParts(Get("/" + operation + pieces[i].substr(0, pieces[i].find('"'))), {answer});
        }
    }
    EXPECT_EQ(followed, 7);
}

}  // namespace
}  // namespace pixmora::test
