// What the dialogs of albums, users, rights and the order of directories decide, on a database of the test's own; and
// what the setup dialogs' rules say of texts, by the rows of rules.tsv.
#include <sys/stat.h>
#include <utime.h>

#include <filesystem>
#include <fstream>

#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/AccessEditor.h"
#include "setup/rules/Autostart.h"
#include "setup/rules/DirOrderEditor.h"
#include "setup/rules/HelpTexts.h"
#include "setup/rules/InternetState.h"
#include "setup/rules/SetupDialog.h"
#include "setup/rules/StripTags.h"
#include "setup/rules/UserEditor.h"
#include "store/Popularity.h"
#include "store/Statistics.h"
#include "support/RawDatabase.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

using Row = std::vector<std::string>;

std::string AlbumRefusal(const Row &row) {
    AlbumFields fields;
    fields.Name = row[2];
    fields.Directory = row[3];
    fields.Pictures = fields.Movies = !row[4].empty();
    const auto refusal = AlbumEditor::Validate(fields);
    return refusal ? refusal->Message : "";
}

std::string UserRefusalText(const Row &row) {
    const auto refusal = ValidateUser({row[2], row[3], row[4], false}, row[5]);
    return refusal ? refusal->Message : "";
}

std::string Said(const std::string &rule, const Row &row) {
    if (rule == "album") return AlbumRefusal(row);
    if (rule == "autostart") return Split(AutostartEntry(row[2]), "Exec=")[1];
    if (rule == "number") return NumericText(row[2]);
    if (rule == "path") return AbbreviatedDir(row[2]);
    if (rule == "plain text") return StripTags(row[2], row[3]);
    if (rule == "route") return HasDefaultRoute("Iface Destination Gateway\n" + row[2]) ? "yes" : "no";
    if (rule == "service") return ServiceName(row[2]);
    return rule == "user" ? UserRefusalText(row) : "no such rule";
}

using Editors = SetupFixture;

TEST_F(Editors, SayOfTextsWhatTheTableSays) {
    SaveUser({"Ann", "a", "a", true}, "");
    std::ifstream table(std::filesystem::path(__FILE__).parent_path() / "rules.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with('#')) continue;
        const std::string bytes = Replace(Replace(line, "\\r", "\r"), "\\n", "\n");
        const Row row = Split(Replace(bytes, "{folder}", Program.MakeFolder("albums")), "\t");
        ASSERT_GT(row.size(), 2U) << line;
        EXPECT_EQ(Said(row[0], row), row[1]) << line;
        ++rows;
    }
    EXPECT_EQ(rows, 37);
}

TEST_F(Editors, ANewAlbumGetsTheNextNumber) {
    AlbumFields fields;
    fields.Name = "Trips";
    fields.Directory = Program.MakeFolder("albums/Trips") + "/";
    fields.Description = "<b>Say \"hi\"</b>";
    fields.FeaturedImage = 2;
    AlbumEditor().Save(fields);
    MakeAlbum("Home");
    EXPECT_EQ(GetSetting("AlbumIDs", "Home"), "2");
    EXPECT_EQ(GetSetting("Setup", "NextAlbumID"), "2");
    const AlbumFields stored = AlbumEditor("trips").Load();
    EXPECT_EQ(stored.Directory, Program.Path("albums/Trips"));
    EXPECT_EQ(stored.Description, "Say 'hi'");
    EXPECT_EQ(stored.FeaturedImage, 2);
}

TEST_F(Editors, ARenameGoesThroughTheTablesAndADeletionLeavesTheStatistics) {
    MakeAlbum("Old");
    MakeAlbum("Other");
    AddRight("Old", "\\O'Brien", "Ann");
    for (const char *path : {"\\a.jpg", "\\b.jpg"}) CountFileVisit("Old", path);
    CountDirVisit("Old", "");
    RecordStat(Stat::Thumbs, "Old", 1);
    RunSql(SystemPath(DatabasePath(CurrentSchemaVersion)), "INSERT INTO DBOrder (AlbumName) VALUES ('Old')");
    AlbumFields fields = AlbumEditor("Old").Load();
    fields.Name = "New";
    AlbumEditor("Old").Save(fields);
    const auto names = [] {
        std::string all;
        for (const char *table : {"Albums", "PrivateDirs", "DBOrder", "PopularFiles", "PopularDirs", "StatsHourly",
                                  "StatsDaily", "StatsMonthly"})
            all += Column(table, "AlbumName") + " ";
        return all;
    };
    EXPECT_EQ(names(), "New|Other| New| New| New|New| New| New| New| Old| ");
    EXPECT_EQ(GetSetting("AlbumIDs", "Old") + GetSetting("AlbumIDs", "New"), "1");
    AlbumEditor("New").Delete();
    EXPECT_EQ(names(), "Other|     New| New| Old| ");
    EXPECT_THROW(AlbumEditor("New").Load(), RunTimeError);
}

