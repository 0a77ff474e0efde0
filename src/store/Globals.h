// The process-wide values of the stores.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/database/Database.h"
#include "store/clsAlbum.h"

namespace pixmora {

/// The one open database, from program start until ShutDownProgram.
inline std::unique_ptr<Database> gDatabase;

/// The albums of the running website, made anew at each start; an album's number is its 1-based position.
inline std::vector<AlbumPointer> gAlbums;

/// Whether the site shows the kinds of files of today's cameras and phones too; loaded at website start.
inline bool gMoreTypes = false;

/// Patterns of directory names that are protected by their name alone; loaded at website start.
inline std::vector<std::string> gRestrictedWords;

/// Where the rows of the statistics' counters were found last, by table and criteria. A row is asked each time whether
/// it still is the one.
inline std::unordered_map<std::string, std::int64_t> gCounterRows;

}  // namespace pixmora
