// The registry's file and the plain INI reader, both on any bytes.
#include <algorithm>

#include "Fuzz.h"
#include "platform/registry/RegistryFile.h"
#include "platform/runtime/Text.h"
#include "store/IniFile.h"

namespace pixmora {
namespace {

/// What was read comes back from what is written, also what is damaged.
void CheckTree(std::string_view text) {
    const Registry::Tree tree = Registry::ReadTree(text);
    const std::string written = Registry::WriteTree(tree);
    const Registry::Tree again = Registry::ReadTree(written);
    REQUIRE(again.Preamble == tree.Preamble && again.Keys.size() == tree.Keys.size());
    for (std::size_t i = 0; i < tree.Keys.size(); ++i) {
        REQUIRE(again.Keys[i].Path == tree.Keys[i].Path && again.Keys[i].Folded == tree.Keys[i].Folded);
        REQUIRE(std::ranges::equal(again.Keys[i].Entries, tree.Keys[i].Entries, [](const auto &a, const auto &b) {
            return a.IsValue == b.IsValue && a.Name == b.Name && a.Data == b.Data && a.Remark == b.Remark;
        }));
    }
    REQUIRE(Registry::WriteTree(again) == written);
}

/// Any text is a key's path, a value's name and a value.
void CheckValue(std::string_view name, std::string_view value) {
    Registry::Tree tree;
    Registry::SetValue(tree.FindOrAdd(std::string("HKCU\\") + std::string(name)), name, std::string(value));
    Registry::Tree again = Registry::ReadTree(Registry::WriteTree(tree));
    Registry::Key *key = again.Find(std::string("HKCU\\") + std::string(name));
    REQUIRE(key != nullptr);
    const Registry::Entry *entry = Registry::FindValue(*key, name);
    REQUIRE(entry != nullptr && entry->Data == Registry::Value(std::string(value)));
}

void CheckIni(std::string_view text, const MemoryFile &file) {
    file.Fill(text);
    const IniFile ini(file.Path());
    REQUIRE(HoldsNone(ini.Value("Orientation", "Format"), "\n"));
    const std::string known = ini.Value("Added section", "key");
    file.Fill(std::string(text) + "\n[added SECTION]\r\n KEY = 'a=b' \n");
    const std::string added = IniFile(file.Path()).Value("Added section", "key");
    REQUIRE(added == "a=b" || added == known);
}

}  // namespace

void CheckInput(std::string_view text) {
    static const MemoryFile file;
    CheckTree(text);
    const auto [name, value] = FirstLineAndRest(text);
    CheckValue(name, value);
    CheckIni(text, file);
}

}  // namespace pixmora
