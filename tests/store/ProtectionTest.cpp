// Protected directories, however deep the path that a visitor asks with.
#include "store/Protection.h"

#include <gtest/gtest.h>

#include "platform/runtime/Text.h"
#include "support/OpenStore.h"

namespace pixmora {

TEST(Protection, ReachesEveryLevelBelow) {
    const OpenStore store;
    clsAlbum album;
    album.Name = "Zoo";
    const auto levels = [](int count, const char *level = "\\a") {
        return RepeatString(level, count);
    };
    for (const std::string &directory : {std::string("\\closed"), levels(1500), levels(2500, "\\b")})
        store.Ask("INSERT INTO PrivateDirs VALUES ('Zoo', '" + directory + "', 'Ann')");
    EXPECT_TRUE(IsProtectedDir(album, "", "\\closed" + levels(1800)));
    EXPECT_TRUE(IsProtectedDir(album, "", levels(1500)));
    EXPECT_TRUE(IsProtectedDir(album, "", levels(1501)));
    EXPECT_FALSE(IsProtectedDir(album, "", levels(1499) + "\\b\\a"));
    EXPECT_FALSE(IsProtectedDir(album, "", "\\a\\closed"));
    EXPECT_FALSE(IsProtectedDir(album, "", levels(32000, "\\b"))) << "beyond all paths nobody searches";
    store.Ask("INSERT INTO PrivateDirs VALUES ('Zoo', '\\', 'Ann')");
    EXPECT_TRUE(IsProtectedDir(album, "", "\\b"));
}

}  // namespace pixmora
