// HEIC and AVIF pictures, through a module that is loaded at the first of them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/pictures/PictureSource.h"

namespace pixmora {

/// By the ending. A file that is named otherwise is never given to the module: a site without such pictures does
/// without it.
bool IsHeifName(std::string_view path);

/// @return null for what the module can't read or where it is not installed, and beyond the limit of size
/// @throws RunTimeError when the file can't be opened
std::unique_ptr<PictureSource> OpenHeif(std::string_view path);

}  // namespace pixmora
