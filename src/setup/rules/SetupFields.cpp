// The values of the setup dialog's controls, and the settings and files behind them.
#include "setup/rules/SetupFields.h"

#include <string_view>

#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
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

void SaveFiles(const SetupFields &fields) {
    WriteProgramFile("sitedesc.txt", StripTags(fields.Description, ""));
    WriteProgramFile("welcome.txt", fields.Welcome);
}

}  // namespace

SetupFields LoadSetupFields() {
    SetupFields fields;
    for (const BoundSetting &bound : boundSettings) {
        fields.*bound.Value = GetSetting("Setup", bound.Key, bound.Default);
    }
    if (!fields.FilesPerPage.empty() && Val(fields.FilesPerPage) == 0) fields.FilesPerPage = AllFiles;
    fields.Description = ReadProgramFile("sitedesc.txt").value_or("");
    fields.Welcome = ReadProgramFile("welcome.txt").value_or(WelcomeAtStart);
    return fields;
}

void SaveSetupFields(const SetupFields &fields, const std::string &program) {
    SaveSetting("Setup", "RunSetup", "1");
    for (const BoundSetting &bound : boundSettings) {
        const std::string &value = fields.*bound.Value;
        if (bound.Value == &SetupFields::ListenPort) {
            SetAutostart(fields.RunOnStart == "1", program);
            SaveFiles(fields);
            SavePort(value);
        } else if (bound.Value == &SetupFields::FilesPerPage) {
            SaveSetting("Setup", bound.Key, value == AllFiles ? "0" : value);
        } else if (bound.Value != &SetupFields::Style || !value.empty()) {  // no choice keeps what was chosen before
            SaveSetting("Setup", bound.Key, value);
        }
    }
}

}  // namespace pixmora
