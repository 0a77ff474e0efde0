// The program's start with the owner's session.
#pragma once

#include <string>

namespace pixmora {

/// Writes or removes the entry in $XDG_CONFIG_HOME/autostart (Desktop Application Autostart Specification), whose
/// command is the program and " start". @param program full path @throws RunTimeError PathFileAccessError, DiskFull
void SetAutostart(bool isOn, const std::string &program);

/// The entry's text (Desktop Entry Specification). @param program full path
std::string AutostartEntry(const std::string &program);

/// The entry's file, in the system's form.
std::string AutostartFile();

}  // namespace pixmora
