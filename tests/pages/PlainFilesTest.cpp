// Tests of the files that go out as they are.
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using PlainFilesTest = PageSite;

TEST_F(PlainFilesTest, SendsGraphics) {
    const std::string bytes(3000, '\xFE');
    Program.Write("htdocs/my+1.jpg", bytes);
    EXPECT_EQ(Get("ShowGraphic?my<plus>and<plus>1.jpg"), WriteResponseHead("image/gif", true) + bytes);
    EXPECT_EQ(gBandwidthSession, 2);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), " ");
}

TEST_F(PlainFilesTest, SendsTheIcons) {
    Program.Write("htdocs/favicon.ico", "icon");
    EXPECT_EQ(Get("favicon.ico"), WriteResponseHead("image/x-icon", true) + "icon");
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImagePath = ProgramPath(AddFile(album, "a.jpg.pixmoraicon", "small"));
    EXPECT_EQ(Get("ShowAlbumIcon?1"), WriteResponseHead("image/jpeg", true) + "small");
    album.FeaturedImagePath = album.Directory + "\\gone.pixmoraicon";
    EXPECT_EQ(Get("ShowAlbumIcon?1"), "Bad Request!");
    EXPECT_FALSE(FileExists(album.FeaturedImagePath));
}

}  // namespace
}  // namespace pixmora::test
