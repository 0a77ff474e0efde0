// Settings: their defaults and numbers, the move from earlier versions, the text files, and the registry helper.
#include "store/Settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/runtime/RunTimeError.h"
#include "store/clsRegistry.h"
#include "support/ErrorOf.h"
#include "support/ProgramFolder.h"

namespace pixmora {

namespace {

const std::string former = "Software\\VB and VBA Program Settings\\Pixmora! Digital Media Server";
constexpr Registry::Root user = Registry::Root::CurrentUser;

}  // namespace

class SettingsTest : public testing::Test {
protected:
    ProgramFolder folder;
};

TEST_F(SettingsTest, HaveTheDefaultOfTheCall) {
    EXPECT_EQ(GetSetting("Setup", "ListenPort"), "");
    EXPECT_EQ(GetSetting("Setup", "ListenPort", "80"), "80");
    EXPECT_EQ(GetSettingNumber("Setup", "ListenPort", 8080), 8080);
    SaveSetting("setup", "LISTENPORT", "81");
    EXPECT_EQ(GetSettingNumber("Setup", "ListenPort", 8080), 81);
    for (const char *text : {"three", ""}) {
        SaveSetting("Setup", "ListenPort", text);
        EXPECT_THROW(GetSettingNumber("Setup", "ListenPort", 8080), RunTimeError) << text;
    }
    DeleteSetting("Setup", "ListenPort");
    EXPECT_EQ(GetSettingNumber("Setup", "ListenPort", 8080), 8080);
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

    SaveSetting("Setup", "SortMethod", "1");
    MigrateSettings();
    EXPECT_EQ(GetSetting("Setup", "SortMethod"), "1");
    SaveSetting("Setup", "SortMethod", "by name");
    EXPECT_NO_THROW(MigrateSettings());
    DeleteSetting("Setup", "SortMethod");
    MigrateSettings();
    EXPECT_EQ(GetSetting("Setup", "SortMethod", "absent"), "absent");
}

TEST_F(SettingsTest, ReadTheTextFilesWhole) {
    EXPECT_FALSE(ReadProgramFile("welcome.txt").has_value());
    folder.Write("welcome.txt", "Hello\r\n\xE9");
    EXPECT_EQ(ReadProgramFile("welcome.txt"), "Hello\r\n\xE9");
    folder.MakeFolder("sitedesc.txt");
    EXPECT_EQ(MessageOf([] { ReadProgramFile("sitedesc.txt"); }), "Path/File access error (sitedesc.txt)");
    SaveSetting("Setup", "FilesPerRow", "three");
    EXPECT_EQ(MessageOf([] { GetSettingNumber("Setup", "FilesPerRow", 3); }), "Type mismatch (Setup, FilesPerRow)");
}

TEST_F(SettingsTest, RegistryHelperWorksOnItsPath) {
    clsRegistry registry;
    registry.KeyRoot = "Software\\Messenger\\Users\\Ann";
    registry.Subkey = "IAmGoneList\\";
    EXPECT_FALSE(registry.KeyExists());
    EXPECT_EQ(registry.CreateKey(), "The key was created.");
    EXPECT_EQ(registry.CreateKey("IAmGoneList"), "The key was already there.");
    EXPECT_TRUE(registry.KeyExists());

    registry.SetRegistryValue("GoneMsg0001", std::string("<b>\0rest", 8));
    registry.SetRegistryValue("Count", std::string("12"), clsRegistry::ValueType::DoubleWord);
    registry.SetRegistryValue("Text", std::int64_t{5});
    EXPECT_THROW(registry.SetRegistryValue("Count", "twelve", clsRegistry::ValueType::DoubleWord), RunTimeError);
    EXPECT_EQ(registry.GetRegistryValue("goneMSG0001"), Registry::Value("<b>"));
    EXPECT_EQ(registry.GetRegistryValue("Count"), Registry::Value(std::int64_t{12}));
    EXPECT_EQ(registry.GetRegistryValue("Absent", "none"), Registry::Value("none"));
    using Pair = std::pair<std::string, Registry::Value>;
    EXPECT_THAT(clsRegistry::EnumRegistryValues(user, registry.KeyRoot + "\\" + registry.Subkey),
                testing::ElementsAre(Pair("GoneMsg0001", "<b>"), Pair("Count", std::int64_t{12}), Pair("Text", "5")));

    registry.DeleteValue("GoneMsg0001");
    EXPECT_EQ(registry.GetRegistryValue("GoneMsg0001"), Registry::Value(""));
    registry.DeleteKey("IAmGoneList");
    EXPECT_FALSE(registry.KeyExists());
    EXPECT_THAT(clsRegistry::EnumRegistryKeys(user, ""), testing::ElementsAre("Software"));
}

}  // namespace pixmora
