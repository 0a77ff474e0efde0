// Walks over an album's directories for the pages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/clsAlbum.h"

namespace pixmora {

/// The names of the files that the album shows in one directory, plain, in the disk's order.
/// @param directory full path
std::vector<std::string> ListMediaFiles(const clsAlbum &album, std::string_view directory);

struct SubDirectory {
    std::string Name;    ///< plain
    bool IsNew = false;  ///< last written less than 14 calendar days ago
};

/// The subdirectories of one directory of the album, sorted by gSortMethod and gSortOrder; none when the album doesn't
/// take in subdirectories. @param directory below the album's root, "\" or "\a\", with both separators
std::vector<SubDirectory> ListSubDirs(const clsAlbum &album, std::string_view directory);

struct DirContents {
    int SubDirs = 0;
    int Pictures = 0;
    int Movies = 0;
};

/// What lies right in the directory; zeros for one that can't be read. @param path full
DirContents CountDirContents(std::string_view path);

/// The name for {DIR_TITLE}: of the album with an empty name, of the directory otherwise.
std::string DirDisplayTitle(const clsAlbum &album, std::string_view name);

}  // namespace pixmora
