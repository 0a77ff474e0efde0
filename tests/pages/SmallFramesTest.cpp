// Tests of the small frames around an album.
#include <gmock/gmock.h>

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
};

TEST_F(SmallFramesTest, SendTheBars) {
    const std::string opening =
        "<html><head><title></title><style>.style {}</style></head><body topmargin=0 leftmargin=0>";
    EXPECT_TRUE(Body(Page(&clsWebServerCommands::genShowAlbumTop)).starts_with(opening));
    const std::string bottom = Page(&clsWebServerCommands::genShowAlbumBottom);
    EXPECT_TRUE(Body(bottom).starts_with(opening));
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
