// The registry's file and the plain INI reader, both on any bytes.
#include <algorithm>

#include "Fuzz.h"
#include "platform/registry/RegistryFile.h"
#include "platform/runtime/Text.h"
#include "store/IniFile.h"

namespace pixmora {

namespace {

bool AreSame(const Registry::Entry &left, const Registry::Entry &right) {
    return left.IsValue == right.IsValue && left.Name == right.Name && left.Data == right.Data &&
           left.Remark == right.Remark;
}

bool AreSame(const Registry::Tree &left, const Registry::Tree &right) {
    const auto areSame = [](const Registry::Entry &a, const Registry::Entry &b) {
        return AreSame(a, b);
    };
    if (left.Preamble != right.Preamble || left.Keys.size() != right.Keys.size()) return false;
    for (std::size_t i = 0; i < left.Keys.size(); ++i) {
        const Registry::Key &a = left.Keys[i];
        const Registry::Key &b = right.Keys[i];
        if (a.Path != b.Path || a.Folded != b.Folded) return false;
        if (!std::equal(a.Entries.begin(), a.Entries.end(), b.Entries.begin(), b.Entries.end(), areSame)) return false;
    }
    return true;
}

/// What was read comes back from what is written, also what is damaged.
void CheckTree(std::string_view text) {
    const Registry::Tree tree = Registry::ReadTree(text);
    const std::string written = Registry::WriteTree(tree);
    const Registry::Tree again = Registry::ReadTree(written);
    REQUIRE(AreSame(tree, again));
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

}  // namespace pixmora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    using namespace pixmora;
    static const MemoryFile file;
    const std::string_view text = TextOf(bytes, size);
    CheckTree(text);
    const auto [name, value] = FirstLineAndRest(text);
    CheckValue(name, value);
    CheckIni(text, file);
    return 0;
}
