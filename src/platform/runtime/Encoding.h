// The encodings of texts that come from elsewhere.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// Whether the bytes are UTF-8 to the letter (RFC 3629).
bool IsUtf8(std::string_view bytes);

/// A text file's bytes in UTF-8: turned into it and without the mark where they begin with a byte order mark, as they
/// are otherwise.
std::string WithoutByteOrderMark(std::string bytes);

}  // namespace pixmora
