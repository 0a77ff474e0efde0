// A text as a QR code (ISO/IEC 18004).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

struct QrCode {
    /// Modules of a side, without the light margin; 0 for a text that is too long, or where the program's module is
    /// missing.
    int Size = 0;
    std::vector<bool> Dark;  ///< row by row

    bool IsDark(int x, int y) const {
        return Dark[static_cast<std::size_t>(y) * static_cast<std::size_t>(Size) + static_cast<std::size_t>(x)];
    }
};

/// Light modules that have to be around a code.
inline constexpr int QrMargin = 4;

QrCode MakeQrCode(std::string_view text);

/// The code in half blocks, two rows of modules a line, margin included; light modules are drawn, so it is right on a
/// dark terminal. @param isColoured with the terminal's own codes for black on white, right on any
std::string QrText(const QrCode &code, bool isColoured);

}  // namespace pixmora
