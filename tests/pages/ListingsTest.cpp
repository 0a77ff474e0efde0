// Tests of the walks over an album's directories, and of what an address may reach.
#include "pages/Listings.h"

#include <gtest/gtest.h>

#include "pages/AlbumAddress.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class ListingsTest : public SiteFixture {
protected:
    std::string Files(const clsAlbum &album) { return Join(ListMediaFiles(album.ID, album.Directory), "|"); }
    std::string SubDirs(const clsAlbum &album, std::string_view directory = "\\") {
        std::vector<std::string> names;
        for (const SubDirectory &subDir : ListSubDirs(album.ID, directory))
            names.push_back(subDir.Name + (subDir.IsNew ? "!" : ""));
        return Join(names, "|");
    }
    /// Makes a directory that was last written so many days ago, at the same time of day.
    void AddAgedDirectory(const clsAlbum &album, const std::string &name, int days) {
        AddDirectory(album, name);
        const std::chrono::sys_seconds written(AddDays(Now(), -days).time_since_epoch());
        std::filesystem::last_write_time(SystemPath(album.Directory + "\\" + name),
                                         std::chrono::file_clock::from_sys(written));
    }
};

TEST_F(ListingsTest, ListsWhatTheAlbumShowsInTheDisksOrder) {
    clsAlbum &album = AddAlbum("A");
    for (const char *name : {"b.JPG", "a.mpeg", "Z.gif", "c.jpeg", "d.txt", "e.Mov", "a b+&#%'.bmp"})
        AddFile(album, name);
    AddDirectory(album, "folder.jpg");
    EXPECT_EQ(Files(album), "Z.gif|a b+&#%'.bmp|a.mpeg|b.JPG|e.Mov");
    album.ShowMovies = 0;
    EXPECT_EQ(Files(album), "Z.gif|a b+&#%'.bmp|b.JPG");
    album.ShowPictures = 0;
    album.ShowMovies = 1;
    EXPECT_EQ(Files(album), "a.mpeg|e.Mov");
    EXPECT_TRUE(ListMediaFiles(1, album.Directory + "\\nowhere").empty());
    EXPECT_THROW(ListMediaFiles(2, album.Directory), RunTimeError);
}

TEST_F(ListingsTest, SortsSubdirectoriesAsTheOwnerWants) {
    clsAlbum &album = AddAlbum("A");
    AddAgedDirectory(album, "beta", 20);
    AddAgedDirectory(album, "Alpha", 14);
    AddAgedDirectory(album, "alpha 2", 400);
    AddAgedDirectory(album, "O'Neil", 13);
    AddDirectory(album, ".hidden");
    AddFile(album, "file.jpg");
    // The form of the top level's stored places, and of those further down, which the lookup never meets.
    for (const auto &[directory, place] : {std::pair{"\\\\beta", 1}, {"\\\\O%34Neil", 2}, {"\\\\Alpha", 3}})
        AddRow("DBOrder", {{"AlbumName", "A"}, {"SubDir", directory}, {"SeqPos", std::int64_t{place}}});

    struct SortCase {
        const char *Name;
        int Method;
        int Order;
        std::string Expected;
    };
    const SortCase cases[] = {
        {"by link form, whatever the case", 0, 0, "Alpha|alpha 2|beta|O'Neil!"},
        {"by name, down", 0, 1, "O'Neil!|beta|alpha 2|Alpha"},
        {"by date", 1, 0, "alpha 2|beta|Alpha|O'Neil!"},
        {"by date, down", 1, 1, "O'Neil!|Alpha|beta|alpha 2"},
        {"own order, the unplaced first", 2, 0, "alpha 2|beta|O'Neil!|Alpha"},
        {"own order, down", 2, 1, "Alpha|O'Neil!|beta|alpha 2"},
    };
    for (const SortCase &test : cases) {
        SCOPED_TRACE(test.Name);
        gSortMethod = test.Method;
        gSortOrder = test.Order;
        EXPECT_EQ(SubDirs(album), test.Expected);
    }
    album.SubDirectories = 0;
    EXPECT_EQ(SubDirs(album), "");
}

TEST_F(ListingsTest, KeepsTheDisksOrderOfDirectoriesWithoutAPlace) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"top/c", "top/B", "top/a"}) AddAgedDirectory(album, name, 50);
    AddRow("DBOrder", {{"AlbumName", "A"}, {"SubDir", "\\top\\c"}, {"SeqPos", std::int64_t{0}}});
    gSortMethod = 2;
    EXPECT_EQ(SubDirs(album, "\\top\\"), "B|a|c");
}

