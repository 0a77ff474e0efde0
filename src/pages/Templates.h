// The pieces that several pages share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/site/Response.h"
#include "platform/runtime/Text.h"

namespace pixmora {

/// A placeholder, braces included, and what takes its place.
struct Filling {
    std::string_view Placeholder;
    std::string Value;
};

/// The head as it is and behind it the text with all placeholders replaced, in one pass. It comes out as if they were
/// filled one after the other in the order given: a value may hold those that come after its own.
std::string FillAll(std::string head, std::string_view text, const std::vector<Filling> &fillings);

/// Sends the template as a whole page of HTML, in one piece. @return the page's bytes without the head
std::size_t SendPage(const Connection &socket, std::string_view text, const std::vector<Filling> &fillings);

/// One of three sentences, drawn anew each time, as a link to the product's home page. It closes a font element that
/// the template has opened.
std::string MakeFooter();

/// The block of script that gives the picture cells their hover frame, for the templates of owners who want it; no page
/// calls it.
std::string BrowserScript();

/// For use inside a quoted script string: every "'" as "\'".
std::string EscapeForScript(std::string_view text);

/// "User: " and the name, or nothing.
std::string LoginNameText(std::string_view username);

}  // namespace pixmora
