// What counts as counted.
#include "core/site/Visitors.h"

#include <algorithm>

#include "core/site/Globals.h"

namespace pixmora {

bool AddDownloadCookie(const std::string &ip, std::int32_t album, const std::string &path) {
    const bool isCounted = std::ranges::any_of(gDownloadCookies, [&](const clsDownloadCookie &cookie) {
        return cookie.IP == ip && cookie.AlbumNumber == album && cookie.FilePath == path;
    });
    if (!isCounted) gDownloadCookies.push_back({ip, GetTickCount(), album, path});
    return !isCounted;
}

}  // namespace pixmora
