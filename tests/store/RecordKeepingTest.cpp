// Events that come while the disk, the file or another program's lock refuses them.
#include "store/RecordKeeping.h"

#include <gmock/gmock.h>

#include "platform/runtime/Clock.h"
#include "store/Popularity.h"
#include "store/Statistics.h"
#include "support/ErrorOf.h"
#include "support/OpenStore.h"

namespace pixmora {

using testing::ElementsAre;

TEST(RecordKeeping, GoesOnWithoutWhileAnotherProgramHoldsTheFile) {
    const OpenStore store;
    ClockSetForTest clock(5000000, MakeDate(2004, 3, 1, 12, 0, 0));
    std::vector<std::string> told;
    gDatabase->SetLockWait(1);
    SetRecordTeller([&](const std::string &text) { told.push_back(text); });
    const auto countEvents = [] {
        RecordStat(Stat::Thumbs, "Zoo", 1);
        CountFileVisit("Zoo", "\\lion.jpg");
        CountDirVisit("Zoo", "");
    };
    countEvents();
    for (int round = 1; round <= 2; ++round) {
        sqlite3 *other = nullptr;
        sqlite3_open(store.FilePath().c_str(), &other);
        sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        clock.Advance(60000);
        countEvents();
        countEvents();
        EXPECT_THAT(told, ElementsAre("Unable to save what your visitors see and download: another program is using "
                                      "the database! Your website goes on without."))
            << "once, not once for each event";
        EXPECT_EQ(ReadStatTotal(Stat::Thumbs), round) << "what was kept before can be read";
        clock.Advance(60000);
        countEvents();
        EXPECT_EQ(told.size(), 2U) << "and once more in the next minute";
        EXPECT_EQ(ErrorOf([] { RecordStat(Stat::Thumbs, "It's", 1); }), ErrorNumber::SyntaxError)
            << "a mistake stays one";
        sqlite3_close(other);
        countEvents();
        EXPECT_EQ(told.back(), "Able to save what your visitors see and download again. Lost meanwhile: 9.");
        told.clear();
    }
    EXPECT_EQ(store.Ask("SELECT TotalCount, FileCount, DirCount FROM StatsTotal, PopularFiles, PopularDirs"),
              "3|3|3\n");
    SetRecordTeller({});
}

}  // namespace pixmora