TEST_F(Editors, AMovedAlbumAsksAndResetsItsPopularity) {
    MakeAlbum("A");
    MakeAlbum("B");
    CountFileVisit("B", "\\same.jpg");
    CountFileVisit("A", "\\same.jpg");
    CountDirVisit("A", "\\sub");
    AlbumFields fields = AlbumEditor("A").Load();
    fields.Directory = Program.MakeFolder("elsewhere");
    fields.Description = "moved";
    const std::string question = "You have changed your album's directory!...";
    Owner.ExpectMessage(question, CriticalQuestion, AnswerNo);
    EXPECT_EQ(AlbumEditor("A").Save(fields).Directory, Program.Path("albums/A"));
    EXPECT_EQ(AlbumEditor("A").Load().Description, "moved");
    Owner.ExpectMessage(question, CriticalQuestion, AnswerYes);
    AlbumEditor("A").Save(fields);
    EXPECT_EQ(AlbumEditor("A").Load().Directory, Program.Path("elsewhere"));
    EXPECT_EQ(Column("PopularFiles", "AlbumName"), "A|")
        << "the first row with that path goes, whichever album it is of";
    EXPECT_EQ(Column("PopularDirs", "DirPath"), "");
}

TEST_F(Editors, SwitchingSubdirectoriesOffAsksAboutPopularOnes) {
    MakeAlbum("A");
    AlbumFields fields = AlbumEditor("A").Load();
    CountFileVisit("A", "\\top.jpg");
    CountDirVisit("A", "");
    for (const bool subDirs : {false, true}) {
        fields.SubDirs = subDirs;
        AlbumEditor("A").Save(fields);
    }
    CountFileVisit("A", "\\sub\\deep.jpg");
    CountDirVisit("A", "\\sub");
    fields.SubDirs = false;
    Owner.ExpectMessage("You have decided to stop including subdirectories...", CriticalQuestion, AnswerNo);
    AlbumEditor("A").Save(fields);
    EXPECT_EQ(Column("PopularFiles", "FilePath"), "\\top.jpg|");
    EXPECT_EQ(Column("PopularDirs", "DirPath"), "\\|");
    CountFileVisit("A", "\\sub\\deep.jpg");
    EXPECT_EQ(AlbumEditor("A").Save(fields).SubDirs, false) << "asked once, when they are switched off";
}

TEST_F(Editors, UsersAreSaved) {
    EXPECT_EQ(SaveUser({"Ann", "a", "a", true}, ""), "User Added!");
    AddRight("A", "\\x", "Ann");
    EXPECT_EQ(SaveUser({"Anna", "b", "b", false}, "Ann"), "User Information Saved!");
    EXPECT_EQ(GetUserNames(), std::vector<std::string>{"Anna"});
    EXPECT_FALSE(LoadUser("anna").Admin);
    EXPECT_TRUE(HasRight("A", "\\x", "Ann")) << "a new name does not reach the rights";
    EXPECT_FALSE(HasRight("A", "\\y", "Ann"));
}

class DirOrder : public SetupFixture {
protected:
    DirOrder() {
        for (const char *name : {"b", "a", "O'Brien", ".hidden", "a/deep", "a/deeper", "b/only"}) {
            Program.MakeFolder(std::string("albums/Trips/") + name);
        }
        MakeAlbum("Trips");
    }
    std::string Names() const {
        std::string names;
        for (const DirOrderEditor::Row &row : editor.Rows()) names += row.Name + " ";
        return names;
    }

    DirOrderEditor editor;
};

