// Tests of the walks over an album's directories, and of what an address may reach.
#include "pages/Listings.h"

#include <chrono>
#include <filesystem>

#include "pages/AlbumAddress.h"
#include "pages/PageTest.h"
#include "store/MediaTypes.h"

namespace pixmora::test {
namespace {

class ListingsTest : public PageTest {
protected:
    static std::string Files() { return Join(ListMediaFiles(*gAlbums[0], gAlbums[0]->Directory), "|"); }
    static std::string SubDirs(std::string_view directory, int method, int order) {
        gSortMethod = method;
        gSortOrder = order;
        std::vector<std::string> names;
        for (const SubDirectory &subDir : ListSubDirs(*gAlbums[0], directory))
            names.push_back(subDir.Name + (subDir.IsNew ? "!" : ""));
        return Join(names, "|");
    }
};

TEST_F(ListingsTest, ListsWhatTheAlbumShowsAndTheOwnerTakesIn) {
    for (const char *name : {"b.JPG", "a.mpeg", "Z.gif", "c.jpeg", "c.png", "d.webp", "e.HEIC", "f.avif", "g.MP4",
                             "h.webm", "a b+&#%'.bmp", "folder.jpg/x", "i.mkv", "j.m4v", "k.heif", "l.tiff"})
        AddFile(name);
    clsAlbum &album = StartAlbum();
    EXPECT_EQ(Files(), "Z.gif|a b+&#%'.bmp|a.mpeg|b.JPG");
    album.ShowMovies = 0;
    EXPECT_EQ(Files(), "Z.gif|a b+&#%'.bmp|b.JPG");
    EXPECT_EQ(Get("/ShowPicture?1&full&/c.png"), "Not a Valid Picture!");
    EXPECT_TRUE(ListMediaFiles(album, album.Directory + "\\nowhere").empty());
    SaveSetting("Setup", "MoreTypes", "1");
    LoadMediaTypes();
    album.ShowMovies = 1;
    EXPECT_EQ(Files(),
              "Z.gif|a b+&#%'.bmp|a.mpeg|b.JPG|c.jpeg|c.png|d.webp|e.HEIC|f.avif|g.MP4|h.webm|i.mkv|j.m4v|k.heif");
    const std::pair<const char *, const char *> types[] = {
        {"Picture?1&full&/c.jpeg", "image/jpeg"}, {"Picture?1&full&/c.png", "image/png"},
        {"Picture?1&full&/d.webp", "image/webp"}, {"Picture?1&full&/e.HEIC", "image/heic"},
        {"Picture?1&full&/f.avif", "image/avif"}, {"Movie?1&full&/g.MP4", "video/mp4"},
        {"Movie?1&full&/h.webm", "video/webm"},   {"Movie?1&full&/a.mpeg", "application/octet-stream"}};
    for (const auto &[address, type] : types) ExpectParts(Get(Concat("/Show", address)), {type});
    for (const char *type : {"video/mp4", ""}) {
        ExpectParts(Get("/ShowDetails?1&nocount&/g.MP4"), {Concat("data-movie=\"", type, "\"")});
        SaveSetting("Setup", "MoreTypes", "0");
        LoadMediaTypes();
    }
}

TEST_F(ListingsTest, SortsSubdirectoriesAsTheOwnerWants) {
    for (const char *name : {"Alpha/c", "Alpha/B", ".hidden"}) Program.MakeFolder(std::string("albums/A/") + name);
    for (const auto &[name, days] : {std::pair{"beta", 20}, {"Alpha", 14}, {"alpha 2", 400}, {"O'Neil", 13}}) {
        const std::chrono::sys_seconds written(AddDays(Now(), -days).time_since_epoch());
        std::filesystem::last_write_time(Program.MakeFolder(std::string("albums/A/") + name),
                                         std::chrono::file_clock::from_sys(written));
    }
    clsAlbum &album = StartAlbum();
    // Places of the top level are looked up in the form that they are stored in; those further down are never met.
    Ask(R"(INSERT INTO DBOrder (AlbumName, SubDir, SeqPos) VALUES
        ('A', '\\beta', 1), ('A', '\\O%34Neil', 2), ('A', '\\Alpha', 3), ('A', '\Alpha\B', 4))");
    EXPECT_EQ(SubDirs("\\", 0, 0), "Alpha|alpha 2|beta|O'Neil!");
    EXPECT_EQ(SubDirs("\\", 1, 1), "O'Neil!|Alpha|beta|alpha 2");
    EXPECT_EQ(SubDirs("\\", 2, 0), "alpha 2|beta|O'Neil!|Alpha");
    EXPECT_EQ(SubDirs("\\Alpha\\", 2, 0), "B!|c!");
    album.SubDirectories = 0;
    EXPECT_EQ(SubDirs("\\", 0, 0), "");
}

TEST_F(ListingsTest, MediaPageMayShowAllFilesOnOnePageAndNoSubdirectories) {
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg", "sub/x.jpg"}) AddFile(name);
    clsAlbum &album = StartAlbum();
    gFilesPerPage = 0;
    const std::string page = Get("/ShowAlbumMedia?1&thumbs&0");
    EXPECT_EQ(Count(page, "id=\"pic_"), 4);
    EXPECT_EQ(Count(page, "<tr>\r\n"), 2);
    ExpectParts(page, {"Page 0 of 1"});
    gFilesPerPage = 4;
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1"), {"!next.gif"});
    album.SubDirectories = 0;
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1&gone"), {"No files here.<"});
    ExpectParts(Get("/ShowAlbumMedia?1&thumbs&1"), {"/a.jpg"});
    gFilesPerRow = 0;
    EXPECT_EQ(Get("/ShowAlbumMedia?1&thumbs&1"), "Bad Request");
}

TEST(VisitorFilePath, StaysInsideTheAlbumAndHasOneSpelling) {
    EXPECT_EQ(VisitorFilePath("C", "/a%20b/R<amp>and<amp>B<plus>and<plus>1.jpg"), "C\\a b\\R&B+1.jpg");
    EXPECT_EQ(VisitorFilePath("C", "//./..a..//.\\b.jpg"), "C\\..a..\\b.jpg");
    for (const char *link : {"/../a.jpg", "/%252e%252e/a.jpg", "/x%5C..%2Fa.jpg", "/a%00.jpg", "aunt/a.jpg", "/a/", ""})
        EXPECT_EQ(VisitorFilePath("C", link), "") << link;
}

}  // namespace
}  // namespace pixmora::test
