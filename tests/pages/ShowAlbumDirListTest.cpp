// Tests of the tree frame.
#include <gmock/gmock.h>

#include "platform/runtime/Numbers.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string cell = R"(<tr><td height="20" class="lblFolder" nowrap>)";
const std::string blank = R"(<img src="ShowGraphic?blank16.gif">)";
const std::string folder = R"(<img src="ShowGraphic?folderclosed16.gif" align="absmiddle" border=0> )";

class ShowAlbumDirListTest : public PageSite {
protected:
    ShowAlbumDirListTest() {
        AddAlbum("A").Description = "First";
        for (const char *path : {"b/one.jpg", "b/two.GIF", "b/film.mpeg", "b/c/x.jpg", "b/notes.txt", "d/x.jpg"})
            AddFile(*gAlbums[0], path);
        AddDirectory(*gAlbums[0], "b/.hidden");
        AddAlbum("Z");
        MakeOld();
    }
    /// Long before the clock's day, so that nothing is new.
    void MakeOld() const {
        using namespace std::filesystem;
        const auto old = file_time_type::clock::now() - std::chrono::hours(24 * 365 * 40);
        for (const auto &entry : recursive_directory_iterator(Program.Path("albums"))) last_write_time(entry, old);
    }
    std::string Page(const Arguments &args, const std::string &user = "") {
        return Get("ShowAlbumDirList?" + Join(args, "&"), user);
    }
    std::string Tree(const Arguments &args, const std::string &user = "") {
        return Filled(Page(args, user), "DIR_LIST");
    }
    /// The names that the tree marks as selected, "|" between them.
    std::string Selected(const Arguments &args) {
        const std::string opening = "<font class=\"lblFolderSelected\">&nbsp;";
        std::vector<std::string> names;
        const std::string tree = Tree(args);
        for (std::size_t at = tree.find(opening); at != std::string::npos; at = tree.find(opening, at + 1)) {
            const std::size_t start = at + opening.size();
            names.push_back(tree.substr(start, tree.find("&nbsp;</font>", start) - start));
        }
        return Join(names, "|");
    }
};

TEST_F(ShowAlbumDirListTest, ShowsTheBranchThatLeadsToTheCurrentDirectory) {
    const std::string tree = Tree({"1", "list", "1", "b"});
    EXPECT_THAT(
        tree,
        HasSubstr(cell + blank + R"(<img src="ShowGraphic?album16.gif" align="absmiddle"> )" +
                  R"(<a href="ShowAlbum?1&list&1" title="Desc: First, Subdirectories: 2, Pictures: 0, )" +
                  R"(Movies: 0"><b>A</b></a></td></tr>)" + "\r\n\r\n" + cell + blank + blank +
                  R"(<a name="curdir"></a><a href="ShowAlbum?1&list&1&b" title="Subdirectories: 1, )" +
                  R"(Pictures: 2, Movies: 1">)" + folder +
                  R"(<font class="lblFolderSelected">&nbsp;b&nbsp;</font></a></a></td></tr>)" + "\r\n\r\n" + cell +
                  blank + blank + blank +
                  R"(<a href="ShowAlbum?1&list&1&b&c" title="Subdirectories: 0, Pictures: 1, Movies: 0">)" + folder +
                  "c</a></td></tr>\r\n\r\n" + cell + blank + blank + R"(<a href="ShowAlbum?1&list&1&d" title=)"));
    EXPECT_EQ(Count(tree, "new.gif"), 0);
    AddDirectory(*gAlbums[0], "e");
    EXPECT_THAT(Tree({"1", "list", "1"}), HasSubstr("> e</a>&nbsp;<img src=\"ShowGraphic?new.gif\"></td></tr>"));
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?ShowLogin&1&list&1&b&\">Login to Account</a></td></tr><tr>"));
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?ShowPopular&list\">Most Popular</a></td></tr><tr>"));
}

TEST_F(ShowAlbumDirListTest, MarksWhereTheVisitorIs) {
    const std::pair<Arguments, const char *> places[] = {
        {{"1", "thumbs", "3"}, "A"},
        {{"2", "thumbs", "1"}, "Z"},
        {{"1", "thumbs", "1", "b"}, "b"},
        {{"1", "thumbs", "1", "b", "c"}, "c"},
        {{"1", "thumbs", "1", "gone"}, ""},
        {{"2", "thumbs", "1", "b"}, ""},
        {{"1", "slideshow", "1", "play", "0", "5"}, "A"},
        {{"1", "slideshow", "1", "play", "0", "5", "b", "c"}, "c"},
        {{"ShowLogin", "1", "thumbs", "1", "b"}, "b"},
        {{"ShowLogout", "1", "slideshow", "1", "pause", "2", "5", "d"}, "d"},
        {{"ShowDetails", "1", "count", "/x.jpg"}, "A"},
        {{"ShowDetails", "1", "nocount", "/b/c/x.jpg"}, "c"},
        {{"ShowPopular", "list"}, "Most Popular"},
        {{"ShowPopular", "slideshow", "play", "0", "5"}, "Most Popular"},
        {{"ShowStats"}, "Statistics"},
        {{"ShowHelp"}, "Help"},
    };
    for (const auto &[args, name] : places) EXPECT_EQ(Selected(args), name) << Join(args, "&");
    gAlbums.clear();
    EXPECT_EQ(Selected({"ShowStats"}), "Statistics");
}

