// The program's start with the owner's session.
#include "setup/rules/Autostart.h"

#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/registry/Registry.h"

namespace pixmora {

namespace {

/// An argument in quotes. A backslash counts twice, once for the quotes and once for the entry's line.
std::string QuotedArgument(const std::string &argument) {
    std::string quoted;
    for (const char character : argument) {
        if (character == '\\') {
            quoted += R"(\\\\)";
        } else if (character == '"' || character == '`' || character == '$') {
            quoted += std::string(R"(\\)") + character;
        } else if (character == '%') {
            quoted += "%%";
        } else {
            quoted += character;
        }
    }
    return '"' + quoted + '"';
}

}  // namespace

std::string AutostartFile() {
    return Registry::ConfigFolder() + "/autostart/pixmora.desktop";
}

std::string AutostartEntry(const std::string &program) {
    return "[Desktop Entry]\nType=Application\nName=" + App::Title + "\nExec=" + QuotedArgument(program) +
           " start\nTerminal=false\n";
}

void SetAutostart(bool isOn, const std::string &program) {
    const std::string file = AutostartFile();
    if (isOn) {
        MakeDirectory(file.substr(0, file.rfind('/')));
        WriteFileAtomically(file, AutostartEntry(program));
    } else if (FileExists(file)) {
        DeleteFile(file);
    }
}

}  // namespace pixmora
