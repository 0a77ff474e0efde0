// Database files: made, opened, damaged, killed; types of fields; transactions.
#include "platform/database/Database.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <variant>

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

    static void Add(Database &database, FieldValue value) {
        const auto rows = database.OpenRecordset("T", RecordsetType::Table);
        rows->AddNew();
        rows->Set(0, std::move(value));
        rows->Update();
    }

    /// What OpenDatabase says to the file; empty when it opens it.
    std::string Complaint() const {
        try {
            Open();
        } catch (const RunTimeError &error) {
            return error.Message();
        }
        return {};
    }

    TempFolder folder;
};

}  // namespace

TEST_F(DatabaseTest, IsAPlainFileOfTheEngine) {
    {
        const auto database = Create();
        database->CreateTable("Every Type",
                              {{"T", FieldType::Text}, {"L", FieldType::Long}, {"I", FieldType::Integer}});
        database->AppendField("Every Type", {"B", FieldType::Boolean});
        database->AppendField("Every Type", {"D", FieldType::Date});
        database->AppendField("Every Type", {"F", FieldType::Double});
        const auto rows = database->OpenRecordset("Every Type", RecordsetType::Table);
        rows->AddNew();
        rows->Set("T", "it's \"\xC3\xA9\"");
        rows->Set("L", 2147483647);
        rows->Set("I", -32768);
        rows->Set("B", true);
        rows->Set("D", MakeDate(2004, 3, 1, 16, 5, 6));
        rows->Set("F", 2.5);
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
    EXPECT_EQ(rows->Value("F"), FieldValue(2.5));
    rows->FindFirst("D=#3/1/2004#");
    EXPECT_EQ(rows->Value("B"), FieldValue(false));
}

TEST_F(DatabaseTest, ConvertsValuesToTheFieldsTypeOrRefusesThem) {
    const std::tuple<const char *, FieldType, FieldValue, std::variant<FieldValue, ErrorNumber>> cases[] = {
        // name, type of the field, given, outcome
        {"text to Long", FieldType::Long, " 12 ", FieldValue(std::int64_t{12})},
        {"half to even", FieldType::Long, 2.5, FieldValue(std::int64_t{2})},
        {"Boolean to Long", FieldType::Long, true, FieldValue(std::int64_t{1})},
        {"date to text", FieldType::Text, MakeDate(2004, 3, 1), FieldValue("3/1/2004")},
        {"Null to Boolean", FieldType::Boolean, Null{}, FieldValue(false)},
        {"text to date", FieldType::Date, "3/1/2004", FieldValue(MakeDate(2004, 3, 1))},
        {"above a Long", FieldType::Long, std::int64_t{2147483648}, ErrorNumber::Overflow},
        {"below a Long", FieldType::Long, -2147483649.0, ErrorNumber::Overflow},
        {"above an Integer", FieldType::Integer, 32768, ErrorNumber::Overflow},
        {"beyond every whole number", FieldType::Long, 1e30, ErrorNumber::Overflow},
        {"no number", FieldType::Long, "twelve", ErrorNumber::TypeMismatch},
        {"date for a number", FieldType::Double, MakeDate(2004, 3, 1), ErrorNumber::TypeMismatch},
        {"no date", FieldType::Date, "soon", ErrorNumber::TypeMismatch},
    };
    const auto database = Create();
    for (const auto &[name, type, given, outcome] : cases) {
        database->CreateTable("T", {{"F", type}});
        const auto error = ErrorOf([&, value = given] { Add(*database, value); });
        if (const auto *number = std::get_if<ErrorNumber>(&outcome)) {
            EXPECT_EQ(error, *number) << name;
        } else {
            const auto rows = database->OpenRecordset("T", RecordsetType::Table);
            EXPECT_EQ(rows->Value(0), std::get<FieldValue>(outcome)) << name;
        }
        database->DeleteTable("T");
    }
}

TEST_F(DatabaseTest, ChangesTablesWithTheirRows) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}, {"B", FieldType::Text}});
    Add(*database, 7);
    database->AppendField("T", {"C", FieldType::Boolean});
    EXPECT_EQ(database->OpenRecordset("T", RecordsetType::Table)->Value("C"), FieldValue(false));
    database->DeleteField("T", "b");
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    EXPECT_EQ(AsLong(rows->Value(0)), 7);
    EXPECT_EQ(database->Fields("T").back().Name, "C");
    EXPECT_EQ(ErrorOf([&] { database->DeleteField("T", "B"); }), ErrorNumber::ItemNotFound);
    EXPECT_EQ(ErrorOf([&] { database->DeleteTable("U"); }), ErrorNumber::ItemNotFound);
}

