// Facts of files by a directory's descriptor. For the sources of Files.h only.
#pragma once

#include <string>

#include "platform/files/Files.h"

namespace pixmora {

/// @param directory an open directory's descriptor, or AT_FDCWD @param name in the system's form, without NUL
/// @return none when there is no such file
std::optional<FileFacts> FactsAt(int directory, const std::string &name);

}  // namespace pixmora
