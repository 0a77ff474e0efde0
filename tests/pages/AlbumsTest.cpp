// Tests of what an album shows: its directories and files, what an address may reach, and a file's details.
#include "pages/Listings.h"

#include <chrono>
#include <filesystem>

#include "pages/AlbumAddress.h"
#include "pages/PageTest.h"
#include "store/MediaTypes.h"
#include "support/ExifBlock.h"
#include "support/Pictures.h"

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

TEST(VisitorFilePath, StaysInsideTheAlbumAndHasOneSpelling) {
    EXPECT_EQ(VisitorFilePath("C", "/a%20b/R<amp>and<amp>B<plus>and<plus>1.jpg"), "C\\a b\\R&B+1.jpg");
    EXPECT_EQ(VisitorFilePath("C", "//./..a..//.\\b.jpg"), "C\\..a..\\b.jpg");
    for (const char *link : {"/../a.jpg", "/%252e%252e/a.jpg", "/x%5C..%2Fa.jpg", "/a%00.jpg", "aunt/a.jpg", "/a/", ""})
        EXPECT_EQ(VisitorFilePath("C", link), "") << link;
}

class ShowDetailsTest : public PageTest {
protected:
    /// The page of a file with these bytes.
    std::string PageOf(const std::string &bytes, const std::string &name = "a.bmp") const {
        AddFile(name, bytes);
        return Get("/ShowDetails?1&nocount&/" + name);
    }
};

TEST_F(ShowDetailsTest, TellsWhatTheCameraNotedInTheOwnersWords) {
    StartAlbum();
    const std::string photograph = BlockBuilder(true).File(
        {{272, 2, 8, 0, {}, "Acme 200"}},
        {{36867, 2, 19, 0, {}, "2004:03:01 16:05:09"}, {40962, 4, 1, 4, {4000}}, {40963, 4, 1, 4, {3000}}});
    ExpectParts(PageOf(photograph), {"Dimensions: 4000 x 3000<br>\r\n", "Camera Model: Acme 200<br>\r\n",
                                     "Date Taken: 03/01/2004 4:05:09 PM<br>\n"});
    ExpectParts(PageOf("no picture"), {"Dimensions: N/A<br>\r\n", "Date Taken: N/A<br>\n"});
    ExpectParts(PageOf(BitmapFile(40, 20) + std::string("Exif\0\0II*\0", 10)),
                {"Dimensions: 40 x 20<br>\r\n", "Camera Model: N/A<br>\r\n&nbsp;&nbsp;Date Taken: N/A<br>\n"});
    Program.Write("exif.ini", "[ExposureTime]\nFormat=1/@X s\n[FNumber]\nFormat=f/@X\n[Flash]\n16=switched off\n");
    const std::pair<std::vector<std::uint32_t>, const char *> exposures[] = {
        {{10, 2500}, "1/250 s"}, {{4, 1}, "4 s"}, {{1, 2}, "0.5 s"}};
    for (const auto &[fraction, text] : exposures) {
        const std::string bytes = BlockBuilder(false).File({}, {{33434, 5, 1, 4, fraction},
                                                                {33437, 5, 1, 4, {28, 10}},
                                                                {37385, 3, 1, 2, {16}},
                                                                {37386, 5, 1, 4, {60000}},
                                                                {42036, 2, 9, 0, {}, "50 <mm> &"}});
        ExpectParts(PageOf(bytes),
                    {Concat(">&nbsp;&nbsp;Exposure: ", text, "<br>\r\n&nbsp;&nbsp;Aperture: f/2.8<br>\r\n",
                            "&nbsp;&nbsp;Flash: switched off<br>\r\n&nbsp;&nbsp;Lens: 50 &lt;mm&gt; &amp;<br>\r\n<")});
    }
}

TEST_F(ShowDetailsTest, ShowsThePlaceOnlyWhereTheOwnerWantsIt) {
    StartAlbum();
    const auto photograph = [](const char *side, std::uint32_t degrees) {
        const BlockBuilder builder(true);
        const std::uint32_t behind = 8 + 2 + 12;
        return builder.Head() + builder.Directory(8, {{34853, 4, 1, 4, {behind}}}) +
               builder.Directory(behind, {{1, 2, 2, 0, {}, side},
                                          {2, 5, 3, 4, {degrees, 1, 30, 1, 90, 10}},
                                          {3, 2, 2, 0, {}, "E"},
                                          {4, 5, 3, 4, {16, 1, 2250, 100, 0, 1}}});
    };
    ExpectParts(PageOf(photograph("S", 48)), {"!?mlat="});
    SaveSetting("Setup", "ShowPlaces", "1");
    ExpectParts(PageOf(photograph("S", 48)), {"?mlat=-48.50250&amp;mlon=16.37500#map=15/-48.50250/16.37500\""});
    ExpectParts(PageOf(photograph("N", 148)), {"!?mlat="});
}

}  // namespace
}  // namespace pixmora::test
