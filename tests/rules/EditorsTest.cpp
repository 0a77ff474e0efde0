// What the album and user dialogs decide, on a database of the test's own.
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/StripTags.h"
#include "setup/rules/UserEditor.h"
#include "store/Popularity.h"
#include "store/Statistics.h"
#include "support/SetupFixture.h"

namespace pixmora {
namespace {

using Editors = SetupFixture;

TEST_F(Editors, AlbumsAreValidatedInOrder) {
    AlbumFields good;
    good.Name = "Trips";
    good.Directory = Program.MakeFolder("albums/Trips");
    EXPECT_FALSE(AlbumEditor::Validate(good));
    const std::tuple<const char *, std::function<void(AlbumFields &)>, const char *> rows[] = {
        {"no name, and no path either", [](AlbumFields &f) { f.Name = f.Directory = ""; },
         "You must give your album a name!"},
        {"reserved", [](AlbumFields &f) { f.Name = "MOST popular"; },
         "This name is reserved! Please choose another name for your album."},
        {"bad character", [](AlbumFields &f) { f.Name = "a'b"; },
         "Album name cannot contain any of the following characters:\r\n\r\n\\ / : * ? \" ' < > |"},
        {"no path", [](AlbumFields &f) { f.Directory = ""; }, "You must choose a directory for this album!"},
        {"path gone", [](AlbumFields &f) { f.Directory += "/gone"; }, "This directory is invalid!"},
        {"shows nothing", [](AlbumFields &f) { f.Pictures = f.Movies = false; },
         "You must at least choose to show pictures or show movies!"},
    };
    for (const auto &[name, spoil, message] : rows) {
        AlbumFields fields = good;
        spoil(fields);
        const auto refusal = AlbumEditor::Validate(fields);
        ASSERT_TRUE(refusal) << name;
        EXPECT_EQ(refusal->Message, message) << name;
    }
    good.Name = " most popular";
    EXPECT_FALSE(AlbumEditor::Validate(good)) << "a leading blank is not trimmed";
}

TEST_F(Editors, ANewAlbumGetsTheNextNumber) {
    AlbumFields fields;
    fields.Name = "Trips";
    fields.Directory = Program.MakeFolder("albums/Trips") + "/";
    fields.Description = "<b>Say \"hi\"</b>";
    AlbumEditor().Save(fields);
    MakeAlbum("Home");
    EXPECT_EQ(GetSetting("AlbumIDs", "Home"), "2");
    EXPECT_EQ(GetSetting("Setup", "NextAlbumID"), "2");
    const AlbumFields stored = AlbumEditor("trips").Load();
    EXPECT_EQ(stored.Directory, Program.Path("albums/Trips"));
    EXPECT_EQ(stored.Description, "Say 'hi'");
    EXPECT_EQ(stored.FeaturedImage, 1);
}

TEST_F(Editors, ARenameGoesThroughSixTables) {
    MakeAlbum("Old");
    AddRight("Old", "\\O'Brien", "Ann");
    CountFileVisit("Old", "\\a.jpg");
    CountDirVisit("Old", "");
    RecordStat(Stat::Thumbs, "Old", 1);
    AlbumFields fields = AlbumEditor("Old").Load();
    fields.Name = "New";
    AlbumEditor("Old").Save(fields);
    for (const char *table : {"Albums", "PrivateDirs", "PopularFiles", "PopularDirs", "StatsHourly", "StatsDaily"}) {
        EXPECT_EQ(Column(table, "AlbumName"), "New|") << table;
    }
    EXPECT_EQ(Column("StatsMonthly", "AlbumName"), "Old|");
    EXPECT_EQ(GetSetting("AlbumIDs", "New"), "");
    EXPECT_EQ(Column("PrivateDirs", "SubDir"), "\\O%34Brien|");
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
    const std::string question =
        "You have changed your album's directory! Doing this will reset your Most Popular page.\r\n\r\n"
        "Are you sure you want to do this?";
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
    CountFileVisit("A", "\\top.jpg");
    AlbumFields fields = AlbumEditor("A").Load();
    fields.SubDirs = false;
    AlbumEditor("A").Save(fields);

    fields.SubDirs = true;
    AlbumEditor("A").Save(fields);
    CountFileVisit("A", "\\sub\\deep.jpg");
    CountDirVisit("A", "\\sub");
    CountDirVisit("A", "");
    fields.SubDirs = false;
    Owner.ExpectMessage(
        "You have decided to stop including subdirectories, but there are files on your Most Popular page that are in "
        "these subdirectories!\r\n\r\nDo you wanna keep these files on your Most Popular page?",
        CriticalQuestion, AnswerNo);
    AlbumEditor("A").Save(fields);
    EXPECT_EQ(Column("PopularFiles", "FilePath"), "\\top.jpg|");
    EXPECT_EQ(Column("PopularDirs", "DirPath"), "\\|");
}

TEST_F(Editors, ADeletedAlbumLeavesItsStatistics) {
    MakeAlbum("A");
    MakeAlbum("B");
    AddRight("A", "\\", "Ann");
    CountFileVisit("A", "\\a.jpg");
    CountFileVisit("A", "\\b.jpg");
    RecordStat(Stat::Thumbs, "A", 1);
    AlbumEditor("A").Delete();
    EXPECT_EQ(Column("Albums", "AlbumName"), "B|");
    EXPECT_EQ(Column("PrivateDirs", "AlbumName") + Column("PopularFiles", "AlbumName"), "");
    EXPECT_EQ(Column("StatsDaily", "AlbumName"), "A|");
    EXPECT_EQ(GetSetting("AlbumIDs", "A"), "1");
    EXPECT_THROW(AlbumEditor("A").Load(), RunTimeError);
}

TEST_F(Editors, ABigFeaturedPictureIsOfferedSmall) {
    gPictureEngine = std::make_unique<PictureEngine>();
    const std::string small = Program.Write("small.jpg", std::string(30720, 'x'));
    EXPECT_EQ(OfferSmallCopy(small), small);
    const std::string big = Program.Write("big.bmp", std::string(30721, 'x'));
    const std::string question =
        "The picture you have specified is pretty big to show on your front page.\r\n\r\n"
        "Would you like me to resize it for you?";
    Owner.ExpectMessage(question, CriticalQuestion, AnswerNo);
    EXPECT_EQ(OfferSmallCopy(big), big);
    Owner.ExpectMessage(question, CriticalQuestion, AnswerYes);
    EXPECT_THROW(OfferSmallCopy(big), RunTimeError) << "what is no picture has no small copy";
    gPictureEngine.reset();
}

TEST_F(Editors, UsersAreValidatedInOrderAndSaved) {
    EXPECT_EQ(SaveUser({"Ann", "a", "a", true}, ""), "User Added!");
    const std::tuple<UserFields, const char *, const char *> rows[] = {
        {{"aNN", "", "", false}, "", "Username already exists!"},
        {{"ANN", "x", "x", false}, "Ann", "Username already exists!"},
        {{"", "", "", false}, "", "You must enter a username!"},
        {{"a:b", "", "", false},
         "",
         "Username cannot contain any of the following characters:\r\n\r\n\\ / : * ? \" ' < > |"},
        {{"Bob", "", "", false}, "", "You must enter a password!"},
        {{"Bob", "x", "y", false}, "", "Passwords don't match!"},
    };
    for (const auto &[fields, edited, message] : rows)
        EXPECT_EQ(ValidateUser(fields, edited)->Message, message) << fields.Username;
    EXPECT_FALSE(ValidateUser({"Ann", "b", "b", false}, "Ann"));

    AddRight("A", "\\x", "Ann");
    EXPECT_EQ(SaveUser({"Anna", "b", "b", false}, "Ann"), "User Information Saved!");
    EXPECT_EQ(GetUserNames(), std::vector<std::string>{"Anna"});
    EXPECT_FALSE(LoadUser("anna").Admin);
    EXPECT_TRUE(HasRight("A", "\\x", "Ann")) << "a new name does not reach the rights";
    DeleteUser("Ann");
    EXPECT_FALSE(HasRight("A", "\\x", "Ann"));
    EXPECT_EQ(GetUserNames().size(), 1U);
}

TEST(StripTags, LeavesThePlainText) {
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"<b>Hi</b>", "", "Hi"},
        {"a < b", "", "a "},
        {"  ", "", " "},
        {"<i></i>", "", " "},
        {"one\r\ntwo", "", "onetwo"},
        {"<<b>>x", "", ">x"},
        {"<b>x</b><i>y</i>", "b, /b", "<b>x</b>y"},
    };
    for (const auto &[given, allowed, wanted] : rows) EXPECT_EQ(StripTags(given, allowed), wanted) << given;
}

}  // namespace
}  // namespace pixmora
