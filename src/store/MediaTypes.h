// Which files are pictures and which are movies, by their names.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// Reads the setting `MoreTypes` into gMoreTypes. 1 takes in the kinds of today's cameras and phones; anything else,
/// and its absence, the first seven alone.
void LoadMediaTypes();

/// The wildcards of the files that an album shows.
std::string_view PicturePatterns();
std::string_view MoviePatterns();

/// Whether a visitor takes the file for a picture: its last three characters are jpg, gif or bmp in any case, or it
/// matches the patterns. Else it's a movie.
bool IsPictureName(std::string_view name);

/// As browsers know it. Deliberate: "image/jpeg" also for a GIF and a BMP, as ever.
std::string_view PictureContentType(std::string_view name);
/// What a browser plays itself by its own type; "application/octet-stream" for the rest.
std::string_view MovieContentType(std::string_view name);

/// For people: "jpg, gif, bmp".
std::string EndingsText(std::string_view patterns);

}  // namespace pixmora
