// Pure functions of text. A text is a byte string: one char a byte, whatever the encoding; case means ASCII case unless
// a function says otherwise.
#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

inline constexpr std::string_view CrLf = "\r\n";

/// A whole number, which a fragment shows in decimal; characters and flags are none.
template <typename T>
concept PrintableInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char>;

inline void AppendPart(std::string &text, std::string_view part) {
    text += part;
}
inline void AppendPart(std::string &text, PrintableInteger auto part) {
    text += std::to_string(part);
}

/// Appends texts and whole numbers to a fragment under construction.
template <typename... Parts>
void Append(std::string &text, const Parts &...parts) {
    (AppendPart(text, parts), ...);
}

/// Texts and whole numbers, one behind the other.
template <typename... Parts>
std::string Concat(const Parts &...parts) {
    std::string text;
    Append(text, parts...);
    return text;
}

/// Every occurrence of `from` replaced, case-sensitively and without looking at what was put in. An empty `from`
/// changes nothing.
std::string Replace(std::string text, std::string_view from, std::string_view to);

/// The pieces between the delimiters, empty ones included. An empty text gives no piece at all, as the run time has it.
std::vector<std::string> Split(std::string_view text, std::string_view delimiter);

std::string Join(const std::vector<std::string> &pieces, std::string_view delimiter);

/// Without the blanks (and only blanks) at both ends.
std::string Trim(std::string_view text);

/// Without blanks, tabs and line ends at both ends; a part of the text that was given, not a copy.
std::string_view TrimWhitespace(std::string_view text);

/// The C library's case functions depend on the locale, and they must not change the bytes of UTF-8.
constexpr char LowerOf(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string LCase(std::string_view text);
std::string UCase(std::string_view text);

/// Order of two texts as people read them: without regard to case in any language, a letter with an accent behind the
/// bare one and before the next. @return less than 0, 0 (for texts that differ in case alone) or greater
int CompareTexts(std::string_view left, std::string_view right);
/// The same for two texts exactly when CompareTexts finds no difference.
std::string FoldedText(std::string_view text);

/// Without regard to ASCII case.
bool EqualsIgnoreCase(std::string_view left, std::string_view right);

bool Contains(std::string_view text, std::string_view part);

/// The text up to its first NUL.
std::string CutAtNul(std::string_view text);

/// `count` times the text; none for 0 and below.
std::string RepeatString(std::string_view text, int count);

/// The byte that one or two hexadecimal digits say; none for any other text.
std::optional<char> ByteOfDigits(std::string_view digits);
/// A byte as two hexadecimal digits: "0A".
std::string DigitsOfByte(char byte);

/// Wildcard match of the run time's Like, binary compare: `*` any run, `?` one character, `#` one digit, `[a-z]` and
/// `[!a-z]` character lists. Takes time in proportion to text times pattern at the worst.
/// @throws RunTimeError InvalidPattern for a list that is never closed and for a range that runs backwards.
bool Like(std::string_view text, std::string_view pattern);

/// The shell's path match: semicolon-separated wildcards of `*` and `?`, blanks around each ignored, without regard to
/// case. An empty list entry matches nothing.
bool PathMatchSpec(std::string_view name, std::string_view patterns);

}  // namespace pixmora
