// Recordsets on a small database: moving, finding, changing.
#include <gtest/gtest.h>

#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "support/ErrorOf.h"
#include "support/RawDatabase.h"
#include "support/TempFolder.h"

namespace pixmora {

using namespace std::string_literals;

namespace {

class RecordsetTest : public testing::Test {
protected:
    RecordsetTest() : database(Database::CreateDatabase(ProgramPath(folder.Path("test.mdb")))) {
        database->CreateTable("Files", {{"AlbumName", FieldType::Text},
                                        {"FilePath", FieldType::Text},
                                        {"Views", FieldType::Long},
                                        {"Seen", FieldType::Date}});
        AddFile("Zoo", "\\a.JPG", 3);
        AddFile("zoo", "\\b.gif", 5);
        AddFile("Alps", "\\c.mov", 3);
        AddFile("Alps", "\\d.jpg", Null{});
        AddFile("alps", "\\e1.jpg", 9);
    }

    /// The file "\\a..." was seen on March 1, "\\b..." on March 2 and so on.
    void AddFile(const std::string &album, const std::string &path, FieldValue views) {
        const auto rows = Open("Files");
        rows->AddNew();
        rows->Set("AlbumName", album);
        rows->Set("FilePath", path);
        rows->Set("Views", std::move(views));
        rows->Set("Seen", AddDays(MakeDate(2004, 3, 1), path[1] - 'a'));
        rows->Update();
    }

    void DeleteAll(const std::string &criteria) {
        const auto rows = Open("Files");
        for (rows->FindFirst(criteria); !rows->NoMatch(); rows->FindNext(criteria)) rows->Delete();
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

    TempFolder folder;
    std::unique_ptr<Database> database;
};

}  // namespace

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
        const auto rows = Open("Files");
        std::string found;
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
    const std::pair<double, const char *> shares[] = {{0, "abcde"}, {0.124, "abcde"}, {0.126, "bcde"}, {0.876, "e"}};
    for (const auto &[share, names] : shares) {
        rows->MoveAlong(share);
        EXPECT_EQ(Names(*rows), names) << share;
    }
    DeleteAll("FilePath='\\c.mov' or FilePath='\\a.JPG'");
    rows->MoveAlong(0.5);
    EXPECT_EQ(Names(*rows), "de");
    DeleteAll("FilePath LIKE '*'");
    rows->MoveAlong(0.5);
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(ErrorOf([&] { Open("SELECT * FROM Files")->MoveAlong(0); }), ErrorNumber::InvalidProcedureCall);
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

TEST_F(RecordsetTest, EditsTheRowAsItStandsNow) {
    const auto rows = Open("Files");
    EXPECT_EQ(AsLong(rows->Value("views")), 3);
    const auto other = Open("Files");
    other->Edit();
    other->Set(2, 13);
    other->Update();

    rows->Edit();
    rows->Set("Views", AsLong(rows->Value("Views")) + 1);
    EXPECT_EQ(AsLong(rows->Value("Views")), 14) << "a value set is seen before Update";
    rows->Update();
    EXPECT_EQ(AsLong(rows->Value("Views")), 14);
}

TEST_F(RecordsetTest, AddsRowsAndDropsWhatWasNotUpdated) {
    const auto rows = Open("Files");
    rows->MoveNext();
    rows->AddNew();
    EXPECT_TRUE(IsNull(rows->Value("AlbumName")));
    rows->Set("FilePath", "\\f.jpg");
    rows->Update();
    EXPECT_EQ(AsText(rows->Value("FilePath")), "\\b.gif") << "the current row stays";
    rows->Edit();
    rows->Set("FilePath", "\\x.jpg");
    rows->MoveNext();
    EXPECT_EQ(ErrorOf([&] { rows->Update(); }), ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(ErrorOf([&] { rows->Set("Views", 1); }), ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(Names("Files"), "abcdef");
    EXPECT_EQ(RunSql(folder.Path("test.mdb"), "SELECT * FROM Files WHERE rowid=6"), "|\\f.jpg||\n");
}

TEST_F(RecordsetTest, NamesWhatItCannotFindOrChange) {
    const auto files = Open("Files");
    const auto closed = Open("Files");
    closed->Close();
    const auto snapshot = Open("Files", RecordsetType::Snapshot);
    const auto statement = Open("SELECT * FROM Files");
    const std::pair<std::function<void()>, ErrorNumber> cases[] = {
        {[&] { Open("Nothing"); }, ErrorNumber::ItemNotFound},
        {[&] { Open("SELECT Nothing FROM Files"); }, ErrorNumber::ItemNotFound},
        {[&] { Open("DELETE FROM Files"); }, ErrorNumber::ItemNotFound},
        {[&] { Open("SELECT * FROM Files WHERE Nothing=1"); }, ErrorNumber::DatabaseError},
        {[&] { files->FindFirst("Nothing='Nothing'"); }, ErrorNumber::DatabaseError},
        {[&] { files->FindFirst("Views=" + QuotedText("x' OR 'a'='a")); }, ErrorNumber::SyntaxError},
        {[&] { files->Value(-1); }, ErrorNumber::ItemNotFound},
        {[&] { closed->MoveNext(); }, ErrorNumber::ObjectNotSet},
        {[&] { snapshot->AddNew(); }, ErrorNumber::DatabaseError},
        {[&] { snapshot->Edit(); }, ErrorNumber::DatabaseError},
        {[&] { statement->Edit(); }, ErrorNumber::DatabaseError},
        {[&] { statement->FindFirst("Views=3"); }, ErrorNumber::InvalidProcedureCall},
    };
    for (const auto &[call, error] : cases) EXPECT_EQ(ErrorOf(call), error);
}

}  // namespace pixmora
