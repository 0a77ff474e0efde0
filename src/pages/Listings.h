// Walks over an album's directories for the pages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

/// The names of the files that the album shows in one directory, plain, in the disk's order.
/// @param directory full path @throws RunTimeError SubscriptOutOfRange for a wrong album
std::vector<std::string> ListMediaFiles(std::int32_t album, std::string_view directory);

struct SubDirectory {
    std::string Name;    ///< plain
    bool IsNew = false;  ///< last written less than 14 calendar days ago
};

/// The subdirectories of one directory of the album, sorted by gSortMethod and gSortOrder; none when the album doesn't
/// take in subdirectories. @param directory below the album's root, "\" or "\a\", with both separators
std::vector<SubDirectory> ListSubDirs(std::int32_t album, std::string_view directory);

struct DirContents {
    int SubDirs = 0;
    int Pictures = 0;
    int Movies = 0;
};

/// What lies right in the directory; zeros for one that can't be read. @param path full
DirContents CountDirContents(std::string_view path);

/// A file's full path from an address: the album's root and the link path, decoded, in its one spelling.
/// @param linkPath with a leading "/". A path that no visitor may use (a ".." part, a NUL, no "/" in front) gives an
/// empty text, at which no file exists. @throws RunTimeError as DecodeLinkPart
std::string VisitorFilePath(std::string_view albumDirectory, std::string_view linkPath);

/// The name for {DIR_TITLE}: of the album with an empty name, of the directory otherwise.
std::string DirDisplayTitle(std::int32_t album, std::string_view name);

}  // namespace pixmora
