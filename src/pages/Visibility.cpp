// What the listings show of protected places.
#include "pages/Visibility.h"

#include <string>

#include "store/Protection.h"

namespace pixmora {

bool IsListed(std::string_view user, std::int32_t album, std::string_view name, std::string_view directory,
              std::string_view word) {
    if (!IsProtectedDir(album, name, directory)) return true;
    std::string reason;
    return CanViewDir(user, album, word, reason);
}

}  // namespace pixmora
