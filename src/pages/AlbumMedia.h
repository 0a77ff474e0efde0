// One directory of an album as the media page shows it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pages/AlbumAddress.h"
#include "pages/MediaViews.h"
#include "store/clsAlbum.h"

namespace pixmora {

struct AlbumMedia {
    AlbumPointer Album;
    std::string ViewWord;  ///< as it came
    View Shown = View::Thumbs;
    std::int32_t Page = 1;
    AlbumDirectory Directory;
    std::string_view CountWord = "count";  ///< "nocount" in a protected directory
    std::vector<std::string> Files;        ///< plain names in the disk's order
    SlideShow Show;                        ///< in a slide show only

    /// Whether there are files to show here. An album without subdirectories shows none below its root.
    bool HasFiles() const { return !Files.empty() && (Album->SubDirectories != 0 || Directory.RelativePath.empty()); }
    /// -1 without files.
    std::int32_t LastIndex() const { return static_cast<std::int32_t>(Files.size()) - 1; }
};

/// "/a/b/name.jpg", in link form.
std::string MediaPath(const AlbumMedia &media, std::string_view file);
/// The opening element of the link to a file's details.
std::string DetailsLink(const AlbumMedia &media, std::string_view file);

/// Fills all parts but the view row with one file and the controls of the show.
void FillSlideShow(const AlbumMedia &media, PicParts &parts);

}  // namespace pixmora
