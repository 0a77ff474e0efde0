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

TEST_F(PlainFilesTest, LetsBrowsersKeepWhatTheOwnerAllows) {
    Program.Write("htdocs/a.gif", "graphic");
    Program.Write("htdocs/capture.jpg", "still");
    AddFile(AddAlbum("A"), "a.jpg", "picture");
    std::string held;
    PrepareSocket = [&held](const Connection &socket) {
        socket->Request = "GET / HTTP/1.0\r\nif-none-match: " + held + "\r\n\r\n";
    };
    held = "*";
    EXPECT_EQ(Get("ShowGraphic?a.gif"), WriteResponseHead("image/gif", true) + "graphic") << "without the setting";
    SaveSetting("Setup", "BrowserCache", "10");
    for (const std::string address : {"ShowGraphic?a.gif", "ShowPicture?1&full&/a.jpg"}) {
        held = "\"another\"";
        const std::string answer = Get(address);
        const std::size_t tag = answer.find("ETag: ");
        EXPECT_NE(answer.find("\r\nCache-Control: private, max-age=600\r\nETag: "), std::string::npos) << answer;
        EXPECT_EQ(answer.find("Pragma"), std::string::npos) << "browsers keep nothing that has it";
        held = answer.substr(tag + 6, answer.find("\r\n", tag) - tag - 6);
        const Tick before = gLastConversionTick;
        const double sent = gBandwidthSession;
        EXPECT_TRUE(Get(address).starts_with("HTTP/1.0 304 Not Modified\r\n")) << address;
        EXPECT_EQ(Body(Get(address)), "");
        EXPECT_EQ(gLastConversionTick, before) << "it takes no turn";
        EXPECT_EQ(gBandwidthSession, sent);
    }
    Program.Write("albums/A/a.jpg", "other picture");
    EXPECT_EQ(Body(Get("ShowPicture?1&full&/a.jpg")), "other picture");
    held = "*";
    EXPECT_EQ(Get("ShowGraphic?capture.jpg"), WriteResponseHead("image/gif", true) + "still");
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
