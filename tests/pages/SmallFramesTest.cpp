// Tests of the small frames around an album.
#include <gmock/gmock.h>

#include "platform/RunTimeError.h"
#include "store/Statistics.h"
#include "support/SiteFixture.h"

namespace pixmora::test {
namespace {

using testing::HasSubstr;

class SmallFramesTest : public SiteFixture {
protected:
    std::string Page(void (clsWebServerCommands::*operation)(const Connection &) const) {
        return Answer([&](const Connection &socket) { (*gWebServerCommands.*operation)(socket); });
    }
    std::string Border(const Arguments &args) {
        return Answer([&](const Connection &socket) { gWebServerCommands->genBorder(socket, args); });
    }
};

TEST_F(SmallFramesTest, SendMarginsRaw) {
    EXPECT_EQ(Page(&clsWebServerCommands::genBlank),
              "<html><head><title></title></head><body bgcolor=\"white\"></body></html>");
    EXPECT_EQ(Border({"C3CCDA", "x"}), "<html><head><title></title></head><body bgcolor=\"#C3CCDA\"></body></html>");
    EXPECT_THROW(Border({}), RunTimeError);
}

TEST_F(SmallFramesTest, SendTheBarsWithAHead) {
    const std::string opening =
        "HTTP/1.0 200 OK\r\nServer: Pixmora! Digital Media Software v1.0\r\n"
        "Content-Type: text/html\r\nPragma: no-cache\r\n\r\n"
        "<html><head><title></title><style>.style {}</style></head><body topmargin=0 leftmargin=0>";
    EXPECT_TRUE(Page(&clsWebServerCommands::genShowAlbumTop).starts_with(opening));
    const std::string bottom = Page(&clsWebServerCommands::genShowAlbumBottom);
    EXPECT_TRUE(bottom.starts_with(opening));
    EXPECT_THAT(bottom,
                HasSubstr("</tr></table><script language=\"javascript\">\r\n<!--\r\nfunction SendEmail() { \r\n"));
    EXPECT_EQ(Count(bottom, "\n"), Count(bottom, "\r\n"));
}

TEST_F(SmallFramesTest, BookTheHelpPage) {
    gStyleSheet = std::string(5000, 's');
    const std::string page = Page(&clsWebServerCommands::genShowHelp);
    EXPECT_EQ(Filled(page, "STYLE_SHEET"), gStyleSheet);
    EXPECT_EQ(gBandwidthSession, 4);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), NoAlbum);
    EXPECT_EQ(Column("StatsRecent", "StatValue"), "4");
}

}  // namespace
}  // namespace pixmora::test
