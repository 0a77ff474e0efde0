// One frame of a capture device, and the bitmap that becomes of it.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

enum class FramePixels {
    Jpeg,  ///< each frame a JPEG picture, possibly without its Huffman tables
    Rgb,   ///< three bytes a pixel: red, green, blue
};

struct FrameFormat {
    FramePixels Pixels = FramePixels::Jpeg;
    int Width = 0;         ///< pixels
    int Height = 0;        ///< pixels
    int BytesPerLine = 0;  ///< of Rgb
};

/// No frame has a side longer than this, in pixels.
inline constexpr int LongestFrameSide = 4096;

/// How much of a picture the bytes hold, as far as can be told without decoding.
enum class FrameState {
    Damaged,
    Unended,  ///< a JPEG without its end mark: some cameras leave it out, others have lost a part of the picture
    Whole,    ///< bytes behind the end don't matter
};
FrameState LookAtFrame(const FrameFormat &format, std::string_view bytes);

/// The bytes of a Windows bitmap; empty for a frame that can't be decoded. @param bytes of a frame that isn't damaged
std::string FrameToBitmap(const FrameFormat &format, std::string_view bytes);

}  // namespace pixmora
