// Tests of what each page books of its own bytes.
#include "platform/runtime/Numbers.h"
#include "support/PageSite.h"
#include "support/RawDatabase.h"

namespace pixmora::test {
namespace {

using Booking = PageSite;

TEST_F(Booking, EachPageTellsTheSessionAndTheStatisticsWhatItSent) {
    for (const char *name : {"A", "Z"}) AddFile(AddAlbum(name), "a.jpg", std::string(3000, 'p'));
    Program.Write("htdocs/my+1.gif", std::string(3000, '\xFE'));
    gStyleSheet = std::string(5000, 's');
    const std::pair<const char *, const char *> pages[] = {
        // address, in whose statistics; none: the session alone
        {"Index", " "},
        {"ShowHelp", " "},
        {"ShowGraphic?my<plus>and<plus>1.gif", " "},
        {"ShowAlbumDirList?2&thumbs&1", "Z"},
        {"ShowAlbumDirList?ShowHelp", "A"},
        {"ShowAlbumDirList?ShowPopular&thumbs", ""},
        {"ShowAlbumMedia?2&thumbs&1", "Z"},
        {"ShowPicture?2&full&/a.jpg", "Z"},
        {"ShowPopular?thumbs", "Most Popular"},
    };
    for (const auto &[address, album] : pages) {
        gBandwidthSession = 0;
        RunSql(SystemPath(DatabasePath(9)), "DELETE FROM StatsDaily; DELETE FROM StatsRecent");
        const std::size_t bytes = Body(Get(address)).size();
        const bool isFraction = address == std::string("Index");  // this page alone
        const double kilobytes = isFraction ? static_cast<double>(bytes) / 1024 : static_cast<double>(bytes / 1024);
        EXPECT_GT(kilobytes, 0) << address;
        EXPECT_DOUBLE_EQ(gBandwidthSession, kilobytes) << address;
        EXPECT_EQ(Column("StatsDaily", "AlbumName"), album) << address;
        EXPECT_EQ(Column("StatsRecent", "StatValue"), *album == 0 ? "" : std::to_string(RoundToLong(kilobytes)));
    }
    gBandwidthSession = 0;
    Get("ShowStats");
    EXPECT_EQ(gBandwidthSession, 0) << "its own bytes are not counted";
}

}  // namespace
}  // namespace pixmora::test
