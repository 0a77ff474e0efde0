// The owner's settings, and the text files that complete them. Every setting is text; its default belongs to the call
// that reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry/Registry.h"

namespace pixmora {

/// A setting of this program. Names of sections and keys compare without regard to ASCII case.
std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback = "");
void SaveSetting(std::string_view section, std::string_view key, std::string_view value);
/// Removes the setting; an absent one is no error.
void DeleteSetting(std::string_view section, std::string_view key);

/// The setting as a whole number, rounded half to even. @throws RunTimeError TypeMismatch when its text is no number
/// (an empty one is none), Overflow beyond 32 bits, both naming the setting
std::int32_t GetSettingNumber(std::string_view section, std::string_view key, std::int32_t fallback);

/// The port of the website, rounded to a whole number. @throws RunTimeError TypeMismatch
int ListenPort();
/// The one address of the machine that the website listens on, dotted; empty for all of them.
std::string ListenAddress();

/// Whether another process of this user has the program's folder or its settings. This one keeps both from here on.
bool IsProgramElsewhere();

/// Brings settings of earlier versions to their present place, form and readers; the first thing at program start.
void MigrateSettings();

/// The whole of a text file in the program's folder, without a byte order mark; none when there is no such file.
/// @throws RunTimeError PathFileAccessError when it can't be read
std::optional<std::string> ReadProgramFile(std::string_view name);

}  // namespace pixmora
