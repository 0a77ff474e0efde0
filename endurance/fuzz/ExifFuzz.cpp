// The Exif reader on any bytes, with words of its own for some tags.
#include <algorithm>
#include <cmath>

#include "Fuzz.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Text.h"
#include "store/ExifPlace.h"
#include "store/clsExif.h"
#include "support/TempFolder.h"

namespace pixmora {
namespace {

constexpr std::int32_t tagsOfInterest[] = {0, 256, 270, 272, 33434, 34665, 36864, 37500, 40962, 65535};

/// The program's folder with the file of words.
class Folder {
public:
    Folder() {
        folder_.Write("exif.ini", "[ExposureTime]\nFormat=1/@X s\n[Orientation]\n1=upright\n[Model]\nFormat=@X@X\n");
        App::SetPath(ProgramPath(folder_.Path()));
    }

private:
    TempFolder folder_;
};

void Check(std::string_view bytes, const std::string &path) {
    clsExif exif;
    exif.ImageFile(path);
    constexpr std::size_t looksAt = 4096;
    const bool hasMark = Contains(bytes.substr(0, looksAt), std::string_view("Exif\0", 5));
    const auto wanted = bytes.empty() || hasMark ? clsExif::ReadStatus::Success : clsExif::ReadStatus::NoExif;
    REQUIRE(exif.Status() == wanted);

    const std::string list = exif.ListInfo();
    REQUIRE(HoldsNone(list, std::string_view("\0", 1)));
    // Two directories of at most as many entries as fit, each value no longer than the bytes looked at.
    REQUIRE(list.size() <= 2 * (looksAt / 12 + 1) * (2 * looksAt + 64));
    for (const std::int32_t tag : tagsOfInterest) {
        std::string text;
        const std::uint32_t raw = exif.MetaInfo(tag, text);
        const std::string data = exif.GetTagData(tag);
        REQUIRE(wanted != clsExif::ReadStatus::Success || data == text || (data == "N/A" && raw == 0));
    }
}

}  // namespace

void CheckInput(std::string_view text) {
    static const Folder folder;
    static const MemoryFile file;
    file.Fill(text);
    Check(text, file.Path());
    const auto place = ReadPlace(file.Path());
    REQUIRE(!place || (std::abs(place->Latitude) <= 90 && std::abs(place->Longitude) <= 180));
}

}  // namespace pixmora
