// The facts of one file, as the details page tells them.
#include "pages/FileDetails.h"

#include <optional>
#include <vector>

#include "core/site/Globals.h"
#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/ExifTags.h"
#include "store/Globals.h"
#include "store/MediaTypes.h"

namespace pixmora {

namespace {

constexpr int firstYear = 1980;

/// "4:05:06 PM"
std::string TimeText(int hour, int minute, int second) {
    // Deliberate: noon's hour is "AM" too.
    const bool isAfternoon = hour >= 13;
    const int shown = hour == 0 ? 12 : (isAfternoon ? hour - 12 : hour);
    return Concat(shown, ":", FormatPadded(minute, 2), ":", FormatPadded(second, 2), isAfternoon ? " PM" : " AM");
}

void AppendFact(std::string &details, std::string_view label, std::string_view value, std::string_view end) {
    Append(details, "&nbsp;&nbsp;", label, value, end);
}

constexpr std::string_view lineEnd = "<br>\r\n";
constexpr std::string_view paragraphEnd = "<br><br>\r\n";

std::string DimensionsFromPicture(const std::string &path) {
    std::int32_t success = 0;
    gPictureEngine->Load(path, 0, success);
    if (success == 0) return "N/A";
    return Concat(gPictureEngine->Width(), " x ", gPictureEngine->Height());
}

/// As the camera noted them, or of the picture itself: many programs drop that note and keep the rest.
std::string Dimensions(const clsExif &exif, const std::string &path) {
    constexpr std::string_view missing = "N/A";
    const std::string width = exif.GetTagData(ExifTag("ExifImageWidth"));
    const std::string height = exif.GetTagData(ExifTag("ExifImageHeight"));
    return width == missing || height == missing ? DimensionsFromPicture(path) : Concat(width, " x ", height);
}

}  // namespace

std::string FileTimeText(DateTime time) {
    if (YearOf(time) < firstYear) return {};
    return Concat(MonthOf(time), "/", DayOf(time), "/", YearOf(time), " ",
                  TimeText(HourOf(time), MinuteOf(time), SecondOf(time)));
}

std::string CameraTimeText(std::string_view text) {
    const std::vector<std::string> halves = Split(text, " ");
    if (halves.size() != 2) return "N/A";
    const std::vector<std::string> date = Split(halves[0], ":");
    const std::vector<std::string> time = Split(halves[1], ":");
    if (date.size() != 3 || time.size() != 3) return "N/A";
    int numbers[3] = {};
    for (std::size_t i = 0; i < 3; ++i) {
        const double number = Val(time[i]);
        if (number < 0 || number > 59) return "N/A";
        numbers[i] = static_cast<int>(number);
    }
    return Concat(date[1], "/", date[2], "/", date[0], " ", TimeText(numbers[0], numbers[1], numbers[2]));
}

std::string PictureDetails(const clsExif &exif) {
    const std::string &path = exif.ImageFile();
    const bool hasExif = exif.Status() == clsExif::ReadStatus::Success;
    const FileFacts facts = GetFileFacts(path);
    std::string details = Concat("&nbsp;&nbsp;<b>Picture File</b>", paragraphEnd);
    AppendFact(details, "Dimensions: ", Dimensions(exif, path), lineEnd);
    AppendFact(details, "Size: ", FormatFileSize(path), paragraphEnd);
    AppendFact(details, "Date Created: ", FileTimeText(facts.CreationTime), lineEnd);
    AppendFact(details, "Date Modified: ", FileTimeText(facts.LastWriteTime), lineEnd);
    if (hasExif) AppendFact(details, "Camera Model: ", exif.GetTagData(ExifTag("Model")), lineEnd);
    AppendFact(details, "Date Taken: ", hasExif ? CameraTimeText(exif.GetTagData(ExifTag("DateTimeOriginal"))) : "N/A",
               "<br>");
    return details;
}

std::string MovieDetails(const std::string &path, const MovieFacts &movie) {
    std::string details = "&nbsp;&nbsp;<b>Movie File</b><br><br>";
    if (!movie.IsReadable) return details;
    const double seconds = static_cast<double>(movie.LengthMs) / 1000;
    const double rate = seconds > 0 ? static_cast<double>(movie.Frames) / seconds : 0;
    AppendFact(details, "Dimensions: ", movie.HasPicture ? Concat(movie.Width, " x ", movie.Height) : "N/A", lineEnd);
    AppendFact(details, "Size: ", FormatFileSize(path), paragraphEnd);
    AppendFact(details, "Date Created: ", FileTimeText(GetFileFacts(path).CreationTime), lineEnd);
    AppendFact(details, "Total Frames: ", std::to_string(movie.Frames), lineEnd);
    AppendFact(details, "Playing Time: ", FormatElapsed(seconds, false, true), lineEnd);
    AppendFact(details, "Frames Per Second: ", FormatFixed(rate, 1), "<br>");
    return details;
}

std::string_view PlayableType(std::string_view name, const MovieFacts &movie) {
    if (!gMoreTypes) return {};
    const bool isPlayable = PathMatchSpec(name, "*.mp4;*.m4v;*.webm") || (PathMatchSpec(name, "*.mov") && movie.IsH264);
    return isPlayable ? MovieContentType(name) : "";
}

}  // namespace pixmora
