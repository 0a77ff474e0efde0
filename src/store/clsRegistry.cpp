// The registry helper for what lies outside the settings.
#include "store/clsRegistry.h"

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

Registry::Value CutText(Registry::Value value) {
    if (const auto *text = std::get_if<std::string>(&value)) return CutAtNul(*text);
    return value;
}

Registry::Value Converted(const Registry::Value &value, clsRegistry::ValueType type) {
    if (type == clsRegistry::ValueType::String) return clsRegistry::ValueText(value);
    if (const auto *text = std::get_if<std::string>(&value)) return std::int64_t{CLng(*text)};
    return value;
}

}  // namespace

bool clsRegistry::KeyExists() const {
    return Registry::KeyExists(hkey, FullPath());
}

std::string clsRegistry::CreateKey(std::string_view path) const {
    const std::string whole = path.empty() ? FullPath() : KeyRoot + "\\" + std::string(path);
    if (Registry::KeyExists(hkey, whole)) return "The key was already there.";
    Registry::CreateKey(hkey, whole);
    return "The key was created.";
}

void clsRegistry::DeleteKey(std::string_view name) const {
    Registry::DeleteKey(hkey, KeyRoot + "\\" + std::string(name));
}

void clsRegistry::DeleteValue(std::string_view name) const {
    Registry::DeleteValue(hkey, FullPath(), name);
}

std::vector<std::string> clsRegistry::EnumRegistryKeys(Registry::Root root, std::string_view path) {
    return Registry::EnumKeys(root, path);
}

std::vector<std::pair<std::string, Registry::Value>> clsRegistry::EnumRegistryValues(Registry::Root root,
                                                                                     std::string_view path) {
    auto values = Registry::EnumValues(root, path);
    for (auto &[name, value] : values) value = CutText(std::move(value));
    return values;
}

Registry::Value clsRegistry::GetRegistryValue(std::string_view name, const Registry::Value &fallback) const {
    return CutText(Registry::GetValue(hkey, FullPath(), name, fallback));
}

void clsRegistry::SetRegistryValue(std::string_view name, const Registry::Value &value, ValueType type) const {
    Registry::SetValue(hkey, FullPath(), name, Converted(value, type));
}

std::string clsRegistry::TrimNull(std::string_view text) {
    return CutAtNul(text);
}

std::string clsRegistry::ValueText(const Registry::Value &value) {
    if (const auto *number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
    return std::get<std::string>(value);
}

std::string clsRegistry::FullPath() const {
    return KeyRoot + "\\" + Subkey;
}

}  // namespace pixmora
