// Database files, their transactions, and recordsets on them: moving, finding, changing; what is no statement.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/database/StatementTranslator.h"
#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/RawDatabase.h"
#include "support/TempFolder.h"

namespace pixmora {

using namespace std::string_literals;

namespace {

class DatabaseTest : public testing::Test {
protected:
    std::string Path() const { return folder.Path("test.mdb"); }
    std::unique_ptr<Database> Open() const { return Database::OpenDatabase(ProgramPath(Path())); }
    /// A new file with the table T of one field A.
    std::unique_ptr<Database> CreateWithTable(FieldType type = FieldType::Long) const {
        auto database = Database::CreateDatabase(ProgramPath(Path()));
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

/// With the table Files, and five rows in it.
class RecordsetTest : public DatabaseTest {
protected:
    RecordsetTest() {
        database->CreateTable("Files", {{"AlbumName", FieldType::Text},
                                        {"FilePath", FieldType::Text},
                                        {"Views", FieldType::Long},
                                        {"Seen", FieldType::Date}});
        RunSql(Path(),
               "INSERT INTO Files VALUES ('Zoo', '\\a.JPG', 3, '2004-03-01'), ('zoo', '\\b.gif', 5, '2004-03-02'),"
               "('Alps', '\\c.mov', 3, '2004-03-03'), ('Alps', '\\d.jpg', NULL, '2004-03-04'),"
               "('alps', '\\e1.jpg', 9, '2004-03-05')");
    }

    std::unique_ptr<Recordset> Open(const std::string &source, RecordsetType type = RecordsetType::Dynaset) {
        return database->OpenRecordset(source, type);
    }

    /// The third characters of the paths in the order in which the rows come.
    static std::string Names(Recordset &rows) {
        std::string names;
        for (; !rows.Eof(); rows.MoveNext()) names += AsText(rows.Value("FilePath"))[1];
        return names;
    }
    std::string Names(const std::string &source) { return Names(*Open(source)); }

    const std::unique_ptr<Database> database = CreateWithTable();
};

}  // namespace

TEST_F(DatabaseTest, IsAPlainFileOfTheEngine) {
    const auto database = CreateWithTable(FieldType::Text);
    const std::pair<const char *, FieldType> others[] = {
        {"L", FieldType::Long}, {"B", FieldType::Boolean}, {"D", FieldType::Date}, {"F", FieldType::Double}};
    for (const auto &[name, type] : others) database->AppendField("T", {name, type});
    const auto rows = database->OpenRecordset("t", RecordsetType::Table);
    const FieldValue values[] = {"it's \"\xC3\xA9\"", 2147483647, true, MakeDate(2004, 3, 1, 16, 5, 6), 2.5};
    rows->AddNew();
    for (int i = 0; i < 5; ++i) rows->Set(i, values[i]);
    rows->Update();
    EXPECT_EQ(RunSql(Path(), "SELECT * FROM T"), "it's \"\xC3\xA9\"|2147483647|1|2004-03-01 16:05:06|2.5\n");
    EXPECT_EQ(rows->Value("d"), values[3]);
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

TEST_F(RecordsetTest, FindsByConditionsOfTheProgramsKind) {
    const std::pair<const char *, const char *> cases[] = {
        {"AlbumName='ZOO'", "ab"},
        {"AlbumName < 'B' and Views > 2", "ce"},
        {"FilePath LIKE \"*.jpg\"", "ade"},
        {"FilePath LIKE '*1.jpg' OR FilePath LIKE '\\B.gif'", "be"},
        {"AlbumName LIKE 'Z_o' OR FilePath LIKE '%' OR FilePath LIKE '!*'", ""},
        {"AlbumName='; -- /* %_* \\ \xC3\xA9 ) or 1=1' OR AlbumName=''", ""},
        {"(Views=3 or Views=9) and AlbumName='alps'", "ce"},
        {"Views > -3599999 AND Views < 4", "ac"},
        {"Seen < #3/2/2004# OR Seen = #3/4/2004#", "ad"},
    };
    for (const auto &[condition, names] : cases) {
        EXPECT_EQ(Names("SELECT * FROM Files WHERE "s + condition), names) << condition;
        std::string found;
        const auto rows = Open("Files");
        for (rows->FindFirst(condition); !rows->NoMatch(); rows->FindNext(condition))
            found += AsText(rows->Value("FilePath"))[1];
        EXPECT_EQ(found, names) << condition;
    }
}

TEST_F(RecordsetTest, SortsWithoutRegardToCaseAndKeepsTheTablesOrderBetweenEquals) {
    EXPECT_EQ(Names("SELECT * FROM Files ORDER BY AlbumName"), "cdeab");
    EXPECT_EQ(Names("SELECT * FROM Files ORDER BY Views DESC, FilePath DESC"), "ebcad");
    EXPECT_EQ(Names("SELECT FilePath FROM Files WHERE Views > 3 ORDER BY AlbumName DESC"), "be");
    EXPECT_EQ(Names("SELECT TOP 2 * FROM Files WHERE Views < 9 ORDER BY Views DESC, FilePath DESC"), "bc");
}

TEST_F(RecordsetTest, MovesAlongTheTableToAShareOfIt) {
    const auto rows = Open("Files");
    for (const auto &[share, names] : {std::pair{0.124, "abcde"}, {0.126, "bcde"}, {0.876, "e"}}) {
        rows->MoveAlong(share);
        EXPECT_EQ(Names(*rows), names) << share;
    }
}

TEST_F(RecordsetTest, KeepsItsRowWhenNothingMatchesAndLosesItWhenItIsDeleted) {
    const auto rows = Open("Files");
    rows->FindFirst("Views=5");
    rows->FindNext("Views=3");
    rows->FindNext("Views=3");
    EXPECT_TRUE(rows->NoMatch());
    EXPECT_EQ(Names(*rows), "cde");
    for (rows->FindFirst("AlbumName='alps'"); !rows->NoMatch(); rows->FindNext("AlbumName='alps'")) {
        rows->Delete();
        EXPECT_EQ(ErrorOf([&] { rows->Value("FilePath"); }), ErrorNumber::NoCurrentRecord);
        EXPECT_EQ(ErrorOf([&] { rows->Delete(); }), ErrorNumber::NoCurrentRecord);
    }
    EXPECT_EQ(Names("Files"), "ab");
}

TEST_F(RecordsetTest, EditsTheRowAsItStandsNowAndDropsWhatWasNotUpdated) {
    const auto rows = Open("Files");
    const auto views = [&] {
        return AsLong(rows->Value("views"));
    };
    EXPECT_EQ(views(), 3);
    RunSql(Path(), "UPDATE Files SET Views=13 WHERE rowid=1");
    rows->Edit();
    rows->Set("Views", views() + 1);
    EXPECT_EQ(views(), 14) << "a value set is seen before Update";
    rows->Update();
    EXPECT_EQ(views(), 14);

    rows->AddNew();
    EXPECT_TRUE(IsNull(rows->Value("AlbumName")));
    rows->Set("FilePath", "\\f.jpg");
    rows->Update();
    EXPECT_EQ(views(), 14) << "the current row stays";
    rows->Edit();
    rows->Set("FilePath", "\\x.jpg");
    rows->MoveNext();
    EXPECT_EQ(ErrorOf([&] { rows->Update(); }), ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(Names("Files"), "abcdef");
    EXPECT_EQ(RunSql(Path(), "SELECT * FROM Files WHERE rowid=6"), "|\\f.jpg||\n");
}

/// Either the translation refuses it or the engine does.
TEST_F(DatabaseTest, RefusesWhatIsNoStatementAndNoCondition) {
    const auto database = CreateWithTable(FieldType::Text);
    const auto rows = database->OpenRecordset("T", RecordsetType::Table);
    std::vector<std::string> lines = {"", "a='b\0c'"s, "a\0=1"s,
                                      std::string(5000, '(') + "a=1" + std::string(5000, ')')};
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "refused.tsv");
    for (std::string line; std::getline(table, line);) lines.push_back(line);
    EXPECT_GT(lines.size(), 35U);
    for (const std::string &line : lines) {
        const bool isWhole = IsStatement(line);
        const std::string statement = isWhole ? line : "SELECT * FROM T WHERE " + line;
        EXPECT_NE(ErrorOf([&] { database->OpenRecordset(statement, RecordsetType::Snapshot)->Eof(); }), ErrorNumber{})
            << line;
        EXPECT_NE(ErrorOf([&] { rows->FindFirst(line); }), ErrorNumber{}) << line;
    }
}

}  // namespace pixmora
