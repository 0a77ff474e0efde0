// The values of the setup dialog's controls, and the settings and files behind them.
#include "setup/rules/SetupFields.h"

#include <string_view>

#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "setup/rules/Autostart.h"
#include "setup/rules/StripTags.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr double highestPort = 65000;

void WriteProgramFile(const char *name, std::string_view text) {
    WriteFileAtomically(App::Path() + "\\" + name, text);
}

void SavePort(const std::string &text) {
    if (const double port = Val(text); port <= 0 || port > highestPort) {
        ShowMessageBox("Invalid Port! Valid ranges are 1 to 65000! Reverting to original value...", FlagCritical);
    } else {
        SaveSetting("Setup", "ListenPort", text);
    }
}

void Save(const char *key, const std::string &value) {
    SaveSetting("Setup", key, value);
}

/// An absent key is the sign of what is not wished.
void SaveOrRemove(const char *key, const std::string &value) {
    value.empty() ? DeleteSetting("Setup", key) : Save(key, value);
}

void SaveFlag(const char *key, const std::string &value) {
    SaveOrRemove(key, value == "1" ? value : std::string());
}

void SavePublicAddress(const std::string &address) {
    if (!address.empty() && WebAddressFrom(address, 80).empty()) {
        ShowMessageBox("Invalid Public Address! Enter a host, host:port or web address. Reverting to original value...",
                       FlagCritical);
    } else {
        SaveOrRemove("PublicAddress", address);
    }
}

}  // namespace

std::string CleanServiceBase(std::string_view typed) {
    std::string base = Trim(typed);
    while (base.ends_with('/')) base.pop_back();
    return base.empty() || Contains(base, "://") ? base : "http://" + base;
}

SetupFields LoadSetupFields(const std::string &proposedPort) {
    const auto stored = [](const char *key, std::string_view fallback) {
        return GetSetting("Setup", key, fallback);
    };
    SetupFields fields{.ServerTitle = stored("ServerTitle", "Life Through My Eyes"),
                       .Author = stored("Author", ""),
                       .RunOnStart = stored("RunOnStart", "0"),
                       .ListenPort = stored("ListenPort", proposedPort),
                       .Style = stored("Style", "Default"),
                       .FilesPerRow = stored("FilesPerRow", "3"),
                       .FilesPerPage = stored("FilesPerPage", ""),
                       .ImageSize = stored("ImageSize", "3"),
                       .ImageQuality = stored("ImageQuality", "3"),
                       .Webcam = stored("Webcam", "0"),
                       .SortMethod = stored("SortMethod", "0"),
                       .SortOrder = stored("SortOrder", "0"),
                       .ListOnline = stored("ListOnline", "0"),
                       .ServiceBase = stored("ServiceBase", ""),
                       .AccountName = stored("AccountName", ""),
                       .PortMapping = stored("PortMapping", "0"),
                       .MoreTypes = stored("MoreTypes", "0"),
                       .ShowPlaces = stored("ShowPlaces", "0"),
                       .BrowserCache = stored("BrowserCache", ""),
                       .PublicAddress = stored("PublicAddress", ""),
                       .Description = ReadProgramFile("sitedesc.txt").value_or(""),
                       .Welcome = ReadProgramFile("welcome.txt").value_or(WelcomeAtStart)};
    if (!fields.FilesPerPage.empty() && Val(fields.FilesPerPage) == 0) fields.FilesPerPage = AllFiles;
    if (Val(fields.BrowserCache) <= 0) fields.BrowserCache = CacheOff;
    return fields;
}

void SaveSetupFields(const SetupFields &fields, const std::string &program) {
    Save("RunSetup", "1");
    Save("ServerTitle", fields.ServerTitle);
    Save("Author", fields.Author);
    Save("RunOnStart", fields.RunOnStart);
    SetAutostart(fields.RunOnStart == "1", program);
    WriteProgramFile("sitedesc.txt", StripTags(fields.Description, ""));
    WriteProgramFile("welcome.txt", fields.Welcome);
    SavePort(fields.ListenPort);
    if (!fields.Style.empty()) Save("Style", fields.Style);  // no choice keeps what was chosen before
    Save("FilesPerRow", fields.FilesPerRow);
    Save("FilesPerPage", fields.FilesPerPage == AllFiles ? "0" : fields.FilesPerPage);
    Save("ImageSize", fields.ImageSize);
    Save("ImageQuality", fields.ImageQuality);
    Save("Webcam", fields.Webcam);
    Save("SortMethod", fields.SortMethod);
    Save("SortOrder", fields.SortOrder);
    Save("ListOnline", fields.ListOnline);
    SaveOrRemove("ServiceBase", CleanServiceBase(fields.ServiceBase));
    SaveOrRemove("AccountName", Trim(fields.AccountName));
    SaveFlag("PortMapping", fields.PortMapping);
    SaveFlag("MoreTypes", fields.MoreTypes);
    SaveFlag("ShowPlaces", fields.ShowPlaces);
    SaveOrRemove("BrowserCache", Val(fields.BrowserCache) > 0 ? Trim(fields.BrowserCache) : std::string());
    SavePublicAddress(Trim(fields.PublicAddress));
}

}  // namespace pixmora