TEST_F(ListingsTest, CountsWhatLiesRightInADirectory) {
    const clsAlbum &album = AddAlbum("A");
    for (const char *name : {"a.jpg", "b.GIF", "c.avi", "d.txt", "sub/e.jpg"}) AddFile(album, name);
    AddDirectory(album, ".hidden");
    const DirContents contents = CountDirContents(album.Directory);
    EXPECT_EQ(contents.SubDirs, 1);
    EXPECT_EQ(contents.Pictures, 2);
    EXPECT_EQ(contents.Movies, 1);
    const DirContents none = CountDirContents(album.Directory + "\\nowhere");
    EXPECT_EQ(none.SubDirs + none.Pictures + none.Movies, 0);
}

TEST(VisitorFilePath, StaysInsideTheAlbumAndHasOneSpelling) {
    struct PathCase {
        const char *Name;
        std::string Link;
        std::string Expected;
    };
    const PathCase cases[] = {
        {"root", "/a.jpg", "C\\a.jpg"},
        {"encoded", "/a%20b/R<amp>and<amp>B<plus>and<plus>1<pound>num<pound>.jpg", "C\\a b\\R&B+1#.jpg"},
        {"backslashes", "\\a\\b.jpg", "C\\a\\b.jpg"},
        {"parent", "/../a.jpg", ""},
        {"parent, escaped twice", "/%252e%252e/a.jpg", ""},
        {"parent between encoded separators", "/x%5C..%2Fa.jpg", ""},
        {"dots in a name", "/..a../b..jpg", "C\\..a..\\b..jpg"},
        {"NUL", std::string("/a\0.jpg", 7), ""},
        {"NUL, escaped", "/a%00.jpg", ""},
        {"neighbour of the album", "aunt/a.jpg", ""},
        {"directory", "/a/", ""},
        {"nothing", "", ""},
        {"second spelling", "//./a//./b.jpg", "C\\a\\b.jpg"},
    };
    for (const PathCase &test : cases) EXPECT_EQ(VisitorFilePath("C", test.Link), test.Expected) << test.Name;
}

TEST(AlbumAddress, ReadsTheDirectoryInEachForm) {
    struct AddressCase {
        const char *Name;
        Arguments Args;
        std::string Path;
        std::string RelativePath;
        std::string LinkArguments;
        std::string LastName;
        bool IsUsable = true;
    };
    const AddressCase cases[] = {
        {"root", {"1", "thumbs", "7"}, "\\", "", "", "7"},
        {"root of a show", {"1", "slideshow", "1", "play", "0", "5"}, "\\", "", "", "5"},
        {"number alone", {"1"}, "\\", "", "", "1"},
        {"two levels",
         {"1", "list", "1", "a b", "R<amp>and<amp>B's"},
         "\\a b\\R&B's",
         "a b\\R&B's\\",
         "a%20b&R<amp>and<amp>B's&",
         "R&B's"},
        {"show", {"1", "slideshow", "1", "play", "0", "5", "x"}, "\\x", "x\\", "x&", "x"},
        {"empty names", {"1", "list", "1", "", "Censored", ""}, "\\Censored", "Censored\\", "Censored&", "Censored"},
        {"parent", {"1", "list", "1", ".."}, "\\..", "..\\", "..&", "..", false},
        {"same directory", {"1", "list", "1", ".", "x"}, "\\.\\x", ".\\x\\", ".&x&", "x", false},
        {"separator", {"1", "list", "1", "a%5Cb"}, "\\a\\b", "a\\b\\", "a\\b&", "a\\b", false},
        {"NUL",
         {"1", "list", "1", "%00"},
         std::string("\\\0", 2),
         std::string("\0\\", 2),
         std::string("\0&", 2),
         std::string(1, '\0'),
         false},
    };
    for (const AddressCase &test : cases) {
        SCOPED_TRACE(test.Name);
        const AlbumDirectory directory = ReadAlbumDirectory(test.Args);
        EXPECT_EQ(directory.Path, test.Path);
        EXPECT_EQ(directory.RelativePath, test.RelativePath);
        EXPECT_EQ(directory.LinkArguments, test.LinkArguments);
        EXPECT_EQ(directory.LastName, test.LastName);
        EXPECT_EQ(directory.IsUsable, test.IsUsable);
    }
}

TEST_F(ListingsTest, NamesDirectoriesForTheirTitle) {
    AddAlbum("A");
    for (const auto &[name, title] : {std::pair{"", "A"}, {"a b", "a b"}, {"/", "A"}, {"/a/b c/", "b c"}, {"/a", "a"}})
        EXPECT_EQ(DirDisplayTitle(1, name), title) << name;
}

}  // namespace
}  // namespace pixmora::test
