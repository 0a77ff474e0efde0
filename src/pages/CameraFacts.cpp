// The camera's lines on the details page.
#include "pages/CameraFacts.h"

#include <optional>
#include <string_view>
#include <utility>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/ExifPlace.h"
#include "store/ExifTags.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr struct {
    std::string_view Label;
    std::int32_t Tag;
} facts[] = {
    {"Aperture: ", ExifTag("FNumber")},
    {"Focal Length: ", ExifTag("FocalLength")},
    {"Sensitivity: ", ExifTag("ISOSpeedRatings")},
    {"Flash: ", ExifTag("Flash")},
    {"Lens: ", LensModelTag},
};

/// Strangers' files say what they like.
std::string PlainText(std::string text) {
    return Replace(Replace(Replace(std::move(text), "&", "&amp;"), "<", "&lt;"), ">", "&gt;");
}

/// "1/250 s" as the words have it. They only know parts of a second: a long one is "4 s" or "0.5 s".
std::string ExposureText(const clsExif &exif) {
    constexpr double longest = 0.3;
    if (exif.ExposureSeconds() <= longest) return exif.Fact(ExifTag("ExposureTime"));
    return Concat(Replace(FormatFixed(exif.ExposureSeconds(), 1), ".0", ""), " s");
}

void AppendLine(std::string &lines, std::string_view label, const std::string &text) {
    if (!text.empty()) Append(lines, "&nbsp;&nbsp;", label, PlainText(text), "<br>\r\n");
}

std::string MapLink(const Place &place) {
    const std::string latitude = FormatFixed(place.Latitude, 5);
    const std::string longitude = FormatFixed(place.Longitude, 5);
    return Concat(R"(&nbsp;&nbsp;<a href="https://www.openstreetmap.org/?mlat=)", latitude, "&amp;mlon=", longitude,
                  "#map=15/", latitude, "/", longitude,
                  R"(" target="_blank" rel="noreferrer">Show the place on a map</a><br>)");
}

}  // namespace

std::string CameraFacts(const clsExif &exif) {
    std::string lines;
    AppendLine(lines, "Exposure: ", ExposureText(exif));
    for (const auto &[label, tag] : facts) AppendLine(lines, label, exif.Fact(tag));
    if (Val(GetSetting("Setup", "ShowPlaces")) != 1) return lines;
    if (const std::optional<Place> place = ReadPlace(exif.ImageFile())) lines += MapLink(*place);
    return lines;
}

}  // namespace pixmora
