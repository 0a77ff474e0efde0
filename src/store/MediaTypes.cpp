// The endings of picture and movie names.
#include "store/MediaTypes.h"

#include "platform/runtime/Text.h"

namespace pixmora {

bool IsPictureName(std::string_view name) {
    const std::string ending = LCase(LastCharacters(name, 3));
    return ending == "jpg" || ending == "gif" || ending == "bmp";
}

}  // namespace pixmora
