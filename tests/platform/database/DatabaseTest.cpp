// Database files: made, opened, damaged; types of fields; transactions.
#include "platform/database/Database.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/RawDatabase.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

class DatabaseTest : public testing::Test {
protected:
    std::string Path() const { return folder.Path("test.mdb"); }
    std::unique_ptr<Database> Create() const { return Database::CreateDatabase(ProgramPath(Path())); }
    std::unique_ptr<Database> Open() const { return Database::OpenDatabase(ProgramPath(Path())); }
    /// A new file with the table T of one field A.
    std::unique_ptr<Database> CreateWithTable(FieldType type = FieldType::Long) const {
        auto database = Create();
        database->CreateTable("T", {{"A", type}});
        return database;
    }

    static void Add(Database &database, FieldValue value) {
        const auto rows = database.OpenRecordset("T", RecordsetType::Table);
        rows->AddNew();
        rows->Set(0, std::move(value));
        rows->Update();
    }

    TempFolder folder;
};

}  // namespace

TEST_F(DatabaseTest, IsAPlainFileOfTheEngine) {
    {
        const auto database = Create();
        database->CreateTable("Every Type", {{"T", FieldType::Text}, {"L", FieldType::Long}});
        const std::pair<const char *, FieldType> others[] = {
            {"I", FieldType::Integer}, {"B", FieldType::Boolean}, {"D", FieldType::Date}, {"F", FieldType::Double}};
        for (const auto &[name, type] : others) database->AppendField("Every Type", {name, type});
        const auto rows = database->OpenRecordset("Every Type", RecordsetType::Table);
        const FieldValue values[] = {
            "it's \"\xC3\xA9\"", 2147483647, -32768, true, MakeDate(2004, 3, 1, 16, 5, 6), 2.5};
        rows->AddNew();
        for (int i = 0; i < 6; ++i) rows->Set(i, values[i]);
        rows->Update();
        rows->AddNew();
        rows->Set("D", MakeDate(2004, 3, 1));
        rows->Update();
    }
    EXPECT_FALSE(std::filesystem::exists(Path() + "-wal")) << "closed, the file is whole by itself";
    EXPECT_EQ(RunSql(Path(), "SELECT * FROM [Every Type]"),
              "it's \"\xC3\xA9\"|2147483647|-32768|1|2004-03-01 16:05:06|2.5\n|||0|2004-03-01|\n");
    const auto database = Open();
    const auto rows = database->OpenRecordset("every type", RecordsetType::Snapshot);
    EXPECT_EQ(rows->Value("b"), FieldValue(true));
    EXPECT_EQ(rows->Value("D"), FieldValue(MakeDate(2004, 3, 1, 16, 5, 6)));
    rows->FindFirst("D=#3/1/2004#");
    EXPECT_EQ(rows->Value("B"), FieldValue(false));
}

TEST_F(DatabaseTest, SaysThatAnotherProgramHoldsTheFile) {
    CreateWithTable();
    sqlite3 *other = nullptr;
    sqlite3_open(Path().c_str(), &other);
    sqlite3_exec(other, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    const ClockSetForTest clock(9000, MakeDate(2004, 3, 1));
    EXPECT_EQ(MessageOf([this] { Open(); }), "another program is using the database");
    EXPECT_EQ(GetTickCount(), 9000 + 2000) << "ms, in which most programs come to an end";
    sqlite3_close(other);
    EXPECT_EQ(MessageOf([this] { Open(); }), "");
}

TEST_F(DatabaseTest, ReportsDamageWhereItIsMet) {
    {
        const auto database = CreateWithTable(FieldType::Text);
        for (int i = 0; i < 50; ++i) Add(*database, std::string(500, 'a'));
    }
    const std::string file = folder.Read("test.mdb");
    const std::size_t whole = 2 * std::stoul(RunSql(Path(), "PRAGMA page_size"));  // the head and the table's root
    folder.Write("test.mdb", file.substr(0, whole) + std::string(file.size() - whole, '\xA5'));
    const auto database = Open();
    EXPECT_FALSE(database->Faults().empty());
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    EXPECT_EQ(ErrorOf([&] { rows->Eof(); }), ErrorNumber::DatabaseFailure);
}

TEST_F(DatabaseTest, MakesAScopesChangesTogetherOrNotAtAll) {
    const auto database = CreateWithTable();
    const auto kept = [&] {
        return RunSql(Path(), "SELECT group_concat(A) FROM T");
    };
    for (const bool isCommitted : {true, false}) {
        Transaction outer(*database);
        Add(*database, isCommitted ? 1 : 4);
        {
            Transaction dropped(*database);
            Add(*database, 2);
        }
        Transaction inner(*database);
        Add(*database, 3);
        if (!isCommitted) database->CreateTable("U", {{"A", FieldType::Long}});
        EXPECT_EQ(ErrorOf([&] { database->Fields("U"); }) == ErrorNumber{}, !isCommitted);
        inner.Commit();
        EXPECT_EQ(kept(), isCommitted ? "\n" : "1,3\n") << "the outermost decides";
        if (isCommitted) outer.Commit();
    }
    EXPECT_EQ(kept(), "1,3\n");
    EXPECT_FALSE(database->TableExists("U"));
    EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("U", RecordsetType::Table); }), ErrorNumber::ItemNotFound);
}

