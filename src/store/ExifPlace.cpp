// The GPS directory of an Exif block.
#include "store/ExifPlace.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/runtime/RunTimeError.h"
#include "store/ExifBytes.h"
#include "store/ExifStart.h"

namespace pixmora {

namespace {

enum GpsTag : std::int64_t { LatitudeRef = 1, Latitude = 2, LongitudeRef = 3, Longitude = 4 };
constexpr std::int64_t gpsDirectory = 34853;

/// A camera's maker's notes may stand before its place, and fill what a JPEG segment holds.
constexpr std::size_t bytesRead = 65536 + 4096;

/// The entry of a tag in the directory at an offset; 0 without it. Offsets count from the block's head.
std::int64_t FindEntry(const ExifBytes &block, std::int64_t directory, std::int64_t tag) {
    const auto count = static_cast<std::int64_t>(block.Unsigned(directory, 2));
    for (std::int64_t i = 0; i < count && directory + 2 + 12 * i < block.Size(); ++i) {
        const std::int64_t entry = directory + 2 + 12 * i;
        if (static_cast<std::int64_t>(block.Unsigned(entry, 2)) == tag) return entry;
    }
    return 0;
}

std::int64_t OffsetIn(const ExifBytes &block, std::int64_t entry) {
    return static_cast<std::int64_t>(block.Unsigned(entry + 8, 4));
}

/// Degrees, minutes and seconds, three fractions.
double Degrees(const ExifBytes &block, std::int64_t at) {
    double degrees = 0;
    for (int part = 2; part >= 0; --part) {
        const double value = block.Unsigned(at + 8 * part, 4) / block.Unsigned(at + 8 * part + 4, 4);
        degrees = degrees / 60 + value;
    }
    return degrees;
}

/// A number that is none where the directory has no such coordinate.
double Coordinate(const ExifBytes &block, std::int64_t directory, GpsTag reference, GpsTag tag, char negative) {
    const std::int64_t side = FindEntry(block, directory, reference);
    const std::int64_t entry = FindEntry(block, directory, tag);
    if (side == 0 || entry == 0 || block.Unsigned(entry + 4, 4) != 3) return NAN;
    const double degrees = Degrees(block, OffsetIn(block, entry));
    return block.Part(side + 8, 1) == std::string_view(&negative, 1) ? -degrees : degrees;
}

}  // namespace

std::optional<Place> ReadPlace(std::string_view path) try {
    const std::string bytes = ReadExifStart(path, bytesRead);
    const std::size_t begin = ExifBlock(bytes);
    if (begin == std::string::npos) return std::nullopt;
    const std::string_view text = std::string_view(bytes).substr(begin);
    const ExifBytes block(text, text.starts_with("II"));
    const std::int64_t link = FindEntry(block, static_cast<std::int64_t>(block.Unsigned(4, 4)), gpsDirectory);
    if (link == 0) return std::nullopt;
    const std::int64_t directory = OffsetIn(block, link);
    const Place place{Coordinate(block, directory, LatitudeRef, Latitude, 'S'),
                      Coordinate(block, directory, LongitudeRef, Longitude, 'W')};
    const bool isSomewhere = std::abs(place.Latitude) <= 90 && std::abs(place.Longitude) <= 180;
    return isSomewhere ? std::optional(place) : std::nullopt;
} catch (const RunTimeError &) {
    return std::nullopt;
}

}  // namespace pixmora
