// What the listings show of protected places.
#pragma once

#include <cstdint>
#include <string_view>

namespace pixmora {

/// Whether a listing shows an album or a directory to this user. Deliberate: the right is asked for a word in the place
/// of the directory, which no right was ever given for, so of protected entries listings show all to administrators and
/// none to anybody else. @param name plain @param directory plain, with the name; "\" for an album @param word the
/// view, or empty
bool IsListed(std::string_view user, std::int32_t album, std::string_view name, std::string_view directory,
              std::string_view word);

}  // namespace pixmora
