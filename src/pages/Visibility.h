// What the listings show of protected places.
#pragma once

#include <string>
#include <string_view>

#include "store/Protection.h"

namespace pixmora {

/// Whether a listing shows a directory to this user. Deliberate: the right is asked for a word in the place
/// of the directory, which no right was ever given for, so of protected entries listings show all to administrators and
/// none to anybody else. @param name plain @param directory plain, with the name @param word the view, or empty
bool IsListed(std::string_view user, const clsAlbum &album, std::string_view name, std::string_view directory,
              std::string_view word);

/// Which albums a page lists for this user, by the same rule.
class AlbumListing {
public:
    AlbumListing(std::string_view user, std::string_view word) : user_(user), word_(word) {}
    bool IsListed(const clsAlbum &album) const;

private:
    std::string user_;
    std::string word_;
    ProtectedAlbums protected_;
};

}  // namespace pixmora
