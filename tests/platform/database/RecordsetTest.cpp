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
        RunSql(folder.Path("test.mdb"),
               "INSERT INTO Files VALUES ('Zoo', '\\a.JPG', 3, '2004-03-01'), ('zoo', '\\b.gif', 5, '2004-03-02'),"
               "('Alps', '\\c.mov', 3, '2004-03-03'), ('Alps', '\\d.jpg', NULL, '2004-03-04'),"
               "('alps', '\\e1.jpg', 9, '2004-03-05')");
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
    const auto namesAt = [&](double share) {
        rows->MoveAlong(share);
        return Names(*rows);
    };
    EXPECT_EQ(namesAt(0.124), "abcde");
    EXPECT_EQ(namesAt(0.126), "bcde");
    EXPECT_EQ(namesAt(0.876), "e");
    DeleteAll("FilePath='\\c.mov' or FilePath='\\a.JPG'");
    EXPECT_EQ(namesAt(0.5), "de");
    DeleteAll("FilePath LIKE '*'");
    EXPECT_EQ(namesAt(0.5), "");
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
    RunSql(folder.Path("test.mdb"), "UPDATE Files SET Views=13 WHERE rowid=1");
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
    EXPECT_EQ(RunSql(folder.Path("test.mdb"), "SELECT * FROM Files WHERE rowid=6"), "|\\f.jpg||\n");
}

}  // namespace pixmora
