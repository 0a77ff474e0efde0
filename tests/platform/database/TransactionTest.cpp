// Reads under one lock.
#include <gtest/gtest.h>

#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "support/RawDatabase.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

class TransactionTest : public testing::Test {
protected:
    TransactionTest() : database(Database::CreateDatabase(ProgramPath(path))) {
        database->CreateTable("Counts", {{"N", FieldType::Long}});
        for (int n = 0; n < 10; ++n) Add(n);
    }

    void Add(int n) const {
        const auto rows = database->OpenRecordset("Counts", RecordsetType::Dynaset);
        rows->AddNew();
        rows->Set("N", n);
        rows->Update();
    }
    std::int64_t Count(const std::string &source = "Counts") const {
        return database->OpenRecordset(source, RecordsetType::Snapshot)->RecordCount();
    }
    TempFolder folder;
    const std::string path = folder.Path("test.mdb");
    const std::unique_ptr<Database> database;
};

}  // namespace

TEST_F(TransactionTest, ShowsAReadScopeOneStateOfTheFile) {
    {
        const ReadScope outer(*database);
        EXPECT_EQ(Count(), 10);
        RunSql(path, "INSERT INTO Counts VALUES (10)");
        const ReadScope inner(*database);
        EXPECT_EQ(Count(), 10);
    }
    EXPECT_EQ(Count(), 11);
    // The scopes have left nothing behind that a change would meet.
    Transaction transaction(*database);
    Add(11);
    {
        const ReadScope within(*database);
        EXPECT_EQ(Count(), 12);
    }
    transaction.Commit();
    EXPECT_EQ(RunSql(path, "SELECT count(*) FROM Counts"), "12\n");
}

TEST_F(TransactionTest, LetsAnOrderedRecordsetOutliveItsReadScope) {
    std::unique_ptr<Recordset> rows;
    {
        const ReadScope reads(*database);
        rows = database->OpenRecordset("SELECT * FROM Counts ORDER BY N DESC", RecordsetType::Snapshot);
        EXPECT_EQ(AsLong(rows->Value("N")), 9);
    }
    Add(12);
    rows->MoveNext();
    EXPECT_EQ(AsLong(rows->Value("N")), 8);
}

}  // namespace pixmora
