// The camera's notes in a HEIC or AVIF picture.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// The TIFF block (Exif 2.3); empty for a file without one and for any other file. @throws RunTimeError when it can't
/// be opened
std::string ReadHeifExif(std::string_view path);

}  // namespace pixmora
