// What makes QR codes, a module of its own: a program that is asked for none never loads it.
#pragma once

#include "platform/pictures/QrCode.h"

namespace pixmora {

/// The module's one symbol.
extern "C" __attribute__((visibility("default"))) void PixmoraMakeQrCode(std::string_view text, QrCode &code);

}  // namespace pixmora
