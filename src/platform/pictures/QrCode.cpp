#include "platform/pictures/QrCode.h"

#include <qrencode.h>

#include <memory>

namespace pixmora {

QrCode MakeQrCode(std::string_view text) {
    const std::unique_ptr<QRcode, void (*)(QRcode *)> made(
        QRcode_encodeString8bit(std::string(text).c_str(), 0, QR_ECLEVEL_M), QRcode_free);
    QrCode code;
    if (!made) return code;
    code.Size = made->width;
    const auto modules = static_cast<std::size_t>(made->width) * static_cast<std::size_t>(made->width);
    code.Dark.reserve(modules);
    for (std::size_t i = 0; i < modules; ++i) code.Dark.push_back((made->data[i] & 1) != 0);
    return code;
}

std::string QrText(const QrCode &code, bool isColoured) {
    const auto isLight = [&code](int x, int y) {
        return x < 0 || y < 0 || x >= code.Size || y >= code.Size || !code.IsDark(x, y);
    };
    std::string text;
    for (int y = -QrMargin; y < code.Size + QrMargin; y += 2) {
        if (isColoured) text += "\033[97;40m";
        for (int x = -QrMargin; x < code.Size + QrMargin; ++x) {
            // Below the last row of an odd number there is nothing.
            const bool isLowerLight = y + 1 < code.Size + QrMargin && isLight(x, y + 1);
            text += isLight(x, y) ? (isLowerLight ? "█" : "▀") : (isLowerLight ? "▄" : " ");
        }
        text += isColoured ? "\033[0m\n" : "\n";
    }
    return text;
}

}  // namespace pixmora
