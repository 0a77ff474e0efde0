// What the database keeps of visitors: statistics, popularity, both while something refuses to be written; and
// protected directories, however deep the path that a visitor asks with.
#include <gtest/gtest.h>

#include <limits>

#include "platform/runtime/Clock.h"
#include "platform/runtime/Text.h"
#include "store/Popularity.h"
#include "store/Protection.h"
#include "store/RecordKeeping.h"
#include "store/Statistics.h"
#include "support/ErrorOf.h"
#include "support/OpenStore.h"

namespace pixmora {

class RecordsTest : public testing::Test, protected OpenStore {
protected:
    ClockSetForTest clock{5000000, MakeDate(2004, 3, 1, 23, 59, 30)};
};

TEST_F(RecordsTest, MarkAnEventInFiveTablesAndOpenNewRowsWithTheTime) {
    RecordStat(Stat::Bandwidth, "Zoo", 40);
    RecordStat(Stat::Downloads, "zoo", 3);
    RecordStat(Stat::Bandwidth, "Zoo", 40);
    EXPECT_EQ(Ask("SELECT * FROM StatsRecent"), "5000000|4|40\n5000000|3|3\n5000000|4|40\n");
    EXPECT_EQ(Ask("SELECT * FROM StatsTotal"), "4|41\n3|1\n") << "a row's first event counts 1";
    EXPECT_EQ(Ask("SELECT * FROM StatsHourly"), "Zoo|2004-03-01|23||||3|41\n") << "a Null is 0";
    EXPECT_EQ(ReadStatTotal(Stat::Bandwidth), 41);

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

TEST_F(RecordsTest, GoOnCountingBeyondALong) {
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

TEST_F(RecordsTest, CountInTheRightRowWhenRowsGoOrChange) {
    for (int i = 0; i < 2; ++i) RecordStat(Stat::Visitors, "Zoo", 1);
    Ask("DELETE FROM StatsHourly; UPDATE StatsDaily SET AlbumName='Farm'");
    RecordStat(Stat::Visitors, "Zoo", 1);
    EXPECT_EQ(Ask("SELECT AlbumName, Visitors FROM StatsHourly"), "Zoo|1\n");
    EXPECT_EQ(Ask("SELECT AlbumName, Visitors FROM StatsDaily"), "Farm|2\nZoo|1\n");
}

TEST_F(RecordsTest, KeepTheLastHourAlsoWhereTheTicksWrap) {
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

TEST_F(RecordsTest, ArePurgedOfOldDays) {
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

TEST_F(RecordsTest, CountViewsByAlbumAndPath) {
    for (int i = 0; i < 3; ++i) CountFileVisit("Zoo", "\\O'Brien\\a.jpg");
    CountFileVisit("Alps", "\\O'Brien\\a.jpg");
    CountDirVisit("Zoo", "");
    CountDirVisit("Zoo", "\\");
    CountDirVisit("Zoo", "\\O'Brien");
    EXPECT_EQ(Ask("SELECT * FROM PopularFiles"), "Zoo|\\O%39Brien\\a.jpg|3\nAlps|\\O%39Brien\\a.jpg|1\n");
    EXPECT_EQ(Ask("SELECT * FROM PopularDirs"), "Zoo|\\|2\nZoo|\\O%39Brien|1\n");
    EXPECT_THROW(CountFileVisit("It's", "\\a.jpg"), RunTimeError);
}

TEST_F(RecordsTest, DropWhatIsGoneAmongTheMostViewed) {
    for (const char *name : {"Zoo/here.jpg", "Alps/both.jpg", "Zoo/it's.jpg", "Zoo/lions/x"}) folder.Write(name);
    std::string rows =
        "('Zoo', '\\here.jpg', 900), ('Zoo', '\\both.jpg', 800), ('Zoo', '\\it%39s.jpg', 700), "
        "('Nobody', '\\gone.jpg', 600), ('Alps', '\\both.jpg', 1), ('Zoo', '\\low.jpg', 2)";
    for (int i = 0; i < 26; ++i) rows += ", ('Zoo', '\\x" + std::to_string(i) + ".jpg', 500)";
    Ask("INSERT INTO PopularFiles VALUES " + rows);
    const AlbumDirectoryLookup directoryOf = [this](const std::string &album) {
        return album == "Nobody" ? std::nullopt : std::optional(ProgramPath(folder.Path(album)));
    };
    TidyPopularFiles(directoryOf);
    EXPECT_EQ(Ask("SELECT * FROM PopularFiles"), "Zoo|\\here.jpg|900\nZoo|\\low.jpg|2\n")
        << "a path that two albums have goes in both; the 31st isn't looked at";

    Ask("INSERT INTO PopularDirs VALUES ('Zoo', '\\', 9), ('Zoo', '\\lions', 8), ('Zoo', '\\bears', 7), "
        "('Zoo', '\\apes', 6)");
    TidyPopularDirs(directoryOf, 3);
    EXPECT_EQ(Ask("SELECT DirPath FROM PopularDirs"), "\\\n\\lions\n\\apes\n");
}

TEST_F(RecordsTest, GoOnWithoutWhileAnotherProgramHoldsTheFile) {
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
        sqlite3_open(FilePath().c_str(), &other);
        sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        clock.Advance(60000);
        countEvents();
        countEvents();
        EXPECT_EQ(
            told,
            std::vector<std::string>{"Unable to save what your visitors see and download: another program is using the "
                                     "database! Your website goes on without."})
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
    EXPECT_EQ(Ask("SELECT TotalCount, FileCount, DirCount FROM StatsTotal, PopularFiles, PopularDirs"), "3|3|3\n");
    SetRecordTeller({});
}

TEST_F(RecordsTest, ProtectionReachesEveryLevelBelow) {
    clsAlbum album;
    album.Name = "Zoo";
    const auto levels = [](int count, const char *level = "\\a") {
        return RepeatString(level, count);
    };
    for (const std::string &directory : {std::string("\\closed"), levels(1500), levels(2500, "\\b")})
        Ask("INSERT INTO PrivateDirs VALUES ('Zoo', '" + directory + "', 'Ann')");
    EXPECT_TRUE(IsProtectedDir(album, "", "\\closed" + levels(1800)));
    EXPECT_TRUE(IsProtectedDir(album, "", levels(1500)));
    EXPECT_TRUE(IsProtectedDir(album, "", levels(1501)));
    EXPECT_FALSE(IsProtectedDir(album, "", levels(1499) + "\\b\\a"));
    EXPECT_FALSE(IsProtectedDir(album, "", "\\a\\closed"));
    EXPECT_FALSE(IsProtectedDir(album, "", levels(32000, "\\b"))) << "beyond all paths nobody searches";
    Ask("INSERT INTO PrivateDirs VALUES ('Zoo', '\\', 'Ann')");
    EXPECT_TRUE(IsProtectedDir(album, "", "\\b"));
}

}  // namespace pixmora
