// An album while the website runs.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace pixmora {

/// One shared folder: its row of the Albums table and what the scan at website start found. A plain record.
struct clsAlbum {
    std::int16_t ID = 0;    ///< 1-based position in gAlbums; the number in addresses and in the name of the media table
    std::string Name;       ///< key of all tables
    std::string Directory;  ///< full path of the root folder, "\" between parts, none at the end
    std::string Description;
    std::string DateCreated;          ///< long date without its week day: "March 1, 2004"
    std::string DateUpdated;          ///< the newest file's day, as date text
    std::int16_t SubDirectories = 0;  ///< flag: takes in subfolders
    std::int16_t ShowMovies = 0;      ///< flag
    std::int16_t ShowPictures = 0;    ///< flag
    std::int16_t FeaturedImage = 0;   ///< 0 none, 1 a random file, 2 the picture in FeaturedImagePath
    std::string FeaturedImagePath;    ///< full path, or empty
    std::int32_t PictureCount = 0;
    double PictureSize = 0;  ///< bytes
    std::int32_t MovieCount = 0;
    double MovieSize = 0;  ///< bytes
};

/// Shared, because a page that waits may outlive the catalogue it was started on.
using AlbumPointer = std::shared_ptr<clsAlbum>;

}  // namespace pixmora
