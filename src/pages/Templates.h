// The pieces that several pages share.
#pragma once

#include <concepts>
#include <span>
#include <string>
#include <string_view>

namespace pixmora {

inline constexpr std::string_view CrLf = "\r\n";

/// A whole number, which a fragment shows in decimal; characters and flags are none.
template <typename T>
concept WholeNumber = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char>;

inline void AppendPart(std::string &text, std::string_view part) {
    text += part;
}
inline void AppendPart(std::string &text, WholeNumber auto part) {
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

/// Replaces every occurrence of the placeholder, braces included, in the page under construction.
void Fill(std::string &page, std::string_view placeholder, std::string_view value);

/// A placeholder, braces included, and what takes its place.
struct Filling {
    std::string_view Placeholder;
    std::string Value;
};

/// The head as it is and behind it the text with all placeholders replaced, in one pass. It comes out as if they were
/// filled one after the other in the order given: a value may hold those that come after its own.
std::string FillAll(std::string head, std::string_view text, std::span<const Filling> fillings);

/// One of three sentences, drawn anew each time, as a link to the product's home page. It closes a font element that
/// the template has opened.
std::string MakeFooter();

/// The block of script that gives the picture cells their hover frame, as templates with such cells carry it.
std::string BrowserScript();

/// For use inside a quoted script string: every "'" as "\'".
std::string EscapeForScript(std::string_view text);

/// "User: " and the name, or nothing.
std::string LoginNameText(std::string_view username);

/// A uniformly drawn number in [0, 1).
double Rnd();

}  // namespace pixmora
