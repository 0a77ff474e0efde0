// Tests of the files that go out as they are.
#include <gtest/gtest.h>

#include "support/PageFixture.h"

namespace pixmora::test {
namespace {

using PlainFilesTest = PageFixture;

TEST_F(PlainFilesTest, SendsGraphicsOfHtdocsAlone) {
    const auto graphic = [&](const std::string &name) {
        return Get("ShowGraphic?" + name);
    };
    const std::string bytes(3000, '\xFE');
    Program.Write("htdocs/my+1.jpg", bytes);
    Program.Write("secret.txt");
    EXPECT_EQ(graphic("my<plus>and<plus>1.jpg"), WriteResponseHead("image/gif", true) + bytes);
    EXPECT_EQ(gBandwidthSession, 2);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), " ");
    for (const std::string name :
         {"none.gif", "../secret.txt", "%2e./secret.txt", "..\\secret.txt", "Index.tpl%00", "."})
        EXPECT_EQ(graphic(name), "File Not Found!") << name;
}

TEST_F(PlainFilesTest, SendsTheIcons) {
    Program.Write("htdocs/favicon.ico", "icon");
    EXPECT_EQ(Answer([](const Connection &socket) { gWebServerCommands->genFaviconico(socket); }),
              WriteResponseHead("image/x-icon", true) + "icon");
    const auto icon = [&](const std::string &album) {
        return Get("ShowAlbumIcon?" + album);
    };
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImagePath = ProgramPath(AddFile(album, "a.jpg.pixmoraicon", "small"));
    EXPECT_EQ(icon("1"), WriteResponseHead("image/jpeg", true) + "small");
    album.FeaturedImagePath = album.Directory + "\\gone.pixmoraicon";
    for (const char *number : {"", "2", "0", "x", "1"}) EXPECT_EQ(icon(number), "Bad Request!");
    EXPECT_FALSE(FileExists(album.FeaturedImagePath));
}

}  // namespace
}  // namespace pixmora::test
