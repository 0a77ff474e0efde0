// What the listings show of protected places.
#include "pages/Visibility.h"

namespace pixmora {

bool IsListed(std::string_view user, std::int32_t album, std::string_view name, std::string_view directory,
              std::string_view word) {
    if (!IsProtectedDir(album, name, directory)) return true;
    std::string reason;
    return CanViewDir(user, album, word, reason);
}

bool AlbumListing::IsListed(const clsAlbum &album) const {
    if (!protected_.Contains(album)) return true;
    std::string reason;
    return CanViewDir(user_, album.ID, word_, reason);
}

}  // namespace pixmora
