// Settings: their defaults and numbers, the move from earlier versions, the text files, and the registry helper.
#include "store/Settings.h"

#include <gtest/gtest.h>

#include "platform/registry/Registry.h"
#include "platform/runtime/RunTimeError.h"
#include "support/ErrorOf.h"
#include "support/ProgramFolder.h"

namespace pixmora {

namespace {

const std::string former = "Software\\VB and VBA Program Settings\\Pixmora! Digital Media Server";
constexpr Registry::Root user = Registry::Root::CurrentUser;

}  // namespace

class SettingsTest : public testing::Test, protected ProgramFolder {};

TEST_F(SettingsTest, HaveTheDefaultOfTheCall) {
    EXPECT_EQ(GetSettingNumber("Setup", "ListenPort", 8080), 8080);
    SaveSetting("setup", "LISTENPORT", "81");
    EXPECT_EQ(GetSettingNumber("Setup", "ListenPort", 8080), 81);
    for (const char *text : {"three", ""}) {
        SaveSetting("Setup", "ListenPort", text);
        EXPECT_EQ(MessageOf([] { GetSettingNumber("Setup", "ListenPort", 8080); }),
                  "Type mismatch (Setup, ListenPort)");
    }
    EXPECT_TRUE(
        Registry::KeyExists(user, "Software\\VB and VBA Program Settings\\Pixmora! Digital Media Software\\Setup"));
}

TEST_F(SettingsTest, MoveFromTheFormerNameAndSortMethod) {
    Registry::SetValue(user, former + "\\Setup", "ServerTitle", std::string("Old title"));
    Registry::SetValue(user, former + "\\Setup", "SortMethod", std::string("3"));
    Registry::SetValue(user, former + "\\AlbumIDs", "Holiday", std::int64_t{7});
    SaveSetting("Setup", "Author", "Ann");
    MigrateSettings();
    EXPECT_EQ(GetSetting("Setup", "ServerTitle"), "Old title");
    EXPECT_EQ(GetSetting("Setup", "Author"), "Ann");
    EXPECT_EQ(GetSetting("AlbumIDs", "Holiday"), "7");
    EXPECT_EQ(GetSetting("Setup", "SortMethod"), "2");
    EXPECT_FALSE(Registry::KeyExists(user, former));

    for (const char *text : {"1", "by name"}) {
        SaveSetting("Setup", "SortMethod", text);
        MigrateSettings();
        EXPECT_EQ(GetSetting("Setup", "SortMethod"), text);
    }
}

TEST_F(SettingsTest, ReadTheTextFilesWhole) {
    EXPECT_FALSE(ReadProgramFile("welcome.txt").has_value());
    Write("welcome.txt", "\xEF\xBB\xBFHello\r\n");
    EXPECT_EQ(ReadProgramFile("welcome.txt"), "Hello\r\n");
    MakeFolder("sitedesc.txt");
    EXPECT_EQ(MessageOf([] { ReadProgramFile("sitedesc.txt"); }), "Path/File access error (sitedesc.txt)");
}

}  // namespace pixmora
