// The registry: its tree, its file, and what other hands do to that file.
#include "platform/registry/Registry.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/files/FileLock.h"
#include "platform/files/Files.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "support/TempFolder.h"

namespace pixmora {

namespace {

using Registry::Root;
using Registry::Value;

constexpr Root user = Root::CurrentUser;

}  // namespace

class RegistryTest : public testing::Test {
protected:
    RegistryTest() { Reread(); }
    ~RegistryTest() override { Registry::SetFilePath(""); }

    void Reread() { Registry::SetFilePath(folder.Path("config/settings.ini")); }
    std::string FileText() { return folder.Read("config/settings.ini"); }
    void WriteFile(std::string_view text) { folder.Write("config/settings.ini", text); }

    TempFolder folder;
};

TEST_F(RegistryTest, BringsBackEveryText) {
    std::vector<std::string> texts = Split(
        "| |  both ends  |a=b|=|[x]|x]|;x|#x|100%|%41|%%41|%4|C:\\x\\|a\r\nb|\t|dword:5|dword:|\"q\"|é ü|\xEF\xBB\xBF",
        "|");
    std::string &allBytes = texts.emplace_back();
    for (int c = 0; c < 256; ++c) allBytes.push_back(static_cast<char>(c));
    for (const std::string &text : texts) {
        const std::string key = "S\\" + Replace(text, "\\", "");  // the separator alone can't be part of a key's name
        Registry::SetValue(user, key, "in", text);
        Registry::SetValue(user, key, text, std::int64_t{4294967295});
        Reread();
        EXPECT_EQ(Registry::GetValue(user, key, "in"), Value(text)) << text;
        EXPECT_EQ(Registry::GetValue(user, key, text), Value(std::int64_t{4294967295})) << text;
        Registry::DeleteValue(user, key, text);
        EXPECT_FALSE(Registry::ValueExists(user, key, text)) << text;
    }
}

TEST_F(RegistryTest, SeesWhatOthersWriteAndWritesNothingWhereNothingChanges) {
    const auto get = [](const char *key) {
        return GetSetting("App", "Setup", key, "none");
    };
    SaveSetting("App", "Setup", "Style", "Default");
    EXPECT_EQ(get("Style"), "Default");
    WriteFile(Replace(FileText(), "Default", "Changed\nNew=1"));
    EXPECT_EQ(get("Style"), "Changed");
    SaveSetting("App", "Setup", "Author", "Ann");
    EXPECT_EQ(get("New"), "1") << "a save loses nothing that others wrote";

    const FileFacts before = GetFileFacts(Registry::FilePath());
    SaveSetting("App", "Setup", "Style", "Changed");
    DeleteSetting("App", "Setup", "Absent");
    Registry::DeleteKey(user, "Absent");
    EXPECT_EQ(GetFileFacts(Registry::FilePath()).Inode, before.Inode);

    DeleteFile(folder.Path("config/settings.ini"));
    EXPECT_EQ(get("New"), "none");
    folder.MakeFolder("config/settings.ini");
    EXPECT_THROW(SaveSetting("App", "Setup", "Style", "x"), RunTimeError) << "an unreadable file isn't an empty one";
}

TEST_F(RegistryTest, KeepsAKeyWhoseLastOneBelowIsDeleted) {
    Registry::CreateKey(user, "A\\B\\C");
    Registry::DeleteKey(user, "a\\b");
    EXPECT_TRUE(Registry::KeyExists(user, "A"));
    EXPECT_TRUE(Registry::EnumKeys(user, "A").empty());
}

TEST_F(RegistryTest, IsOneProgramsAndWaitsForAnothersLockOnceAndNotForEver) {
    EXPECT_FALSE(Registry::PrevInstance());
    FileLock other;
    EXPECT_FALSE(other.Take(folder.Path("config/settings.lock")));
    Reread();
    EXPECT_TRUE(other.Take(folder.Path("config/settings.lock")));
    EXPECT_TRUE(Registry::PrevInstance());

    SaveSetting("App", "Setup", "Style", "Default");
    EXPECT_EQ(std::filesystem::status(folder.Path("config/settings.ini")).permissions(), std::filesystem::perms(0600));
    const int config = open(folder.Path("config").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(config, LOCK_EX), 0);
    const ClockSetForTest clock(0, MakeDate(2004, 3, 1));
    for (const char *style : {"A", "B", "C"}) SaveSetting("App", "Setup", "Style", style);
    EXPECT_EQ(GetTickCount(), 150) << "ms, and not for each of them";
    close(config);
    EXPECT_EQ(GetSetting("App", "Setup", "Style", ""), "C");
}

TEST_F(RegistryTest, SurvivesHandEditing) {
    WriteFile(
        "\xEF\xBB\xBF; my settings\r\n\r\n  [HKCU\\A]  \r\n  Port =  81  \r\nno equals sign\r\n# a remark\r\n"
        "Bad=%zz%4\r\n[HKCU\\B\r\nNumber=dword:many\r\n[Elsewhere]\r\nx=1\r\n[hkcu\\a]\r\nport=82");
    EXPECT_EQ(Registry::GetValue(user, "A", "Port"), Value("82"));
    EXPECT_EQ(Registry::GetValue(user, "A", "Bad"), Value("%zz%4"));
    EXPECT_EQ(Registry::GetValue(user, "A", "Number"), Value("dword:many"));
    EXPECT_EQ(Registry::EnumKeys(user, ""), std::vector<std::string>{"A"});

    Registry::SetValue(user, "A", "Port", std::string("83"));
    EXPECT_EQ(
        FileText(),
        "; my settings\n\n[HKCU\\A]\nPort=83\nno equals sign\n# a remark\nBad=%zz%4\n[HKCU\\B\nNumber=dword:many\n"
        "\n[Elsewhere]\nx=1\n");

    WriteFile("\n\xEF\xBB\xBF; joined\n[HKCU\\A]\nx=1\n");
    Registry::SetValue(user, "A", "x", std::string("2"));
    EXPECT_EQ(FileText(), "\n\xEF\xBB\xBF; joined\n\n[HKCU\\A]\nx=2\n") << "another file's mark isn't this one's";
}

}  // namespace pixmora
