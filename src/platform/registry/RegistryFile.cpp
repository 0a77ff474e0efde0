// The text form of the registry's file.
#include "platform/registry/RegistryFile.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/runtime/Text.h"

namespace pixmora::Registry {

namespace {

constexpr std::string_view doubleWordMark = "dword:";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// The byte that "%" and two hexadecimal digits at the position say.
std::optional<char> EscapeAt(std::string_view text, std::size_t i) {
    return text[i] == '%' && i + 2 < text.size() ? ByteOfDigits(text.substr(i + 1, 2)) : std::nullopt;
}

std::string Unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::optional<char> byte = EscapeAt(text, i);
        result.push_back(byte.value_or(text[i]));
        if (byte) i += 2;
    }
    return result;
}

/// Escapes what would not come back from a line: control characters, blanks at the ends, and the characters named.
/// @param anywhere characters escaped wherever they stand @param atStart those escaped as the first character
std::string Escaped(std::string_view text, std::string_view anywhere, std::string_view atStart) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto code = static_cast<unsigned char>(c);
        const bool isAtEnd = i == 0 || i + 1 == text.size();
        const bool isEscaped = code < 0x20 || code == 0x7F || (c == ' ' && isAtEnd) || EscapeAt(text, i) ||
                               Contains(anywhere, text.substr(i, 1)) ||
                               (i == 0 && Contains(atStart, text.substr(i, 1)));
        if (isEscaped) {
            Append(result, "%", DigitsOfByte(c));
        } else {
            result.push_back(c);
        }
    }
    return result;
}

std::optional<std::int64_t> DoubleWordOf(std::string_view text) {
    if (!text.starts_with(doubleWordMark)) return std::nullopt;
    text.remove_prefix(doubleWordMark.size());
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

Value ReadValue(std::string_view text) {
    if (const std::optional<std::int64_t> number = DoubleWordOf(text)) return *number;
    return Unescaped(text);
}

std::string ValueLine(const Entry &entry) {
    const std::string start = Escaped(entry.Name, "=", "[;#") + "=";
    if (const auto *number = std::get_if<std::int64_t>(&entry.Data))
        return start + std::string(doubleWordMark) + std::to_string(*number);
    const auto &text = std::get<std::string>(entry.Data);
    return start + Escaped(text, "", DoubleWordOf(text) ? "d" : "");
}

/// The path in the brackets of a key's line; none when the line is no such line.
std::optional<std::string> KeyPathOf(std::string_view line) {
    if (line.size() < 2 || line.front() != '[' || line.back() != ']') return std::nullopt;
    return Unescaped(TrimWhitespace(line.substr(1, line.size() - 2)));
}

void AddLine(Tree &tree, Key *&key, std::string_view line) {
    const std::string_view content = TrimWhitespace(line);
    if (content.empty()) return;
    if (const std::optional<std::string> path = KeyPathOf(content)) {
        key = &tree.FindOrAdd(*path);
        return;
    }
    const bool isRemark = content.front() == ';' || content.front() == '#' || content.front() == '[';
    const std::size_t equals = content.find('=');
    if (key == nullptr) {
        tree.Preamble.emplace_back(content);
    } else if (isRemark || equals == std::string_view::npos) {
        key->Entries.push_back({.Name = {}, .Data = {}, .Remark = std::string(content), .IsValue = false});
    } else {
        SetValue(*key, Unescaped(TrimWhitespace(content.substr(0, equals))),
                 ReadValue(TrimWhitespace(content.substr(equals + 1))));
    }
}

}  // namespace

Key *Tree::Find(std::string_view path) {
    const std::string folded = LCase(path);
    const auto found = std::find_if(Keys.begin(), Keys.end(), [&](const Key &key) { return key.Folded == folded; });
    return found == Keys.end() ? nullptr : &*found;
}

Key &Tree::FindOrAdd(std::string_view path) {
    if (Key *key = Find(path)) return *key;
    return Keys.emplace_back(Key{std::string(path), LCase(path), {}});
}

Entry *FindValue(Key &key, std::string_view name) {
    const auto found = std::find_if(key.Entries.begin(), key.Entries.end(), [&](const Entry &entry) {
        return entry.IsValue && CompareTexts(entry.Name, name) == 0;
    });
    return found == key.Entries.end() ? nullptr : &*found;
}

void SetValue(Key &key, std::string_view name, const Value &value) {
    if (Entry *entry = FindValue(key, name)) {
        entry->Data = value;
    } else {
        key.Entries.push_back({.Name = std::string(name), .Data = value, .Remark = {}, .IsValue = true});
    }
}

Tree ReadTree(std::string_view text) {
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    Tree tree;
    Key *key = nullptr;
    for (const std::string &line : Split(text, "\n")) AddLine(tree, key, line);
    return tree;
}

std::string WriteTree(const Tree &tree) {
    std::string text;
    // A mark that begins a line would be taken for the file's own.
    if (!tree.Preamble.empty() && tree.Preamble.front().starts_with(byteOrderMark)) text = "\n";
    for (const std::string &line : tree.Preamble) text += line + "\n";
    for (const Key &key : tree.Keys) {
        if (!text.empty()) text += "\n";
        text += "[" + Escaped(key.Path, "", "") + "]\n";
        for (const Entry &entry : key.Entries) text += (entry.IsValue ? ValueLine(entry) : entry.Remark) + "\n";
    }
    return text;
}

}  // namespace pixmora::Registry
