// Popularity: how often each file and each directory was looked at.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pixmora {

/// Adds one view, which is dropped when it can't be kept (see RecordKeeping.h). @param filePath below the album's root,
/// with a leading "\", plain but for apostrophes, which are stored as "%39"
/// @throws RunTimeError SyntaxError for an album name with an apostrophe
void CountFileVisit(std::string_view albumName, std::string_view filePath);
/// @param dirPath as above; an empty one stands for "\", the root
void CountDirVisit(std::string_view albumName, std::string_view dirPath);

/// The root folder of the running website's album of that name; nothing when there is none.
using AlbumDirectoryLookup = std::function<std::optional<std::string>(const std::string &albumName)>;

/// Tidies up at website start. Of the 30 files viewed most, drops those that are gone from the disk, in all albums that
/// have the path.
void TidyPopularFiles(const AlbumDirectoryLookup &directoryOf);
/// The same for the directories viewed most. @param limit how many are looked at
void TidyPopularDirs(const AlbumDirectoryLookup &directoryOf, int limit);

}  // namespace pixmora
