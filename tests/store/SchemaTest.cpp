// The database's tables, made new and brought up from older files.
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/runtime/RunTimeError.h"
#include "store/Globals.h"
#include "support/ProgramFolder.h"
#include "support/RawDatabase.h"

namespace pixmora {

namespace {

constexpr char typeLetters[] = "TLIBDF";  // in the order of FieldType

class SchemaTest : public testing::Test {
protected:
    ~SchemaTest() override { gDatabase = nullptr; }

    std::string Path(int version) const { return folder.Path("db_v" + std::to_string(version) + ".mdb"); }
    std::string Ask(const std::string &sql) const { return RunSql(Path(9), sql); }

    /// Each field with the letter of its type behind it.
    static std::string FieldsOf(const std::string &table) {
        std::string text;
        for (const Field &field : gDatabase->Fields(table)) {
            text += (text.empty() ? "" : " ") + field.Name + ":" + typeLetters[static_cast<std::size_t>(field.Type)];
        }
        return text;
    }

    /// The names of the files in the folder, but for those of an open database's log.
    std::vector<std::string> FileNames() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.Path())) {
            const std::string name = entry.path().filename().string();
            if (!name.ends_with("-wal") && !name.ends_with("-shm")) names.push_back(name);
        }
        std::ranges::sort(names);
        return names;
    }

    /// A file as an earlier version left it, made by another tool.
    void MakeOldFile(int version) const {
        RunSql(Path(version), R"(
            CREATE TABLE Albums (AlbumName TEXT, Directory TEXT, Description TEXT, Pictures INTEGER, Movies INTEGER,
                FeaturedImage INTEGER, FeaturedImagePath TEXT, SubDirs INTEGER, DateCreated DATE);
            CREATE TABLE Users (Username TEXT, Password TEXT, FullName TEXT, Admin BOOLEAN);
            CREATE TABLE StatsTotal (Stat SMALLINT, TotalCount LONG);
            CREATE TABLE StatsHourly (AlbumName TEXT, WhichDay DATE, WhichHour SMALLINT, RunningTime LONG,
                Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
            CREATE TABLE StatsDaily (AlbumName TEXT, WhichDay DATE, RunningTime LONG,
                Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
            CREATE TABLE StatsMonthly (AlbumName TEXT, WhichYear SMALLINT, WhichMonth SMALLINT, RunningTime LONG,
                Visitors LONG, Thumbs LONG, Downloads LONG, Bandwidth LONG);
            INSERT INTO Albums VALUES ('Zoo', 'C:\Zoo', NULL, 1, 1, 1, NULL, 1, '2004-03-01');
            INSERT INTO Users VALUES ('ann', 'a', NULL, 1), ('bob', 'b', NULL, 0), ('ann', 'c', NULL, NULL);
            INSERT INTO StatsTotal VALUES (1, 12), (4, 2147483647);
            INSERT INTO StatsHourly VALUES ('Zoo', '2004-03-01', 5, NULL, 1, NULL, NULL, NULL),
                ('Zoo', '2004-03-01', 6, NULL, 2, NULL, NULL, 40);
            INSERT INTO StatsMonthly VALUES ('Zoo', 2004, 3, NULL, 3, NULL, NULL, 40);)");
        if (version == 7) return;
        RunSql(Path(version), R"(CREATE TABLE StatsRecent (WhatTime LONG, WhatStat SMALLINT, StatValue LONG);
            INSERT INTO StatsRecent VALUES (-5, 4, 40);)");
    }

    void ExpectUpgraded() const {
        const std::string counters = "RunningTime:L Visitors:L Thumbs:L Downloads:L Bandwidth:";
        EXPECT_EQ(FieldsOf("StatsTotal"), "Stat:I TotalCount:F");
        EXPECT_EQ(FieldsOf("StatsHourly"), "AlbumName:T WhichDay:D WhichHour:I " + counters + "F");
        EXPECT_EQ(FieldsOf("StatsDaily"), "AlbumName:T WhichDay:D " + counters + "L BandwidthTemp:F")
            << "a table without rows keeps the Long and the scratch field";
        EXPECT_EQ(FieldsOf("StatsMonthly"), "AlbumName:T WhichYear:I WhichMonth:I " + counters + "F");
        EXPECT_EQ(FieldsOf("Users"), "Username:T Password:T FullName:T Admin:B SeeAll:B");
        EXPECT_EQ(Ask("SELECT Username, Admin, SeeAll FROM Users"), "ann|0|1\nbob|0|0\nann|0|0\n");
        EXPECT_EQ(Ask("SELECT * FROM StatsTotal"), "1|12.0\n4|2147483647.0\n");
        EXPECT_EQ(Ask("SELECT Visitors, Bandwidth FROM StatsHourly"), "1|\n2|40.0\n");
        EXPECT_EQ(Ask("SELECT AlbumName, Description, DateCreated FROM Albums"), "Zoo||2004-03-01\n");
    }

    ProgramFolder folder;
};

}  // namespace

