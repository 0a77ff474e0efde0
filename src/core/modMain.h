// The program's entry and end.
#pragma once

#include <functional>
#include <string>

#include "core/WebsiteStart.h"

namespace pixmora {

enum class ProgramStart { Ready, SecondCopy, DatabaseFailed };

/// The entry up to the point where windows may show: settings migrated, a second copy refused, the process-wide objects
/// made, the database open, the totals read. The owner has been told what is wrong when it isn't Ready.
/// @param commandLine the whole of it; decides the second copy's message
ProgramStart BeginProgram(const std::string &commandLine);

/// Notes the moment of the program's first run, once.
void NoteInstallTime();

/// Loads the hidden form: sockets and timers with their handlers.
void LoadSystray();

/// What ShutDownProgram does besides; the desktop removes its tray icon and unloads its windows in them.
struct ShutDownHooks {
    std::function<void()> RemoveTrayIcon;
    std::function<void()> UnloadForms;
};

/// Releases everything, each step going on to the next whatever fails. Not for a running website: stop it first.
void ReleaseProgram(const ShutDownHooks &hooks = {});

/// ReleaseProgram, and the end of the process with status 0.
[[noreturn]] void ShutDownProgram(const ShutDownHooks &hooks = {});

}  // namespace pixmora