TEST_F(DatabaseTest, RefusesFilesThatItCannotUse) {
    EXPECT_EQ(Complaint(), "unable to open database file");
    for (const std::string &bytes : {std::string(), std::string(5000, 'x')}) {
        folder.Write("test.mdb", bytes);
        EXPECT_EQ(Complaint(), "file is not a database");
        EXPECT_EQ(ErrorOf([&] { Create(); }), ErrorNumber::DatabaseError);
        EXPECT_EQ(folder.Read("test.mdb"), bytes);
    }
    std::filesystem::remove(Path());
    folder.MakeFolder("test.mdb");
    EXPECT_EQ(Complaint(), "unable to open database file");
}

TEST_F(DatabaseTest, SaysThatAnotherProgramHoldsTheFile) {
    Create()->CreateTable("T", {{"A", FieldType::Long}});
    sqlite3 *other = nullptr;
    sqlite3_open(Path().c_str(), &other);
    sqlite3_exec(other, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    EXPECT_EQ(Complaint(), "database is locked");
    sqlite3_close(other);
    EXPECT_EQ(Complaint(), "");
}

TEST_F(DatabaseTest, WaitsForAnotherProgramsLockOnceUntilAChangeGotThrough) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}});
    database->SetLockWait(100);
    sqlite3 *other = nullptr;
    sqlite3_open(Path().c_str(), &other);
    for (int lock = 0; lock < 2; ++lock) {
        sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        const auto begun = std::chrono::steady_clock::now();
        EXPECT_EQ(ErrorOf([&] { Transaction transaction(*database); }), ErrorNumber::DatabaseFailure);
        const auto waited = std::chrono::steady_clock::now() - begun;
        EXPECT_GE(waited, std::chrono::milliseconds(100));
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(ErrorOf([&] { Add(*database, i); }), ErrorNumber::DatabaseFailure);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - begun - waited, std::chrono::milliseconds(20 * 100 / 2));
        EXPECT_EQ(database->OpenRecordset("T", RecordsetType::Table)->RecordCount(), lock) << "reading goes on";
        sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
        Add(*database, lock);
    }
    sqlite3_close(other);
}

TEST_F(DatabaseTest, AddsToARowThatIsStillTheOne) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Text}, {"L", FieldType::Long}, {"D", FieldType::Double}});
    RunSql(Path(), "INSERT INTO T VALUES ('x', 2147483000, 0.5), ('x', 1, 1), ('y', NULL, 2147483647)");
    const auto rows = database->OpenRecordset("T", RecordsetType::Dynaset);
    rows->FindFirst("A='Y'");
    const std::int64_t y = rows->Bookmark();
    rows->FindFirst("A='x'");
    const std::int64_t x = rows->Bookmark();
    EXPECT_TRUE(database->AddTo("t", x, "A='X' AND D < 1", 1, 647));
    EXPECT_FALSE(database->AddTo("T", x, "A='x'", 1, 1)) << "beyond a Long";
    EXPECT_FALSE(database->AddTo("T", y, "A='y'", 1, 1)) << "Null";
    EXPECT_TRUE(database->AddTo("T", y, "A='y'", 2, 1)) << "a Double has room";
    EXPECT_FALSE(database->AddTo("T", y, "A='x'", 2, 1)) << "another row's criteria";
    EXPECT_FALSE(database->AddTo("T", 4, "A='x'", 1, 1)) << "no such row";
    EXPECT_EQ(ErrorOf([&] { database->AddTo("T", x, "A='x'", 3, 1); }), ErrorNumber::ItemNotFound);
    EXPECT_EQ(RunSql(Path(), "SELECT * FROM T"), "x|2147483647|0.5\nx|1|1.0\ny||2147483648.0\n");
}

TEST_F(DatabaseTest, ReportsDamageWhereItIsMet) {
    {
        const auto database = Create();
        database->CreateTable("T", {{"A", FieldType::Text}});
        database->CreateTable("U", {{"A", FieldType::Text}});
        for (int i = 0; i < 50; ++i) Add(*database, std::string(500, 'a'));
    }
    const auto size = std::filesystem::file_size(Path());
    const std::size_t page = std::stoul(RunSql(Path(), "PRAGMA page_size"));
    {
        // Everything behind the pages of the head and of the tables' roots.
        std::fstream file(Path(), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(3 * page));
        file << std::string(size - 3 * page, '\xA5');
    }
    const auto database = Open();
    EXPECT_TRUE(database->OpenRecordset("U", RecordsetType::Table)->Eof());
    EXPECT_FALSE(database->Faults().empty());
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    EXPECT_EQ(ErrorOf([&] { rows->Eof(); }), ErrorNumber::DatabaseFailure);
}