TEST_F(SchemaTest, MakesANewFileWithElevenEmptyTables) {
    ASSERT_TRUE(OpenOrCreateDatabase());
    EXPECT_EQ(FileNames(), std::vector<std::string>{"db_v9.mdb"});
    const std::string counters = "RunningTime:L Visitors:L Thumbs:L Downloads:L Bandwidth:L";
    const std::pair<const char *, std::string> tables[] = {
        {"Albums",
         "AlbumName:T Directory:T Description:T Pictures:L Movies:L FeaturedImage:I FeaturedImagePath:T SubDirs:I "
         "DateCreated:D"},
        {"Users", "Username:T Password:T FullName:T Admin:B"},
        {"DBOrder", "AlbumName:T SubDir:T SeqPos:I"},
        {"PrivateDirs", "AlbumName:T SubDir:T Username:T"},
        {"PopularFiles", "AlbumName:T FilePath:T FileCount:L"},
        {"PopularDirs", "AlbumName:T DirPath:T DirCount:L"},
        {"StatsTotal", "Stat:I TotalCount:L"},
        {"StatsHourly", "AlbumName:T WhichDay:D WhichHour:I " + counters},
        {"StatsDaily", "AlbumName:T WhichDay:D " + counters},
        {"StatsMonthly", "AlbumName:T WhichYear:I WhichMonth:I " + counters},
        {"StatsRecent", "WhatTime:L WhatStat:I StatValue:L"},
    };
    for (const auto &[name, fields] : tables) {
        EXPECT_EQ(FieldsOf(name), fields);
        EXPECT_EQ(gDatabase->OpenRecordset(name, RecordsetType::Table)->RecordCount(), 0) << name;
    }
    EXPECT_EQ(Ask("SELECT count(*) FROM sqlite_master WHERE type='table'"), std::to_string(std::size(tables)) + "\n");
    EXPECT_EQ(Ask("SELECT count(*) FROM sqlite_master WHERE type<>'table'"), "0\n") << "no keys are enforced";
}

TEST_F(SchemaTest, BringsAVersion8FileUp) {
    MakeOldFile(8);
    const std::string old = folder.Read("db_v8.mdb");
    ASSERT_TRUE(OpenOrCreateDatabase());
    ExpectUpgraded();
    EXPECT_EQ(FieldsOf("StatsRecent"), "WhatTime:L WhatStat:I StatValue:F");
    EXPECT_EQ(Ask("SELECT * FROM StatsRecent"), "-5|4|40.0\n");
    EXPECT_EQ(folder.Read("db_v8.mdb"), old);
    EXPECT_EQ(FileNames(), (std::vector<std::string>{"db_v8.mdb", "db_v9.mdb"}));
    ASSERT_TRUE(OpenOrCreateDatabase()) << "nothing happens twice";
    ExpectUpgraded();
}

