// The program's start with the owner's session.
#pragma once

#include <string>

namespace pixmora {

/// Writes or removes the entry in $XDG_CONFIG_HOME/autostart (freedesktop.org, autostart), whose
/// command is the program and " start". @param program full path @throws RunTimeError PathFileAccessError, DiskFull
void SetAutostart(bool isOn, const std::string &program);

/// The entry's text (freedesktop.org, desktop entries). @param program full path
std::string AutostartEntry(const std::string &program);

/// The entry's file, in the system's form.
std::string AutostartFile();

}  // namespace pixmora
