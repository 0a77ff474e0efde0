// A movie file's size, frames and length.
#pragma once

#include <cstdint>
#include <string_view>

namespace pixmora {

struct MovieFacts {
    bool IsReadable = false;  ///< false: nothing else holds
    bool HasPicture = false;  ///< false: no width and height could be had
    int Width = 0;            ///< pixels
    int Height = 0;           ///< pixels
    std::int64_t Frames = 0;
    std::int64_t LengthMs = 0;
    bool IsH264 = false;  ///< its pictures; what every browser can play
};

/// Opens, reads and closes the file (AVI, MPEG, QuickTime and their kin, told by content from a closed list, local file
/// only). Bounded: reads a limited part of the file and gives up after half a second. Never throws.
MovieFacts ReadMovieFacts(std::string_view path);

}  // namespace pixmora