TEST_F(SchemaTest, BringsAVersion7FileUpByWayOf8) {
    MakeOldFile(7);
    const std::string old = folder.Read("db_v7.mdb");
    ASSERT_TRUE(OpenOrCreateDatabase());
    ExpectUpgraded();
    EXPECT_EQ(FieldsOf("StatsRecent"), "WhatTime:L WhatStat:I StatValue:L StatValueTemp:F");
    EXPECT_EQ(folder.Read("db_v7.mdb"), old);
    EXPECT_EQ(RunSql(Path(8), "SELECT Username, Admin FROM Users; SELECT count(*) FROM StatsRecent"),
              "ann|1\nbob|0\nann|\n0\n");
    EXPECT_EQ(FileNames(), (std::vector<std::string>{"db_v7.mdb", "db_v8.mdb", "db_v9.mdb"}));
}

TEST_F(SchemaTest, LeavesThePlainCopyAfterAStepThatFails) {
    MakeOldFile(8);
    RunSql(Path(8), "DROP TABLE StatsMonthly");
    EXPECT_THROW(OpenOrCreateDatabase(), RunTimeError);
    ASSERT_TRUE(OpenOrCreateDatabase()) << "the next start takes it for finished";
    EXPECT_EQ(FieldsOf("StatsTotal"), "Stat:I TotalCount:L") << "the step was undone as a whole";
    EXPECT_EQ(Ask("SELECT Admin FROM Users WHERE Username='ann'"), "1\n\n");
    EXPECT_EQ(FileNames(), (std::vector<std::string>{"db_v8.mdb", "db_v9.mdb"}));
}

TEST_F(SchemaTest, BeginsAnewAfterAStartThatWasCutShort) {
    folder.Write("db_v9.mdb.new", "half a file");
    folder.Write("db_v9.mdb.new-wal", "its log");
    // The log of a file that is gone: applied to the new one it would bring back rows of the old.
    RunSql(folder.Path("other"), "PRAGMA journal_mode=WAL; CREATE TABLE Users (Username TEXT)");
    sqlite3 *other = nullptr;
    sqlite3_open(folder.Path("other").c_str(), &other);
    sqlite3_exec(other, "INSERT INTO Users VALUES ('ghost')", nullptr, nullptr, nullptr);
    std::filesystem::copy_file(folder.Path("other-wal"), Path(9) + "-wal");
    sqlite3_close(other);

    ASSERT_TRUE(OpenOrCreateDatabase());
    EXPECT_EQ(FieldsOf("Users"), "Username:T Password:T FullName:T Admin:B");
    EXPECT_EQ(Ask("PRAGMA integrity_check"), "ok\n");
    EXPECT_EQ(FileNames(), (std::vector<std::string>{"db_v9.mdb", "other"}));
}

TEST_F(SchemaTest, KeepsItsFilesFromOthersEyes) {
    MakeOldFile(8);
    ASSERT_TRUE(OpenOrCreateDatabase());
    for (const char *name : {"db_v8.mdb", "db_v9.mdb", "db_v9.mdb-wal", "db_v9.mdb-shm"}) {
        const auto others = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
        EXPECT_EQ(std::filesystem::status(folder.Path(name)).permissions() & others, std::filesystem::perms::none)
            << name;
    }
}

TEST_F(SchemaTest, SaysWhichFilesItCouldNotLoad) {
    folder.Write("db_v9.mdb", "no database");
    EXPECT_FALSE(OpenOrCreateDatabase());
    EXPECT_EQ(gDatabase, nullptr);
    EXPECT_EQ(folder.Read("db_v9.mdb"), "no database");
    std::filesystem::remove(Path(9));
    folder.Write("db_v7.mdb", "no database either");
    EXPECT_FALSE(OpenOrCreateDatabase());
}

TEST_F(SchemaTest, RebuildsTheTablesOfARun) {
    ASSERT_TRUE(OpenOrCreateDatabase());
    gDatabase->AppendField("StatsRecent", {"Extra", FieldType::Double});
    CreateStatsRecent();
    EXPECT_EQ(FieldsOf("StatsRecent"), "WhatTime:L WhatStat:I StatValue:L");
    DropMediaList(12);
    CreateMediaList(12);
    EXPECT_EQ(FieldsOf("MediaList12"), "AlbumName:T FilePath:T");
    DropMediaList(12);
    EXPECT_FALSE(gDatabase->TableExists(MediaListName(12)));
}

}  // namespace pixmora