TEST_F(ShowAlbumDirListTest, GoesOnWithTheSlideShowInEveryLink) {
    const std::string tree = Tree({"1", "slideshow", "1", "pause", "3", "10", "b"});
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?ShowPopular&slideshow&play&0&5\">"));
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?2&slideshow&1&play&0&5&\" title=\"Desc: "));
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?1&slideshow&1&play&0&5&b&c\" title="));
    EXPECT_THAT(tree, HasSubstr("<a href=\"ShowAlbum?ShowLogin&1&slideshow&1&b&\">"));
}

TEST_F(ShowAlbumDirListTest, LinksEveryNameAndLeavesThoseWithABlankClosed) {
    for (const char *name : {"O'Brien/in", "50%/in", "a+b/in", "two words/in"}) AddDirectory(*gAlbums[0], name);
    EXPECT_THAT(Tree({"1", "thumbs", "1", "O'Brien"}), HasSubstr("&1&O'Brien&in\""));
    const std::string percent = Tree({"1", "thumbs", "1", EncodeLinkPart("50%")});
    EXPECT_THAT(percent, HasSubstr("&1&50<percent>num<percent>&in\""));
    EXPECT_THAT(percent, HasSubstr("&nbsp;50%&nbsp;</font>"));
    const std::string words = Tree({"1", "thumbs", "1", "two words"});
    EXPECT_THAT(words, HasSubstr("&1&two%20words\""));
    EXPECT_THAT(words, Not(HasSubstr("curdir")));
    EXPECT_THAT(words, HasSubstr("ShowLogin&1&thumbs&1&two words&\""));
    gAlbums[0]->SubDirectories = 0;
    EXPECT_THAT(Tree({"1", "thumbs", "1", "b"}), Not(HasSubstr("folderclosed16")));
}

TEST_F(ShowAlbumDirListTest, OpensAndMarksEveryNameWhosePercentsComeAsTheirToken) {
    for (const char *name : {"two words/a*b c/in", "50 off", "50%20off"}) AddDirectory(*gAlbums[0], name);
    const std::string token = "<percent>num<percent>20";
    const Arguments deep = {"1", "thumbs", "1", "two" + token + "words", "a<byte>2A<byte>b" + token + "c"};
    EXPECT_EQ(Selected(deep), "a*b c");
    const std::string tree = Tree(deep);
    EXPECT_THAT(tree, HasSubstr("&1&two%20words&a<byte>2A<byte>b%20c&in\""));
    EXPECT_THAT(tree, HasSubstr("ShowLogin&1&thumbs&1&two%20words&a<byte>2A<byte>b%20c&\""));
    EXPECT_EQ(Selected({"ShowDetails", "1", "count", "/two" + token + "words/x" + token + "y.jpg"}), "two words");
    EXPECT_EQ(Selected({"1", "thumbs", "1", "50" + token + "off"}), "50 off");
    EXPECT_EQ(Selected({"1", "thumbs", "1", "50<byte>25<byte>20off"}), "50%20off");
}

TEST_F(ShowAlbumDirListTest, HidesProtectedPlacesFromAllButAdministrators) {
    Protect(*gAlbums[0], "\\b", "bob");
    Protect(*gAlbums[0], "\\O%34Brien", "bob");
    Protect(*gAlbums[1], "\\", "bob");
    AddDirectory(*gAlbums[0], "Private");
    AddDirectory(*gAlbums[0], "O'Brien");
    AddUser("bob", false);
    AddUser("carol", true);
    for (const char *user : {"", "bob"}) {
        const std::string tree = Tree({"1", "thumbs", "1", "b"}, user);
        EXPECT_EQ(Count(tree, "folderclosed16"), 1) << user;
        EXPECT_THAT(tree, HasSubstr("> d</a>"));
        EXPECT_THAT(tree, Not(HasSubstr("<b>Z</b>")));
    }
    const std::string tree = Tree({"1", "thumbs", "1", "b"}, "carol");
    EXPECT_EQ(Count(tree, "folderclosed16"), 5);
    EXPECT_THAT(tree, HasSubstr("<b>Z</b>"));
    EXPECT_THAT(tree, HasSubstr(R"(<a href="ShowLogout" target="media">Logged in as carol</a>)"));
    EXPECT_THAT(tree, Not(HasSubstr("Login to Account")));
}

TEST_F(ShowAlbumDirListTest, BooksWholeKilobytesForTheAlbumButNothingUnderTheMostPopular) {
    const std::string page = Page({"2", "thumbs", "1"});
    EXPECT_EQ(Filled(page, "SERVER_TITLE_SLASH") + Filled(page, "AUTHOR_SLASH") + Filled(page, "SERVER_URL"),
              "Anna\\'s SiteAnna O\\'Neilhttp://192.0.2.1:8080");
    const auto kilobytes = static_cast<double>(Body(page).size() / 1024);
    EXPECT_GT(kilobytes, 0);
    EXPECT_EQ(gBandwidthSession, kilobytes);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), "Z");
    Page({"ShowPopular", "thumbs"});
    EXPECT_GT(gBandwidthSession, kilobytes);
    EXPECT_EQ(Column("StatsRecent", "StatValue"), NumberText(kilobytes));
}

}  // namespace
}  // namespace pixmora::test
