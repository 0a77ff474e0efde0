#include "platform/pictures/QrCode.h"

#include "platform/pictures/QrModule.h"
#include "platform/runtime/Modules.h"

namespace pixmora {

QrCode MakeQrCode(std::string_view text) {
    const auto make = reinterpret_cast<decltype(&PixmoraMakeQrCode)>(LoadModule("qrcode", "PixmoraMakeQrCode"));
    QrCode code;
    if (make != nullptr) make(text, code);
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
