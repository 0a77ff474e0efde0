// The start of a picture file, where its Exif block stands.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pixmora {

/// At most so many bytes of the file; of a HEIC or AVIF picture the block alone, behind the same mark. Nothing for a
/// file that isn't there. @throws RunTimeError
std::string ReadExifStart(std::string_view path, std::size_t count);

/// Where the block begins (with its byte order); npos without one. The mark counts wherever it stands: the file's own
/// structure is not looked at.
std::size_t ExifBlock(std::string_view bytes);

}  // namespace pixmora
