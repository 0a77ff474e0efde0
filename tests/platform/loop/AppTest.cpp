// The program's folder: its choice, its lock, and the htdocs put there.
#include "platform/loop/App.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "support/TempFolder.h"

namespace pixmora {

class AppTest : public testing::Test {
protected:
    ~AppTest() override {
        unsetenv("PIXMORA_HOME");
        App::SetPath("");
    }
    TempFolder folder;
};

TEST_F(AppTest, TakesItsFolderFromTheEnvironmentOnceOrIsBesideTheExecutable) {
    setenv("PIXMORA_HOME", (folder.Path("a/b") + "/").c_str(), 1);
    App::SetPath("");
    EXPECT_EQ(App::Path(), ProgramPath(folder.Path("a/b")));
    EXPECT_TRUE(IsDirectory(App::Path()));
    unsetenv("PIXMORA_HOME");
    EXPECT_EQ(App::Path(), ProgramPath(folder.Path("a/b")));
    App::SetPath("");
    EXPECT_EQ(SystemPath(App::Path()), std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
}

TEST_F(AppTest, InstallsHtdocsOnlyWhereThereIsNone) {
    App::SetPath(ProgramPath(folder.Path()));
    folder.Write("htdocs.part/stale.tpl", "half a copy");
    App::InstallHtdocs();
    EXPECT_TRUE(FileExists(folder.Path("htdocs/Index.tpl")));
    EXPECT_FALSE(FileExists(folder.Path("htdocs/stale.tpl")));
    EXPECT_FALSE(FileExists(folder.Path("htdocs.part")));

    folder.Write("htdocs/Index.tpl", "mine");
    DeleteFile(folder.Path("htdocs/StyleSheet_Default.tpl"));
    App::InstallHtdocs();
    EXPECT_EQ(folder.Read("htdocs/Index.tpl"), "mine");
    EXPECT_FALSE(FileExists(folder.Path("htdocs/StyleSheet_Default.tpl")));
}

}  // namespace pixmora
