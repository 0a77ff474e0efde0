// The most viewed files and directories as the most popular page shows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pages/MediaViews.h"

namespace pixmora {

/// A row of the popular tables. One of a list that is longer than its table is empty.
struct PopularEntry {
    std::string AlbumName;
    std::string Path;                   ///< below the album's root, plain: "\a\b.jpg"
    std::int64_t Count = 0;             ///< views
    std::optional<std::int32_t> Album;  ///< the album's number; none for a name that no album has

    bool IsEmpty() const { return Path.empty(); }
    /// The album's number as it stands in links.
    std::string AlbumText() const { return Album ? std::to_string(*Album) : std::string(); }
};

using PopularEntries = std::vector<PopularEntry>;

/// "1 View", "2 Views"
std::string CountText(std::int64_t count, std::string_view word);
/// The opening element of the link to a file's details.
std::string PopularDetailsLink(const PopularEntry &file);
/// A directory's address: "1&thumbs&1&a&b&". @param path of the directory, with or without a separator at its end
std::string DirectoryArguments(const PopularEntry &entry, std::string_view path);

/// Fills all parts but the view row with one file and the controls of the show.
void FillPopularSlideShow(const PopularEntries &files, const SlideShow &show, PicParts &parts);

}  // namespace pixmora
