// Pure functions of text: cutting, joining, replacing and comparing byte strings.
#include "platform/runtime/Text.h"

#include <algorithm>
#include <charconv>

namespace pixmora {

namespace {

char UpperOf(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string Replace(std::string text, std::string_view from, std::string_view to) {
    if (from.empty()) return text;
    std::size_t found = text.find(from);
    if (found == std::string::npos) return text;

    std::string result;
    result.reserve(text.size() + to.size());
    std::size_t start = 0;
    for (; found != std::string::npos; found = text.find(from, start)) {
        result.append(text, start, found - start);
        result.append(to);
        start = found + from.size();
    }
    result.append(text, start);
    return result;
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiter) {
    std::vector<std::string> pieces;
    if (text.empty()) return pieces;
    std::size_t start = 0;
    if (!delimiter.empty()) {
        for (std::size_t found = text.find(delimiter); found != std::string_view::npos;
             found = text.find(delimiter, start)) {
            pieces.emplace_back(text.substr(start, found - start));
            start = found + delimiter.size();
        }
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

std::string Join(const std::vector<std::string> &pieces, std::string_view delimiter) {
    std::string result;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) result.append(delimiter);
        result.append(pieces[i]);
    }
    return result;
}

std::string Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string_view TrimWhitespace(std::string_view text) {
    constexpr std::string_view whitespace = " \t\r\n\f\v";
    const std::size_t first = text.find_first_not_of(whitespace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(whitespace) - first + 1);
}

std::string LCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), LowerOf);
    return result;
}

std::string UCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), UpperOf);
    return result;
}

bool EqualsIgnoreCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerOf, LowerOf);
}

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string CutAtNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

std::string RepeatString(std::string_view text, int count) {
    std::string result;
    if (count <= 0) return result;
    result.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) result.append(text);
    return result;
}

std::optional<char> ByteOfDigits(std::string_view digits) {
    unsigned char byte = 0;
    const char *const end = digits.data() + digits.size();
    const bool isByte = digits.size() <= 2 && std::from_chars(digits.data(), end, byte, 16).ptr == end;
    return isByte && !digits.empty() ? std::optional(static_cast<char>(byte)) : std::nullopt;
}

std::string DigitsOfByte(char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(byte);
    return {digits[code / 16], digits[code % 16]};
}

}  // namespace pixmora
