// The registry helper for what lies outside the settings.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/registry/Registry.h"

namespace pixmora {

/// One key of the registry by its root, the path below that and a sub-key, with the operations on it and beside it. The
/// full path is KeyRoot, "\", Subkey; blank parts and separators at the ends don't matter.
class clsRegistry {
public:
    /// The kinds of value that the tree holds, by the registry's numbers.
    enum class ValueType { String = 1, DoubleWord = 4 };

    Registry::Root hkey = Registry::Root::CurrentUser;
    std::string KeyRoot;
    std::string Subkey;

    /// Whether the full path is there.
    bool KeyExists() const;
    /// Makes the key of the full path, or the one at a path below KeyRoot, with the keys above it.
    /// @return in words, whether it was made or stood already
    std::string CreateKey(std::string_view path = {}) const;
    /// A key below KeyRoot, with everything under it. An absent one is no error.
    void DeleteKey(std::string_view name) const;
    /// A value in the full path. An absent one is no error.
    void DeleteValue(std::string_view name) const;

    /// The names of the keys right below; an empty path means the root itself.
    static std::vector<std::string> EnumRegistryKeys(Registry::Root root, std::string_view path);
    /// Names and values. Texts are cut at their first NUL.
    static std::vector<std::pair<std::string, Registry::Value>> EnumRegistryValues(Registry::Root root,
                                                                                   std::string_view path);

    /// A value in the full path, the fallback when it is absent. Texts are cut at their first NUL.
    Registry::Value GetRegistryValue(std::string_view name, const Registry::Value &fallback = std::string()) const;
    /// Stores the value as that kind, turned to text or number where it is the other; makes the key.
    /// @throws RunTimeError TypeMismatch, Overflow when a text can't be a double word
    void SetRegistryValue(std::string_view name, const Registry::Value &value,
                          ValueType type = ValueType::String) const;

    static std::string TrimNull(std::string_view text);
    /// The value as text, a number in decimal digits.
    static std::string ValueText(const Registry::Value &value);

private:
    std::string FullPath() const;
};

}  // namespace pixmora
