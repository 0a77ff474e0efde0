// Where a photograph was taken.
#pragma once

#include <optional>
#include <string_view>

namespace pixmora {

/// Degrees; north and east are positive.
struct Place {
    double Latitude = 0;   ///< -90 to 90
    double Longitude = 0;  ///< -180 to 180
};

/// As a camera has noted it (Exif 2.3, GPS attributes); none where it has not, or what it says is nowhere. Never
/// throws. @param path of a picture
std::optional<Place> ReadPlace(std::string_view path);

}  // namespace pixmora
