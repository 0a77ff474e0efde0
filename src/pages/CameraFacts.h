// What the camera noted of a photograph, for {CAMERA}.
#pragma once

#include <string>

#include "store/clsExif.h"

namespace pixmora {

/// Exposure, aperture, focal length, sensitivity, flash and lens, a line each, in the words of exif.ini; nothing of
/// what the file doesn't tell. With the setting `ShowPlaces` 1 a link to a map where the file has a place.
/// @param exif loaded with a picture
std::string CameraFacts(const clsExif &exif);

}  // namespace pixmora
