// The facts of one file, as the details page tells them.
#pragma once

#include <string>
#include <string_view>

#include "platform/movies/MovieFacts.h"
#include "platform/runtime/Clock.h"
#include "store/clsExif.h"

namespace pixmora {

/// Size in pixels and bytes, dates, the camera. @param exif loaded with a file that is there
std::string PictureDetails(const clsExif &exif);

/// Size in pixels and bytes, date, frames, length and frames a second; of a movie that can't be read the heading only.
/// @param path full @param movie the facts of that file
std::string MovieDetails(const std::string &path, const MovieFacts &movie);

/// The content type of a movie that browsers can play in the page; nothing for another. @param name of its file
std::string_view PlayableType(std::string_view name, const MovieFacts &movie);

/// "3/1/2004 4:05:06 PM"; nothing for a year before 1980, which no file was made in.
std::string FileTimeText(DateTime time);

/// The same from the form in which cameras note it, "2004:03:01 16:05:06"; "N/A" for any other text.
std::string CameraTimeText(std::string_view text);

}  // namespace pixmora
