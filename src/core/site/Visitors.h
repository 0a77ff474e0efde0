// Who is visiting, and what counts as counted.
#pragma once

#include <cstdint>
#include <string>

#include "platform/runtime/Clock.h"

namespace pixmora {

/// One remote address that has asked for a named page in the last ten minutes, however many browsers stand behind it.
struct clsVisitor {
    Tick LastTime = 0;             ///< of the last request of any kind
    std::int64_t ConnectTime = 0;  ///< uptime at the first request, in ms: some stay for months
    std::string IP;                ///< dotted address; the visitor's identity
    std::string CurrentPage;       ///< page name of the last request that had one; picture requests leave it
};

/// One counted download or visit: while it lives, the same request from the same address isn't counted again.
struct clsDownloadCookie {
    std::string IP;
    Tick CookieTime = 0;  ///< when it was made
    std::int32_t AlbumNumber = 0;
    std::string FilePath;  ///< full path of a file, or a directory below the album's root
};

/// Adds a cookie for this visitor, album and path unless one is alive.
/// @return whether it was added, so that this one counts
bool AddDownloadCookie(const std::string &ip, std::int32_t album, const std::string &path);

}  // namespace pixmora
