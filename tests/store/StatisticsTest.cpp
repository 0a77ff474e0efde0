#include "store/Statistics.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "support/OpenStore.h"

namespace pixmora {

namespace {

class StatisticsTest : public testing::Test, protected OpenStore {
protected:
    ClockSetForTest clock{5000000, MakeDate(2004, 3, 1, 23, 59, 30)};
};

}  // namespace

TEST_F(StatisticsTest, MarksAnEventInFiveTablesAndOpensNewRowsWithTheTime) {
    RecordStat(Stat::Bandwidth, "Zoo", 40);
    RecordStat(Stat::Downloads, "zoo", 3);
    RecordStat(Stat::Bandwidth, "Zoo", 40);
    EXPECT_EQ(Ask("SELECT * FROM StatsRecent"), "5000000|4|40\n5000000|3|3\n5000000|4|40\n");
    EXPECT_EQ(Ask("SELECT * FROM StatsTotal"), "4|41\n3|1\n") << "a row's first event counts 1";
    EXPECT_EQ(Ask("SELECT * FROM StatsHourly"), "Zoo|2004-03-01|23||||3|41\n") << "a Null is 0";
    EXPECT_EQ(ReadStatTotal(Stat::Bandwidth), 41);
    EXPECT_EQ(ReadStatTotal(Stat::Visitors), 0);

    clock.Advance(60000);
    RecordStat(Stat::Downloads, "Zoo", 1);
    clock.SetNow(MakeDate(2004, 4, 1, 0, 0, 0));
    RecordStat(Stat::Downloads, MostPopularAlbum, 1);
    EXPECT_EQ(Ask("SELECT AlbumName, WhichDay, WhichHour, Downloads FROM StatsHourly"),
              "Zoo|2004-03-01|23|3\nZoo|2004-03-02|0|1\nMost Popular|2004-04-01|0|1\n");
    EXPECT_EQ(Ask("SELECT WhichDay, Downloads, Bandwidth FROM StatsDaily"),
              "2004-03-01|3|41\n2004-03-02|1|\n2004-04-01|1|\n");
    EXPECT_EQ(Ask("SELECT WhichYear, WhichMonth, Downloads, Bandwidth FROM StatsMonthly"), "2004|3|4|41\n2004|4|1|\n");
}

TEST_F(StatisticsTest, GoesOnCountingBeyondALong) {
    for (int i = 0; i < 2; ++i) RecordStat(Stat::Bandwidth, "Zoo", 1);
    // As an upgrade leaves a table that was empty.
    gDatabase->AppendField("StatsDaily", {"BandwidthTemp", FieldType::Double});
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    RecordStat(Stat::Bandwidth, "Zoo", most);
    RecordStat(Stat::Bandwidth, "Zoo", most);
    RecordStat(Stat::Thumbs, "Zoo", 1);
    EXPECT_EQ(ReadStatTotal(Stat::Bandwidth), 2.0 * most + 2);
    EXPECT_EQ(Ask("SELECT * FROM StatsHourly"), "Zoo|2004-03-01|23|||1||4294967296.0\n");
    EXPECT_EQ(Ask("SELECT * FROM StatsDaily"), "Zoo|2004-03-01|||1||4294967296.0\n");
    EXPECT_EQ(Ask("SELECT * FROM StatsMonthly"), "Zoo|2004|3|||1||4294967296.0\n");

    Ask("UPDATE StatsMonthly SET Thumbs=2147483647");
    EXPECT_THROW(RecordStat(Stat::Thumbs, "Zoo", 1), RunTimeError) << "the other counters stay where they are";
    EXPECT_EQ(ReadStatTotal(Stat::Thumbs), 1) << "an event counts in all tables or in none";
}

TEST_F(StatisticsTest, CountsInTheRightRowWhenRowsGoOrChange) {
    for (int i = 0; i < 3; ++i) RecordStat(Stat::Visitors, "Zoo", 1);
    RecordStat(Stat::Visitors, "Park", 1);
    Ask("DELETE FROM StatsHourly; UPDATE StatsDaily SET AlbumName='Farm' WHERE AlbumName='Zoo'");
    for (int i = 0; i < 2; ++i) RecordStat(Stat::Visitors, "Park", 1);
    RecordStat(Stat::Visitors, "Zoo", 1);
    EXPECT_EQ(Ask("SELECT AlbumName, Visitors FROM StatsHourly"), "Park|2\nZoo|1\n");
    EXPECT_EQ(Ask("SELECT AlbumName, Visitors FROM StatsDaily"), "Farm|3\nPark|3\nZoo|1\n");
    EXPECT_EQ(Ask("SELECT AlbumName, Visitors FROM StatsMonthly"), "Zoo|4\nPark|3\n");
}

TEST_F(StatisticsTest, KeepsTheLastHourAlsoWhereTheTicksWrap) {
    constexpr std::int64_t half = std::int64_t{1} << 31;  // ms, 24.9 days
    // In the middle of nowhere; an hour's begin, its middle and its end at both places where a tick's sign changes.
    for (const std::int64_t uptime : {std::int64_t{100}, half - 3600000, half - 1800000, half - 1, half,
                                      2 * half - 3600000, 2 * half - 1800000, 2 * half - 1, 2 * half}) {
        const ClockSetForTest then(static_cast<Tick>(uptime), Now());
        CreateStatsRecent();
        RecordStat(Stat::Thumbs, "Zoo", 1);
        RecordStat(Stat::Bandwidth, "Zoo", 7);
        clock.Advance(3600000);
        RecordStat(Stat::Bandwidth, "Zoo", 30);
        RecordStat(Stat::Bandwidth, "Zoo", 12);
        EXPECT_EQ(ReadRecentSum(Stat::Bandwidth), 42) << "an hour old is too old for the sum, " << uptime;
        EXPECT_EQ(ReadRecentSum(Stat::Thumbs), 0) << uptime;
        PurgeRecent();
        EXPECT_EQ(Ask("SELECT count(*) FROM StatsRecent"), "4\n") << "but not for the table, " << uptime;
        clock.Advance(1);
        PurgeRecent();
        EXPECT_EQ(Ask("SELECT StatValue FROM StatsRecent"), "30\n12\n") << uptime;
    }
}

TEST_F(StatisticsTest, PurgesOldDays) {
    for (const int day : {1, 2, 14, 15, 16}) {
        clock.SetNow(MakeDate(2004, 3, static_cast<unsigned>(day), 12));
        RecordStat(Stat::Visitors, "Zoo", 1);
    }
    clock.SetNow(MakeDate(2004, 3, 17, 1));
    PurgeHourly();
    PurgeDaily();
    EXPECT_EQ(Ask("SELECT WhichDay FROM StatsHourly"), "2004-03-15\n2004-03-16\n");
    EXPECT_EQ(Ask("SELECT WhichDay FROM StatsDaily"), "2004-03-02\n2004-03-14\n2004-03-15\n2004-03-16\n");
    EXPECT_EQ(Ask("SELECT Visitors FROM StatsMonthly"), "5\n");
}

}  // namespace pixmora
