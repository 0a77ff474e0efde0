// What the parameter sets in a HEIF file promise the decoder.
#pragma once

#include <cstdint>
#include <span>

namespace pixmora {

/// The most pixels of a picture by the sequence parameter sets in the file's boxes (ITU-T H.265, 7.3.2.2; ISO/IEC
/// 14496-15, 8.3.3). The decoder's memory goes by these, whatever size the file's head says. 0 without any.
std::int64_t MostCodedPixels(std::span<const unsigned char> file);

}  // namespace pixmora
