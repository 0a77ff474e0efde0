// Parts of a file that a player asks for when its viewer goes to another place in the movie.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pixmora {

/// The part of a file that a Range header (RFC 7233) asks for.
struct ByteRange {
    std::int64_t First = 0;   ///< offset of its first byte
    std::int64_t Length = 0;  ///< bytes; 0: the file has none of those that are asked for
};

/// @param header as "bytes=0-499", "bytes=500-" or "bytes=-500"
/// @return nothing for what is answered with the whole file: another unit, several parts at once, or no range at all
std::optional<ByteRange> ReadByteRange(std::string_view header, std::int64_t fileSize);

}  // namespace pixmora
