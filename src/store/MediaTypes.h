// Which files are pictures and which are movies, by their names.
#pragma once

#include <string_view>

namespace pixmora {

/// The wildcards of the files that an album shows.
inline constexpr std::string_view PicturePatterns = "*.jpg;*.gif;*.bmp";
inline constexpr std::string_view MoviePatterns = "*.avi;*.mpg;*.mpeg;*.mov";

/// Whether a visitor takes the file for a picture: its last three characters are jpg, gif or bmp in any case. Else it's
/// a movie.
bool IsPictureName(std::string_view name);

}  // namespace pixmora
