// A plain reader of INI files.
#include "store/IniFile.h"

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

std::string_view WithoutQuotes(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// No line holds a line end, so it parts section and key for sure.
std::string PlaceOf(std::string_view section, std::string_view key) {
    return LCase(section) + "\n" + LCase(key);
}

}  // namespace

IniFile::IniFile(std::string_view path) {
    const std::string content = Try([&] { return BinaryFile::OpenForRead(path)->ReadAll(); }).value_or("");
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    std::string_view rest = content;
    if (rest.starts_with(byteOrderMark)) rest.remove_prefix(byteOrderMark.size());
    std::string section;
    for (const std::string &line : Split(rest, "\n")) AddLine(TrimWhitespace(line), section);
}

std::string IniFile::Value(std::string_view section, std::string_view key) const {
    const auto found = values_.find(PlaceOf(TrimWhitespace(section), TrimWhitespace(key)));
    return found == values_.end() ? std::string() : found->second;
}

void IniFile::AddLine(std::string_view line, std::string &section) {
    if (line.starts_with(';')) return;
    if (line.starts_with('[')) {
        const std::size_t end = line.find(']');
        section = TrimWhitespace(line.substr(1, end == std::string_view::npos ? end : end - 1));
        return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view key = TrimWhitespace(line.substr(0, equals));
    const std::string_view value = TrimWhitespace(line.substr(equals + 1));
    values_.try_emplace(PlaceOf(section, key), WithoutQuotes(value));
}

}  // namespace pixmora
