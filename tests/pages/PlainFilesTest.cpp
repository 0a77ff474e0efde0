// Tests of the files that go out as they are.
#include <gtest/gtest.h>

#include "platform/RunTimeError.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

class PlainFilesTest : public SiteFixture {
protected:
    std::string Graphic(const Arguments &args) {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowGraphic(socket, args); });
    }
    std::string Icon(const Arguments &args) {
        return Answer([&](const Connection &socket) { gWebServerCommands->genShowAlbumIcon(socket, args); });
    }
};

TEST_F(PlainFilesTest, SendsGraphicsOfHtdocsAlone) {
    const std::string bytes(3000, '\xFE');
    Program.Write("htdocs/first.gif", bytes);
    Program.Write("htdocs/my+1.jpg", "still");
    Program.Write("secret.txt", "secret");
    EXPECT_EQ(Graphic({"first.gif"}), WriteResponseHead("image/gif", true) + bytes);
    EXPECT_EQ(Graphic({"my<plus>and<plus>1.jpg"}), WriteResponseHead("image/gif", true) + "still");
    EXPECT_EQ(gBandwidthSession, 2);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), " ");
    for (const std::string &name :
         {std::string("none.gif"), std::string("../secret.txt"), std::string("%2e./secret.txt"),
          std::string("..\\secret.txt"), std::string("first.gif\0", 10), std::string("."), std::string()}) {
        EXPECT_EQ(Graphic({name}), "File Not Found!") << name;
    }
    EXPECT_THROW(Graphic({}), RunTimeError);
}

TEST_F(PlainFilesTest, SendsTheIcons) {
    Program.Write("htdocs/favicon.ico", "icon");
    EXPECT_EQ(Answer([](const Connection &socket) { gWebServerCommands->genFaviconico(socket); }),
              WriteResponseHead("image/x-icon", true) + "icon");
    clsAlbum &album = AddAlbum("A");
    album.FeaturedImagePath = ProgramPath(AddFile(album, "a.jpg.pixmoraicon", "small"));
    EXPECT_EQ(Icon({"1"}), WriteResponseHead("image/jpeg", true) + "small");
    for (const Arguments &args : {Arguments{}, {"2"}, {"0"}, {"x"}}) EXPECT_EQ(Icon(args), "Bad Request!");
    album.FeaturedImagePath = album.Directory + "\\gone.pixmoraicon";
    EXPECT_EQ(Icon({"1"}), "Bad Request!");
    EXPECT_FALSE(FileExists(album.FeaturedImagePath));
    EXPECT_EQ(gBandwidthSession, 0);
}

}  // namespace
}  // namespace pixmora::test
