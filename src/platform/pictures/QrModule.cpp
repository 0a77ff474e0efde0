// The module of QR codes, through libqrencode.
#include "platform/pictures/QrModule.h"

#include <qrencode.h>

#include <memory>

namespace pixmora {

extern "C" void PixmoraMakeQrCode(std::string_view text, QrCode &code) {
    const std::unique_ptr<QRcode, void (*)(QRcode *)> made(
        QRcode_encodeString8bit(std::string(text).c_str(), 0, QR_ECLEVEL_M), QRcode_free);
    if (!made) return;
    code.Size = made->width;
    const auto modules = static_cast<std::size_t>(made->width) * static_cast<std::size_t>(made->width);
    code.Dark.reserve(modules);
    for (std::size_t i = 0; i < modules; ++i) code.Dark.push_back((made->data[i] & 1) != 0);
}

}  // namespace pixmora
