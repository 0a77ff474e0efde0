// Other ways to make a smaller JPEG of a picture, in this process.
#pragma once

#include <cstddef>
#include <string>

namespace pixmora::bench {

/// What is asked of all of them: at most so many pixels wide, proportions kept, JPEG quality in percent.
struct WantedPicture {
    int Width;
    int Quality;
};

/// The floor: libjpeg-turbo alone. Decodes the smallest of 1/8, 1/4, 1/2 and 1/1 that leaves twice the width wanted,
/// picks single pixels of it instead of scaling, and encodes them with optimised tables. @return bytes of the JPEG
/// @throws std::runtime_error
std::size_t BareJpeg(const std::string &path, WantedPicture wanted);

/// Its first half alone. @return bytes of the pixels
/// @throws std::runtime_error
std::size_t BareDecode(const std::string &path, WantedPicture wanted);

/// libvips: vips_thumbnail, optimised tables, its cache off, one thread. @return bytes of the JPEG
/// @throws std::runtime_error
std::size_t VipsThumbnail(const std::string &path, WantedPicture wanted);

}  // namespace pixmora::bench
