// Protected directories, however deep the path that a visitor asks with.
#include "store/Protection.h"

#include <gtest/gtest.h>

#include "platform/runtime/Text.h"
#include "support/OpenStore.h"
#include "support/ProcessorTime.h"

namespace pixmora {

namespace {

class ProtectionTest : public testing::Test, protected OpenStore {
protected:
    ProtectionTest() {
        auto album = std::make_shared<clsAlbum>();
        album->ID = 1;
        album->Name = "Zoo";
        gAlbums = {album};
        Ask("INSERT INTO PrivateDirs VALUES ('Zoo', '\\closed', 'Ann'), ('Zoo', '" + Levels(1500) + "', 'Ann')");
    }
    ~ProtectionTest() override { gAlbums.clear(); }

    static std::string Levels(int count) { return RepeatString("\\a", count); }
};

}  // namespace

TEST_F(ProtectionTest, ReachesEveryLevelBelow) {
    EXPECT_TRUE(IsProtectedDir(*gAlbums[0], "", "\\closed" + Levels(1800)));
    EXPECT_TRUE(IsProtectedDir(*gAlbums[0], "", Levels(1500)));
    EXPECT_TRUE(IsProtectedDir(*gAlbums[0], "", Levels(1501)));
    EXPECT_FALSE(IsProtectedDir(*gAlbums[0], "", Levels(1499) + "\\b\\a"));
    EXPECT_FALSE(IsProtectedDir(*gAlbums[0], "", "\\a\\closed"));
}

TEST_F(ProtectionTest, AnswersSoonForAPathBeyondAllPaths) {
    const double start = test::ProcessorSeconds();
    EXPECT_FALSE(IsProtectedDir(*gAlbums[0], "", RepeatString("\\b", 32000)));
    EXPECT_LT(test::ProcessorSeconds() - start, 0.5);
}

}  // namespace pixmora
