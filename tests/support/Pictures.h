// Pictures for tests.
#pragma once

#include <cstdint>
#include <string>

namespace pixmora::test {

/// A bitmap file of 24 bits a pixel with a run of shades in it.
inline std::string BitmapFile(std::uint32_t width, std::uint32_t height) {
    const std::uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
    const std::uint32_t size = rowBytes * height;
    const std::uint32_t planesAndBits = 24 << 16 | 1;
    std::string file = "BM";
    for (const std::uint32_t number :
         {54 + size, 0U, 54U, 40U, width, height, planesAndBits, 0U, size, 2835U, 2835U, 0U, 0U})
        for (int shift = 0; shift < 32; shift += 8) file += static_cast<char>(number >> shift & 0xFF);
    for (std::uint32_t i = 0; i < size; ++i) file += static_cast<char>(i % rowBytes % 251);
    return file;
}

}  // namespace pixmora::test
