// The registry: its tree, its file, and what other hands do to that file.
#include "platform/registry/Registry.h"

#include <fcntl.h>
#include <gmock/gmock.h>
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
using testing::ElementsAre;
using testing::HasSubstr;

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
    std::string allBytes;
    for (int c = 0; c < 256; ++c) allBytes.push_back(static_cast<char>(c));
    const std::string texts[] = {"",        " ",           "  both ends  ", "a=b", "[x]",     ";x",     "#x",
                                 "100%",    "%41",         "%%41",          "%4",  "C:\\x\\", "a\r\nb", "\t",
                                 "dword:5", "dword:",      "\"q\"",         "é ü", allBytes,  "a\\\nb", "=",
                                 "x]",      "\xEF\xBB\xBF"};
    for (const std::string &text : texts) {
        const std::string key = "S\\" + Replace(text, "\\", "");  // the separator alone can't be part of a key's name
        Registry::SetValue(user, "A", "value", text);
        Registry::SetValue(user, "A", text, std::string("named"));
        Registry::SetValue(user, key, "in", text);
        Reread();
        EXPECT_EQ(Registry::GetValue(user, "A", "value"), Value(text)) << text;
        EXPECT_EQ(Registry::GetValue(user, "A", text), Value("named")) << text;
        EXPECT_EQ(Registry::GetValue(user, key, "in"), Value(text)) << text;
        Registry::DeleteValue(user, "A", text);
    }
    for (const std::int64_t number : {0LL, -1LL, 4294967295LL}) {
        Registry::SetValue(user, "A", "number", number);
        Reread();
        EXPECT_EQ(Registry::GetValue(user, "A", "number"), Value(number));
    }
}

TEST_F(RegistryTest, SeesWhatOthersWriteAndWritesNothingWhereNothingChanges) {
    const auto get = [](const char *key) {
        return GetSetting("App", "Setup", key, "none");
    };
    SaveSetting("App", "Setup", "Style", "Default");
    EXPECT_EQ(get("Style"), "Default");
    const std::string text = FileText();
    WriteFile(text.substr(0, text.size() - 8) + "Changed\nNew=1\n");
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
    EXPECT_THROW(get("Style"), RunTimeError) << "an unreadable file isn't an empty one";
    EXPECT_THROW(SaveSetting("App", "Setup", "Style", "x"), RunTimeError);
}

TEST_F(RegistryTest, KeepsAKeyWhoseLastOneBelowIsDeleted) {
    Registry::CreateKey(user, "A\\B\\C");
    Registry::DeleteKey(user, "a\\b");
    EXPECT_TRUE(Registry::KeyExists(user, "A"));
    EXPECT_THAT(Registry::EnumKeys(user, "A"), testing::IsEmpty());
}

TEST_F(RegistryTest, IsOnePrograms) {
    EXPECT_FALSE(Registry::PrevInstance());
    FileLock other;
    EXPECT_FALSE(other.Take(folder.Path("config/settings.lock")));
    Reread();
    EXPECT_TRUE(other.Take(folder.Path("config/settings.lock")));
    EXPECT_TRUE(Registry::PrevInstance());
}

TEST_F(RegistryTest, WaitsForAnothersLockOnceAndNotForEver) {
    SaveSetting("App", "Setup", "Style", "Default");
    EXPECT_EQ(std::filesystem::status(folder.Path("config/settings.ini")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    const int config = open(folder.Path("config").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(config, LOCK_EX), 0);
    const ClockSetForTest clock(0, MakeDate(2004, 3, 1));
    for (const char *style : {"A", "B", "C", "D", "E", "F"}) SaveSetting("App", "Setup", "Style", style);
    EXPECT_EQ(GetTickCount(), 150) << "ms, and not for each of them";
    close(config);
    EXPECT_EQ(GetSetting("App", "Setup", "Style", ""), "F");
}

TEST_F(RegistryTest, SurvivesHandEditing) {
    WriteFile(
        "\xEF\xBB\xBF; my settings\r\n\r\n  [HKCU\\A]  \r\n  Port =  81  \r\nno equals sign\r\n# a remark\r\n"
        "Bad=%zz%4\r\n[HKCU\\B\r\nNumber=dword:many\r\n[Elsewhere]\r\nx=1\r\n[hkcu\\a]\r\nport=82");
    EXPECT_EQ(Registry::GetValue(user, "A", "Port"), Value("82"));
    EXPECT_EQ(Registry::GetValue(user, "A", "Bad"), Value("%zz%4"));
    EXPECT_EQ(Registry::GetValue(user, "A", "Number"), Value("dword:many"));
    EXPECT_THAT(Registry::EnumKeys(user, ""), ElementsAre("A"));

    Registry::SetValue(user, "A", "Port", std::string("83"));
    EXPECT_EQ(
        FileText(),
        "; my settings\n\n[HKCU\\A]\nPort=83\nno equals sign\n# a remark\nBad=%zz%4\n[HKCU\\B\nNumber=dword:many\n"
        "\n[Elsewhere]\nx=1\n");

    WriteFile("\n\xEF\xBB\xBF; joined\n[HKCU\\A]\nx=1\n");
    for (const char *value : {"2", "3"}) {
        Registry::SetValue(user, "A", "x", std::string(value));
        Reread();
    }
    EXPECT_EQ(FileText(), "\n\xEF\xBB\xBF; joined\n\n[HKCU\\A]\nx=3\n") << "another file's mark isn't this one's";
}

}  // namespace pixmora
