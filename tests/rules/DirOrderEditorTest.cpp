// The tree of albums, the order of directories, and the list of rights.
#include "setup/rules/DirOrderEditor.h"

#include <sys/stat.h>
#include <utime.h>

#include "setup/rules/AccessEditor.h"
#include "setup/rules/AlbumTree.h"
#include "setup/rules/UserEditor.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

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
    editor.Open(TreeRootKey);
    EXPECT_TRUE(editor.Rows().empty());
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
    EXPECT_EQ(DragSteps(260, 258), 1);
    EXPECT_EQ(DragSteps(-120, 258), 0);
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
    EXPECT_EQ(LoadRestrictWords(), "Private*\r\nCensored\r\n");
}

}  // namespace
}  // namespace pixmora
