#include "store/Popularity.h"

#include <gtest/gtest.h>

#include "platform/runtime/RunTimeError.h"
#include "support/OpenStore.h"

namespace pixmora {

namespace {

class PopularityTest : public testing::Test, protected OpenStore {
protected:
    AlbumDirectoryLookup directoryOf = [this](const std::string &album) -> std::optional<std::string> {
        if (album == "Nobody") return std::nullopt;
        return ProgramPath(folder.Path(album));
    };
};

}  // namespace

TEST_F(PopularityTest, CountsViewsByAlbumAndPath) {
    for (int i = 0; i < 3; ++i) CountFileVisit("Zoo", "\\O'Brien\\a.jpg");
    CountFileVisit("Alps", "\\O'Brien\\a.jpg");
    CountDirVisit("Zoo", "");
    CountDirVisit("Zoo", "\\");
    CountDirVisit("Zoo", "\\O'Brien");
    EXPECT_EQ(Ask("SELECT * FROM PopularFiles"), "Zoo|\\O%39Brien\\a.jpg|3\nAlps|\\O%39Brien\\a.jpg|1\n");
    EXPECT_EQ(Ask("SELECT * FROM PopularDirs"), "Zoo|\\|2\nZoo|\\O%39Brien|1\n");
    EXPECT_THROW(CountFileVisit("It's", "\\a.jpg"), RunTimeError);
}

TEST_F(PopularityTest, DropsWhatIsGoneAmongTheMostViewed) {
    for (const char *name : {"Zoo/here.jpg", "Alps/both.jpg", "Zoo/it's.jpg", "Zoo/lions/x"}) folder.Write(name);
    std::string rows =
        "('Zoo', '\\here.jpg', 900), ('Zoo', '\\both.jpg', 800), ('Zoo', '\\it%39s.jpg', 700), "
        "('Nobody', '\\gone.jpg', 600), ('Alps', '\\both.jpg', 1), ('Zoo', '\\low.jpg', 2)";
    for (int i = 0; i < 26; ++i) rows += ", ('Zoo', '\\x" + std::to_string(i) + ".jpg', 500)";
    Ask("INSERT INTO PopularFiles VALUES " + rows);
    TidyPopularFiles(directoryOf);
    EXPECT_EQ(Ask("SELECT * FROM PopularFiles"), "Zoo|\\here.jpg|900\nZoo|\\low.jpg|2\n")
        << "a path that two albums have goes in both; the 31st isn't looked at";

    Ask("INSERT INTO PopularDirs VALUES ('Zoo', '\\', 9), ('Zoo', '\\lions', 8), ('Zoo', '\\bears', 7), "
        "('Zoo', '\\apes', 6)");
    TidyPopularDirs(directoryOf, 3);
    EXPECT_EQ(Ask("SELECT DirPath FROM PopularDirs"), "\\\n\\lions\n\\apes\n");
}

}  // namespace pixmora
