// Tests of the small frames around an album.
#include <gmock/gmock.h>

#include "store/Statistics.h"
#include "support/PageSite.h"

namespace pixmora::test {
namespace {

using testing::HasSubstr;

using SmallFramesTest = PageSite;

TEST_F(SmallFramesTest, SendTheBars) {
    const std::string opening =
        "<html><head><title></title><style>.style {}</style></head><body topmargin=0 leftmargin=0>";
    EXPECT_TRUE(Body(Get("ShowAlbumTop")).starts_with(opening));
    const std::string bottom = Get("ShowAlbumBottom");
    EXPECT_TRUE(Body(bottom).starts_with(opening));
    EXPECT_THAT(bottom,
                HasSubstr("</tr></table><script language=\"javascript\">\r\n<!--\r\nfunction SendEmail() { \r\n"));
    EXPECT_EQ(Count(bottom, "\n"), Count(bottom, "\r\n"));
}

TEST_F(SmallFramesTest, BookTheHelpPage) {
    gStyleSheet = std::string(5000, 's');
    const std::string page = Get("ShowHelp");
    EXPECT_EQ(Filled(page, "STYLE_SHEET"), gStyleSheet);
    EXPECT_EQ(gBandwidthSession, 4);
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), NoAlbum);
    EXPECT_EQ(Column("StatsRecent", "StatValue"), "4");
}

}  // namespace
}  // namespace pixmora::test
