// What the album and user dialogs decide, on a database of the test's own.
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/UserEditor.h"
#include "store/Popularity.h"
#include "store/Statistics.h"
#include "support/RawDatabase.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

using Editors = SetupFixture;

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

TEST_F(Editors, ABigFeaturedPictureIsOfferedSmall) {
    gPictureEngine = std::make_unique<PictureEngine>();
    const std::string small = Program.Write("small.jpg", std::string(30720, 'x'));
    EXPECT_EQ(OfferSmallCopy(small), small);
    const std::string big = Program.Write("big.bmp", std::string(30721, 'x'));
    const std::string question = "The picture you have specified is pretty big...";
    Owner.ExpectMessage(question, CriticalQuestion, AnswerNo);
    EXPECT_EQ(OfferSmallCopy(big), big);
    Owner.ExpectMessage(question, CriticalQuestion, AnswerYes);
    EXPECT_THROW(OfferSmallCopy(big), RunTimeError) << "what is no picture has no small copy";
    gPictureEngine.reset();
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

}  // namespace
}  // namespace pixmora