TEST_F(DirOrder, MovesAreKeptBySavingOnly) {
    editor.Open("Trips:\\");
    EXPECT_EQ(Names(), "O'Brien a b ");
    EXPECT_TRUE(editor.CanSave());
    EXPECT_EQ(editor.MoveUp(0), 0);
    EXPECT_EQ(editor.MoveDown(2), 2);
    EXPECT_FALSE(editor.OrderChanged());
    EXPECT_EQ(editor.MoveBy(0, 9), 2) << "a drag past the end stops there";
    EXPECT_EQ(Names(), "a b O'Brien ");
    Owner.ExpectMessage("Do you want to save changes to the current directory structure?", 36, AnswerNo);
    editor.OfferToSave();
    editor.Open("Trips:\\");
    EXPECT_EQ(editor.MoveBy(2, -2), 0);
    Owner.ExpectMessage("Do you want to save changes to the current directory structure?", 36, AnswerYes);
    editor.OfferToSave();
    editor.OfferToSave();
    EXPECT_EQ(Column("DBOrder", "SubDir"), "\\\\b|\\\\O%34Brien|\\\\a|")
        << "an album's own children have two separators";
    Program.MakeFolder("albums/Trips/later");
    editor.Open("Trips:\\");
    EXPECT_EQ(Names(), "later b O'Brien a ");
    editor.Save();
    EXPECT_EQ(Column("DBOrder", "SeqPos"), "2|3|4|1|");
    editor.Open("Trips:\\a");
    editor.Save();
    EXPECT_NE(Column("DBOrder", "SubDir").find("|\\a\\deep|"), std::string::npos);
    editor.Open("Trips:\\b");
    EXPECT_FALSE(editor.CanSave());
}

TEST_F(DirOrder, PreSortsRenumberTheRows) {
    for (const auto &[name, time] : {std::pair{"a", 3000120}, {"b", 3000000}, {"O'Brien", 3000060}}) {
        const utimbuf times{time, time};
        utime(Program.Path(std::string("albums/Trips/") + name).c_str(), &times);
    }
    editor.Open("Trips:\\");
    const std::pair<const char *, const char *> rows[] = {
        {"Name - Desc", "O'Brien b a "},         {"Name - Asc", "a b O'Brien "},
        {"Date Modified - Asc", "b O'Brien a "}, {"Date Modified - Desc", "a O'Brien b "},
        {"Original Order", "a O'Brien b "},
    };
    for (const auto &[choice, names] : rows) {
        editor.PreSort(choice);
        EXPECT_EQ(Names(), names) << choice;
        EXPECT_EQ(editor.Rows()[0].Sort + editor.Rows()[2].Sort, "000001000003");
    }
    editor.Open("Trips:\\");
    editor.PreSort(PreSortChoices[0]);
    EXPECT_FALSE(editor.OrderChanged());
}

TEST_F(DirOrder, TakingTheLastRightAwayWarns) {
    SaveUser({"Ann", "a", "a", false}, "");
    AddRight("Trips", "\\O'Brien", "Ann");
    AddRight("Trips", "\\O'Brien", "Bob");
    AddRight("Trips", "\\", "Ann");
    AddRight("Home", "\\O'Brien", "Bob");
    const std::vector<RestrictedRow> rows = GetRestrictedRows();
    EXPECT_EQ(rows[0].DirectoryText() + " " + rows[2].DirectoryText(), "O'Brien Root Folder");
    Owner.ExpectMessage("Would you like to take away access from 'Ann' to 'Trips > O'Brien' ?", CriticalQuestion,
                        AnswerYes);
    ASSERT_TRUE(OfferToRemoveRight(rows, rows[0]));
    Owner.ExpectMessage(
        "Important Note: By doing this you will make this directory public!\r\n\r\nWould you like to take away access "
        "from 'Bob' to 'Trips > O'Brien' ?",
        CriticalQuestion, AnswerNo);
    EXPECT_FALSE(OfferToRemoveRight(GetRestrictedRows(), rows[1]));
    Owner.ExpectMessage("Are you sure you want to delete 'Ann' ?", CriticalQuestion, AnswerYes);
    EXPECT_TRUE(OfferToDeleteUser("Ann"));
    EXPECT_EQ(Column("PrivateDirs", "Username") + Column("Users", "Username"), "Bob|Bob|");
}

}  // namespace
}  // namespace pixmora
