// What the listings show of protected places.
#include "pages/Visibility.h"

namespace pixmora {

bool IsListed(std::string_view user, const clsAlbum &album, std::string_view name, std::string_view directory,
              std::string_view word) {
    return !IsProtectedDir(album, name, directory) || CanViewDir(user, album, word).IsGiven;
}

bool AlbumListing::IsListed(const clsAlbum &album) const {
    return !protected_.Contains(album) || CanViewDir(user_, album, word_).IsGiven;
}

}  // namespace pixmora
