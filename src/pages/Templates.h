// The pieces that several pages share.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/runtime/Text.h"

namespace pixmora {

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

/// For use inside a quoted script string: every "'" as "\'".
std::string EscapeForScript(std::string_view text);

/// "User: " and the name, or nothing.
std::string LoginNameText(std::string_view username);

}  // namespace pixmora