TEST_F(DatabaseTest, MakesAScopesChangesTogetherOrNotAtAll) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}});
    const auto kept = [&] {
        return RunSql(Path(), "SELECT group_concat(A) FROM T");
    };
    {
        Transaction outer(*database);
        Add(*database, 1);
        {
            Transaction dropped(*database);
            Add(*database, 2);
        }
        Transaction inner(*database);
        Add(*database, 3);
        inner.Commit();
        EXPECT_EQ(kept(), "\n") << "the outermost decides";
        outer.Commit();
    }
    EXPECT_EQ(kept(), "1,3\n");
    {
        Transaction outer(*database);
        Transaction inner(*database);
        Add(*database, 4);
        database->CreateTable("U", {{"A", FieldType::Long}});
        EXPECT_EQ(database->Fields("U").size(), 1U);
        inner.Commit();
    }
    EXPECT_EQ(kept(), "1,3\n");
    EXPECT_FALSE(database->TableExists("U"));
    EXPECT_EQ(ErrorOf([&] { database->OpenRecordset("U", RecordsetType::Table); }), ErrorNumber::ItemNotFound);
}

TEST_F(DatabaseTest, ShowsAReadScopeOneStateOfTheFile) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}});
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
    // The scopes have left nothing behind that a change would meet.
    Transaction transaction(*database);
    Add(*database, 11);
    {
        const ReadScope within(*database);
        EXPECT_EQ(count(), 2);
    }
    transaction.Commit();
    EXPECT_EQ(RunSql(Path(), "SELECT count(*) FROM T"), "2\n");
}

TEST_F(DatabaseTest, LetsOthersReadAndWriteWhileRecordsetsAreOpen) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}});
    for (int i = 0; i < 3; ++i) Add(*database, i);
    const auto plain = database->OpenRecordset("T", RecordsetType::Table);
    const auto ordered = database->OpenRecordset("SELECT * FROM T ORDER BY A", RecordsetType::Snapshot);
    EXPECT_FALSE(plain->Eof());
    EXPECT_FALSE(ordered->Eof());
    RunSql(Path(), "INSERT INTO T VALUES (3)");
    Add(*database, 4);
    database->Checkpoint();
    for (int i = 0; i < 2; ++i) ordered->MoveNext();
    EXPECT_EQ(AsLong(ordered->Value(0)), 2);
    for (int i = 0; i < 4; ++i) plain->MoveNext();
    EXPECT_EQ(AsLong(plain->Value(0)), 4);
}

TEST_F(DatabaseTest, IsCopiedWhileItIsInUse) {
    const auto database = Create();
    database->CreateTable("T", {{"A", FieldType::Long}});
    Add(*database, 1);
    const Transaction transaction(*database);
    const auto reader = Open();
    reader->BackUp(ProgramPath(folder.Path("copy.mdb")));
    EXPECT_EQ(RunSql(folder.Path("copy.mdb"), "SELECT A FROM T"), "1\n");
    EXPECT_TRUE(Database::OpenDatabase(ProgramPath(folder.Path("copy.mdb")))->Faults().empty());
    EXPECT_THROW(reader->BackUp(ProgramPath(folder.Path("none/copy.mdb"))), RunTimeError);
}

TEST_F(DatabaseTest, KeepsTheLogSmall) {
    const auto database = Create();
    database->SetSynchronousFull(false);
    database->CreateTable("T", {{"A", FieldType::Text}});
    for (int i = 0; i < 10000; ++i) Add(*database, std::string(1000, 'a'));
    EXPECT_LT(std::filesystem::file_size(Path() + "-wal"), 20U << 20U);
}

// A process that writes and tells of each row that it has written is killed at some moment, several times over one
// file.
TEST_F(DatabaseTest, LosesNothingWhenItsProcessIsKilled) {
    Create()->CreateTable("T", {{"A", FieldType::Long}});
    int next = 0;
    for (int round = 0; round < 8; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            const auto database = Open();
            database->SetSynchronousFull(round % 2 == 0);
            for (int i = next;; ++i) {
                Transaction transaction(*database);
                Add(*database, i);
                Add(*database, -i);
                transaction.Commit();
                if (write(ends[1], &i, sizeof i) != sizeof i) _exit(1);
            }
        }
        close(ends[1]);
        int told = -1;
        int count = 0;
        for (int i = 0; count < 40 + 25 * round && read(ends[0], &i, sizeof i) == sizeof i; ++count) told = i;
        kill(child, SIGKILL);
        for (int i = 0; read(ends[0], &i, sizeof i) == sizeof i; ++count) told = i;
        close(ends[0]);
        waitpid(child, nullptr, 0);

        ASSERT_GE(count, 40) << "the writer came to an early end";
        const auto database = Open();
        const auto last = database->OpenRecordset("T", RecordsetType::Table)->RecordCount() / 2 - 1;
        EXPECT_GE(last, told);
        const auto sum = database->OpenRecordset("SELECT SUM(A) AS s FROM T", RecordsetType::Snapshot);
        EXPECT_EQ(AsLong(sum->Value("s")), 0) << "a transaction in half";
        next = static_cast<int>(last) + 1;
    }
    EXPECT_EQ(RunSql(Path(), "PRAGMA integrity_check"), "ok\n");
}

}  // namespace pixmora
