// What the markers of a JPEG file tell before anything is decoded.
#pragma once

#include <optional>

#include "platform/files/Files.h"

namespace pixmora {

struct JpegHead {
    /// Progressive, or each component in a scan of its own: a decoder holds the coefficients of the whole picture, 2
    /// bytes a sample, however small the result is to be.
    bool HoldsWholePicture = false;
    /// Counted only for a picture that is held whole, and no further than one above MaximumJpegScans; else 1.
    int Scans = 1;
};

/// Each scan costs a pass over the held picture, and a few bytes are enough for one. Real files have about ten.
inline constexpr int MaximumJpegScans = 100;

/// Walks the markers (ITU T.81, Annex B), bytes between them passed over. A file of which nothing can be shown gives
/// none: it ends, or says that it ends, before the first byte of picture data.
std::optional<JpegHead> ReadJpegHead(const BinaryFile &file);

}  // namespace pixmora
