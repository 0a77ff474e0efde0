// The owner's settings, and the text files that complete them.
#include "store/Settings.h"

#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Encoding.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/clsRegistry.h"

namespace pixmora {

namespace {

const std::string formerTitle = "Pixmora! Digital Media Server";

void TakeOverSection(clsRegistry &registry, const std::string &section) {
    const std::string path = std::string(SettingsKey) + "\\" + formerTitle + "\\" + section;
    for (const auto &[name, value] : registry.EnumRegistryValues(Registry::Root::CurrentUser, path)) {
        SaveSetting(section, name, clsRegistry::ValueText(value));
    }
    registry.DeleteKey(formerTitle + "\\" + section);
}

/// Settings of the program's former name.
void TakeOverFormerSettings() {
    clsRegistry registry;
    registry.hkey = Registry::Root::CurrentUser;
    registry.KeyRoot = SettingsKey;
    registry.Subkey = formerTitle;
    if (!registry.KeyExists()) return;
    const std::vector<std::string> sections =
        registry.EnumRegistryKeys(registry.hkey, registry.KeyRoot + "\\" + registry.Subkey);
    for (const std::string &section : sections) TakeOverSection(registry, section);
    registry.DeleteKey(formerTitle);
}

/// The sort method 3 of earlier versions is no more.
void RetireSortMethod() {
    // Val, since a text that is no number must not keep the program from starting.
    if (Val(GetSetting("Setup", "SortMethod")) == 3) SaveSetting("Setup", "SortMethod", "2");
}

}  // namespace

std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) {
    return GetSetting(App::Title, section, key, fallback);
}

void SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
    SaveSetting(App::Title, section, key, value);
}

void DeleteSetting(std::string_view section, std::string_view key) {
    DeleteSetting(App::Title, section, key);
}

std::int32_t GetSettingNumber(std::string_view section, std::string_view key, std::int32_t fallback) {
    return Naming(Concat(section, ", ", key), [&] { return CLng(GetSetting(section, key, std::to_string(fallback))); });
}

int ListenPort() {
    return GetSettingNumber("Setup", "ListenPort", 8080);
}

std::string ListenAddress() {
    const std::string address = Trim(GetSetting("Setup", "ListenAddress"));
    return EqualsIgnoreCase(address, "localhost") ? "127.0.0.1" : address;
}

bool IsProgramElsewhere() {
    return App::PrevInstance() || Registry::PrevInstance();
}

void MigrateSettings() {
    HideFromOthers(Registry::FilePath());
    TakeOverFormerSettings();
    RetireSortMethod();
}

std::optional<std::string> ReadProgramFile(std::string_view name) {
    const std::string path = App::Path() + "\\" + std::string(name);
    if (!FileExists(path)) return std::nullopt;
    return WithoutByteOrderMark(BinaryFile::OpenForRead(path)->ReadAll());
}

}  // namespace pixmora
