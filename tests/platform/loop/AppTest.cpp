// The program's folder, the htdocs put there, and what a service manager hears.
#include "platform/loop/App.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "platform/files/Files.h"
#include "platform/loop/ServiceManager.h"
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
    EXPECT_TRUE(IsDirectory(App::Path()));
    unsetenv("PIXMORA_HOME");
    EXPECT_EQ(App::Path(), ProgramPath(folder.Path("a/b")));
    App::SetPath("");
    EXPECT_EQ(SystemPath(App::Path()), std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
}

TEST_F(AppTest, InstallsHtdocsOnceAndRenewsWhatTheOwnerHasNotChanged) {
    App::SetPath(ProgramPath(folder.Path()));
    folder.Write("htdocs.part/stale.tpl", "half a copy");
    App::InstallHtdocs();
    for (const char *name : {"htdocs/stale.tpl", "htdocs.part"}) EXPECT_FALSE(FileExists(folder.Path(name))) << name;
    const std::string shipped = folder.Read("htdocs/StyleSheet_Default.tpl");
    const std::string emptySum = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
    for (const char *name : {"htdocs/StyleSheet_Default.tpl", "htdocs/Index.tpl", "exif.ini"}) {
        const std::string sums = folder.Read("shipped.sha256");
        const std::size_t end = sums.find(std::string("  ") + name + "\n");
        ASSERT_NE(end, std::string::npos) << name;
        folder.Write("shipped.sha256", sums.substr(0, end - 64) + emptySum + sums.substr(end));
    }
    folder.Write("htdocs/StyleSheet_Default.tpl", "");  // as an earlier version had it
    folder.Write("htdocs/Index.tpl", "mine");
    DeleteFile(folder.Path("exif.ini"));
    App::InstallHtdocs();
    EXPECT_EQ(App::UpdateShippedFiles(), std::vector<std::string>{"htdocs/Index.tpl"});
    EXPECT_EQ(folder.Read("htdocs/StyleSheet_Default.tpl"), shipped);
    EXPECT_EQ(folder.Read("htdocs/Index.tpl"), "mine");
    EXPECT_FALSE(FileExists(folder.Path("exif.ini")));
    EXPECT_EQ(App::UpdateShippedFiles(), std::vector<std::string>()) << "told once";
}

TEST(ServiceManager, HearsTheLinesByAnAbstractNameToo) {
    const std::string name = "@pixmora-test-" + std::to_string(getpid());
    sockaddr_storage address{AF_UNIX, {}, 0};
    const auto length = static_cast<socklen_t>(sizeof address.ss_family + name.size());
    std::copy(name.begin() + 1, name.end(), reinterpret_cast<char *>(&address) + sizeof address.ss_family + 1);
    const int manager = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(manager, reinterpret_cast<sockaddr *>(&address), length), 0);
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
    NotifyServiceManager("READY=1\nSTATUS=here");
    char heard[256] = "";
    EXPECT_EQ(recv(manager, heard, sizeof heard, MSG_DONTWAIT), 19);
    EXPECT_STREQ(heard, "READY=1\nSTATUS=here");
    close(manager);
    NotifyServiceManager("READY=1");  // nobody is there any more
    unsetenv("NOTIFY_SOCKET");
}

}  // namespace pixmora
