// The database's tables, made new and brought up from older files; the settings that an earlier version left.
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>

#include "platform/runtime/RunTimeError.h"
#include "store/Globals.h"
#include "store/Settings.h"
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
    std::string FileNames() const {
        std::set<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.Path()))
            names.insert(entry.path().filename().string() + " ");
        std::erase_if(names,
                      [](const std::string &name) { return name.ends_with("-wal ") || name.ends_with("-shm "); });
        return std::accumulate(names.begin(), names.end(), std::string());
    }

    /// A file as an earlier version left it, made by another tool.
    void MakeOldFile(int version) const {
        const auto samples = std::filesystem::path(__FILE__).parent_path();
        RunSql(Path(version), ReadBinaryFile((samples / "version7.sql").string()));
        if (version == 8) RunSql(Path(version), ReadBinaryFile((samples / "version8_adds.sql").string()));
    }

    /// Brings the file up, and looks at what is alike from either version.
    void ExpectUpgrade(int version) const {
        MakeOldFile(version);
        const std::string old = ReadBinaryFile(Path(version));
        ASSERT_TRUE(OpenOrCreateDatabase());
        EXPECT_EQ(ReadBinaryFile(Path(version)), old);
        const std::string counters = "RunningTime:L Visitors:L Thumbs:L Downloads:L Bandwidth:";
        EXPECT_EQ(FieldsOf("StatsTotal"), "Stat:I TotalCount:F");
        EXPECT_EQ(FieldsOf("StatsHourly"), "AlbumName:T WhichDay:D WhichHour:I " + counters + "F");
        EXPECT_EQ(FieldsOf("StatsDaily"), "AlbumName:T WhichDay:D " + counters + "L BandwidthTemp:F")
            << "a table without rows keeps the Long and the scratch field";
        EXPECT_EQ(Ask("SELECT Username, Admin, SeeAll FROM Users"), "ann|0|1\nbob|0|0\nann|0|0\n");
        EXPECT_EQ(Ask("SELECT * FROM StatsTotal"), "1|12.0\n4|2147483647.0\n");
        EXPECT_EQ(Ask("SELECT Visitors, Bandwidth FROM StatsHourly"), "1|\n2|40.0\n");
    }

    ProgramFolder folder;
};

}  // namespace

TEST_F(SchemaTest, BringsAVersion8FileUp) {
    ExpectUpgrade(8);
    EXPECT_EQ(FieldsOf("StatsRecent"), "WhatTime:L WhatStat:I StatValue:F");
    EXPECT_EQ(Ask("SELECT * FROM StatsRecent"), "-5|4|40.0\n");
    EXPECT_EQ(FileNames(), "db_v8.mdb db_v9.mdb ");
    for (const char *name : {"db_v8.mdb", "db_v9.mdb", "db_v9.mdb-wal", "db_v9.mdb-shm"})
        EXPECT_EQ(std::filesystem::status(folder.Path(name)).permissions(), std::filesystem::perms(0600)) << name;
}

TEST_F(SchemaTest, BringsAVersion7FileUpByWayOf8) {
    ExpectUpgrade(7);
    EXPECT_EQ(FieldsOf("StatsRecent"), "WhatTime:L WhatStat:I StatValue:L StatValueTemp:F");
    EXPECT_EQ(RunSql(Path(8), "SELECT Username, Admin FROM Users; SELECT count(*) FROM StatsRecent"),
              "ann|1\nbob|0\nann|\n0\n");
    EXPECT_EQ(FileNames(), "db_v7.mdb db_v8.mdb db_v9.mdb ");
}

TEST_F(SchemaTest, LeavesThePlainCopyAfterAStepThatFails) {
    MakeOldFile(8);
    RunSql(Path(8), "DROP TABLE StatsMonthly");
    EXPECT_THROW(OpenOrCreateDatabase(), RunTimeError);
    ASSERT_TRUE(OpenOrCreateDatabase()) << "the next start takes it for finished";
    EXPECT_EQ(FieldsOf("StatsTotal"), "Stat:I TotalCount:L") << "the step was undone as a whole";
    EXPECT_EQ(Ask("SELECT Admin FROM Users WHERE Username='ann'"), "1\n\n");
    EXPECT_EQ(FileNames(), "db_v8.mdb db_v9.mdb ");
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
    EXPECT_EQ(Ask("PRAGMA integrity_check; SELECT count(*) FROM Users"), "ok\n0\n");
    EXPECT_EQ(FileNames(), "db_v9.mdb other ");
}

TEST_F(SchemaTest, SaysWhichFilesItCouldNotLoad) {
    for (const char *bytes : {"no database", ""}) {
        folder.Write("db_v9.mdb", bytes);
        EXPECT_FALSE(OpenOrCreateDatabase());
        EXPECT_EQ(gDatabase, nullptr);
        EXPECT_EQ(folder.Read("db_v9.mdb"), bytes);
    }
    std::filesystem::remove(Path(9));
    folder.Write("db_v7.mdb", "no database either");
    EXPECT_FALSE(OpenOrCreateDatabase());
}

TEST_F(SchemaTest, SettingsMoveFromTheFormerNameAndSortMethod) {
    const std::string former = "Software\\VB and VBA Program Settings\\Pixmora! Digital Media Server";
    const auto setFormer = [&](const char *key, const char *name, const Registry::Value &value) {
        Registry::SetValue(Registry::Root::CurrentUser, former + key, name, value);
    };
    setFormer("\\Setup", "ServerTitle", "Old title");
    setFormer("\\Setup", "SortMethod", "3");
    setFormer("\\AlbumIDs", "Holiday", std::int64_t{7});
    SaveSetting("Setup", "Author", "Ann");
    MigrateSettings();
    const std::pair<const char *, const char *> moved[] = {
        {"ServerTitle", "Old title"}, {"Author", "Ann"}, {"SortMethod", "2"}};
    for (const auto &[key, value] : moved) EXPECT_EQ(GetSetting("Setup", key), value);
    EXPECT_EQ(GetSetting("AlbumIDs", "Holiday"), "7");
    EXPECT_FALSE(Registry::KeyExists(Registry::Root::CurrentUser, former));
    SaveSetting("Setup", "SortMethod", "1");
    MigrateSettings();
    EXPECT_EQ(GetSetting("Setup", "SortMethod"), "1");
}

}  // namespace pixmora
