// The registry: a tree of keys holding named values, kept in one readable text file that is replaced as a whole.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace pixmora::Registry {

/// Root keys of the tree.
enum class Root { CurrentUser, LocalMachine };

/// A string, or a double word.
using Value = std::variant<std::string, std::int64_t>;

/// Names of values, an album's among them, compare without regard to case in any language, keys without regard to ASCII
/// case; a key's path has its parts separated by "\", and the
/// spelling of the first writer stays. Every write is on the disk, whole and for this user's eyes
/// only, when the call returns. Another process's
/// changes are seen at the next call. A damaged line in the file is passed over and kept.
/// Every call @throws RunTimeError PathFileAccessError for a file that is there and can't be read or written.

bool KeyExists(Root root, std::string_view path);
void CreateKey(Root root, std::string_view path);
/// With everything below it; a key that isn't there is no error.
void DeleteKey(Root root, std::string_view path);
/// Names of the keys right below, in the file's order.
std::vector<std::string> EnumKeys(Root root, std::string_view path);
std::vector<std::pair<std::string, Value>> EnumValues(Root root, std::string_view path);
bool ValueExists(Root root, std::string_view path, std::string_view name);
/// The fallback when the value is absent.
Value GetValue(Root root, std::string_view path, std::string_view name, const Value &fallback = std::string());
void SetValue(Root root, std::string_view path, std::string_view name, const Value &value);
void DeleteValue(Root root, std::string_view path, std::string_view name);

/// Where the owner's programs keep their settings, in the system's form: $XDG_CONFIG_HOME, or ~/.config.
std::string ConfigFolder();
/// The file behind the tree, in the system's form: pixmora/settings.ini in ConfigFolder.
std::string FilePath();
/// Whether another process of this user works on this store. The first call takes its lock and keeps it for the life of
/// the process. Reading and writing need none.
bool PrevInstance();
/// Chooses another file, for tests, forgets what was read and gives up the lock. Empty: the usual one again.
void SetFilePath(std::string_view path);

}  // namespace pixmora::Registry

namespace pixmora {

/// The run time's settings: values of the current user's tree below this key, application, section. Every value is
/// text.
inline constexpr std::string_view SettingsKey = "Software\\VB and VBA Program Settings";
std::string GetSetting(std::string_view app, std::string_view section, std::string_view key, std::string_view fallback);
void SaveSetting(std::string_view app, std::string_view section, std::string_view key, std::string_view value);
/// Removes one value; an absent one is no error.
void DeleteSetting(std::string_view app, std::string_view section, std::string_view key);

}  // namespace pixmora
