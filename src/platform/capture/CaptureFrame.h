// One frame of a capture device, and the bitmap that becomes of it.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

enum class FramePixels {
    Yuyv,  ///< two pixels in four bytes: Y, U, Y, V (ITU-R BT.601, limited range)
    Jpeg,  ///< each frame a JPEG picture, possibly without its Huffman tables
};

struct FrameFormat {
    FramePixels Pixels = FramePixels::Yuyv;
    int Width = 0;         ///< pixels, even
    int Height = 0;        ///< pixels
    int BytesPerLine = 0;  ///< of Yuyv
};

/// No frame has a side longer than this, in pixels.
inline constexpr int LongestFrameSide = 4096;

/// Whether all of the picture is there.
bool IsWholeFrame(const FrameFormat &format, std::string_view bytes);

/// The bytes of a Windows bitmap; empty for a frame that is damaged. @param bytes of a whole frame
std::string FrameToBitmap(const FrameFormat &format, std::string_view bytes);

}  // namespace pixmora