TEST_F(DatabaseTest, ShowsAReadScopeOneStateOfTheFile) {
    const auto database = CreateWithTable();
    const auto count = [&] {
        return database->OpenRecordset("T", RecordsetType::Table)->RecordCount();
    };
    {
        const ReadScope outer(*database);
        EXPECT_EQ(count(), 0);
        RunSql(Path(), "INSERT INTO T VALUES (10)");
        const ReadScope inner(*database);
        EXPECT_EQ(count(), 0);
    }
    EXPECT_EQ(count(), 1);
    Transaction transaction(*database);
    Add(*database, 11);
    const auto countWithin = [&] {
        const ReadScope within(*database);
        return count();
    };
    EXPECT_EQ(countWithin(), 2);
    transaction.Commit();
    EXPECT_EQ(RunSql(Path(), "SELECT count(*) FROM T"), "2\n");
}

TEST_F(DatabaseTest, LetsOthersReadAndWriteWhileRecordsetsAreOpen) {
    const auto database = CreateWithTable();
    for (int i = 0; i < 3; ++i) Add(*database, i);
    const auto plain = database->OpenRecordset("T", RecordsetType::Table);
    const auto ordered = database->OpenRecordset("SELECT * FROM T ORDER BY A", RecordsetType::Snapshot);
    EXPECT_FALSE(plain->Eof() || ordered->Eof());
    RunSql(Path(), "INSERT INTO T VALUES (3)");
    Add(*database, 4);
    database->Checkpoint();
    database->CreateTable("U", {{"A", FieldType::Long}});
    database->DeleteTable("U");
    for (int i = 0; i < 2; ++i) ordered->MoveNext();
    EXPECT_EQ(AsLong(ordered->Value(0)), 2);
    for (int i = 0; i < 4; ++i) plain->MoveNext();
    EXPECT_EQ(AsLong(plain->Value(0)), 4);
}

TEST_F(DatabaseTest, IsCopiedWhileItIsInUse) {
    const auto database = CreateWithTable();
    Add(*database, 1);
    const Transaction transaction(*database);
    database->Checkpoint();  // in vain
    const std::string copy = folder.Path("copy.mdb");
    Open()->BackUp(ProgramPath(copy));
    EXPECT_EQ(RunSql(copy, "SELECT A FROM T; PRAGMA integrity_check"), "1\nok\n");
    EXPECT_EQ(std::filesystem::status(copy).permissions(), std::filesystem::perms(0600));
    EXPECT_THROW(Open()->BackUp(ProgramPath(folder.Path("none/copy.mdb"))), RunTimeError);
}

TEST_F(DatabaseTest, KeepsTheLogSmall) {
    const auto database = CreateWithTable(FieldType::Text);
    for (int i = 0; i < 24; ++i) Add(*database, std::string(1 << 20, 'a'));
    EXPECT_LT(std::filesystem::file_size(Path() + "-wal"), 20U << 20U);
}

}  // namespace pixmora
