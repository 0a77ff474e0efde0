// A site that runs on and on: the minutes around a wrap of the tick count, or as many as PIXMORA_MINUTES says, with the
// figures printed: 525600 of them are a year.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/Sweep.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Text.h"
#include "store/Schema.h"
#include "store/Statistics.h"
#include "support/Pictures.h"
#include "support/RawDatabase.h"
#include "support/RunningSite.h"

namespace pixmora::test {
namespace {

class Year : public RunningSite {
protected:
    Year() {
        AddAlbum("A");
        Program.Write("albums/A/a.bmp", BitmapFile(8, 8));
        SaveSetting("Setup", "ConversionSpacing", "0");
    }

    /// A minute, in each fifth of which somebody comes.
    void RunMinute() {
        Clock.Advance(60000);
        ++minutes_;
        if (minutes_ % 5 == 0) {
            const std::string visitor = Concat("127.0.0.", 1 + minutes_ / 5 % 200);
            EXPECT_NE(Get("/Index", "", visitor).find("</html>"), std::string::npos) << minutes_;
            EXPECT_NE(Get("/ShowPicture?1&thumb&/a.bmp", "", visitor).find("JFIF"), std::string::npos) << minutes_;
            ++visits_;
        }
        HandleConnectionsTick();
        EXPECT_LE(gVisitorsActive, 3) << minutes_ << ": idle ones leave after ten minutes";
    }

    static long Descriptors() {
        for (int turn = 0; turn < 10; ++turn) DoEvents();  // the last visitor's connection goes
        const std::filesystem::directory_iterator entries("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    }
    static long ResidentKilobytes() {
        long size = 0;
        long pages = 0;
        std::ifstream("/proc/self/statm") >> size >> pages;
        return pages * 4;
    }

    /// Begins an hour before the first or the second wrap.
    void Pass(int wrap) {
        const char *given = std::getenv("PIXMORA_MINUTES");
        const int minutes = given != nullptr ? std::atoi(given) : 130;
        constexpr std::int32_t half = std::numeric_limits<std::int32_t>::max();  // ms, 24.9 days
        Clock.Advance(half - 1000000 - 3600000);
        if (wrap == 2) Clock.Advance(half);
        Start();
        gSystray->tmrConnections.SetEnabled(false);  // its minutes are real ones
        while (minutes_ < std::min(minutes, 2000)) RunMinute();
        const long resident = ResidentKilobytes();
        const long descriptors = Descriptors();
        while (minutes_ < minutes && !HasFailure()) RunMinute();
        EXPECT_EQ(ReadStatTotal(Stat::RunningTime), minutes_);
        EXPECT_EQ(ReadStatTotal(Stat::Visitors), visits_);
        EXPECT_EQ(ReadStatTotal(Stat::Thumbs), visits_);
        EXPECT_EQ(ReadRecentSum(Stat::Thumbs), 12) << "an hour's";
        // Three rows a visit, one a minute, and the ticks that wait for the next purge.
        EXPECT_LE(std::stoi(RunSql(SystemPath(DatabasePath(9)), "SELECT count(*) FROM StatsRecent")),
                  70 * (60 + 4 * 12) / 60);
        EXPECT_NEAR(static_cast<double>(gOnlineTimer->Elapsed()), minutes * 60000.0, 1000);
        EXPECT_LE(Descriptors(), descriptors + 1) << "one connection may be on its way out";
        EXPECT_LE(ResidentKilobytes() - resident, 5120);
        std::printf("%d minutes, %d visits: %+ld kB resident of %ld, %ld descriptors, database of %ju bytes\n",
                    minutes_, visits_, ResidentKilobytes() - resident, resident, Descriptors(),
                    std::filesystem::file_size(SystemPath(DatabasePath(9))));
    }

    int minutes_ = 0;
    int visits_ = 0;
};

TEST_F(Year, PassesTheFirstWrapOfTheTickCountWithoutATrace) {
    Pass(1);
}

TEST_F(Year, PassesTheSecondWrap) {
    Pass(2);
}

}  // namespace
}  // namespace pixmora::test
