// Pictures for tests.
#pragma once

#include <cstdint>
#include <string>

namespace pixmora::test {

/// A bitmap file of 24 bits a pixel with a run of shades in it.
inline std::string BitmapFile(std::uint32_t width, std::uint32_t height) {
    const auto number = [](std::uint32_t value) {
        std::string bytes;
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
        return bytes;
    };
    const std::uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
    const std::string planesAndBits("\x01\x00\x18\x00", 4);
    std::string file = "BM" + number(54 + rowBytes * height) + number(0) + number(54) + number(40) + number(width) +
                       number(height) + planesAndBits + number(0) + number(rowBytes * height) + number(2835) +
                       number(2835) + number(0) + number(0);
    for (std::uint32_t i = 0; i < rowBytes * height; ++i) file += static_cast<char>(i % rowBytes % 251);
    return file;
}

}  // namespace pixmora::test
