// Cleaning of the texts that the owner types for the site.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// The text trimmed, without line ends and without tags, save those of the comma-separated allow list. A "<" that no
/// ">" follows cuts all that comes behind it; an empty result becomes one blank.
std::string StripTags(std::string_view text, std::string_view allowList);

}  // namespace pixmora
