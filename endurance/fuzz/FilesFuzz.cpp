// The targets that take files of strangers: pictures, what cameras note in them, and movies.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "Fuzz.h"
#include "platform/files/Files.h"
#include "platform/movies/MovieProbe.h"
#include "platform/pictures/HeifModule.h"
#include "platform/pictures/HevcHead.h"
#include "platform/pictures/JpegHead.h"
#include "platform/pictures/PictureEngine.h"
#include "platform/runtime/Text.h"
#include "store/ExifPlace.h"
#include "store/clsExif.h"
#include "support/ProgramFolder.h"

namespace pixmora {
namespace {

constexpr std::int32_t tagsOfInterest[] = {0, 256, 270, 272, 33434, 34665, 36864, 37500, 40962, 65535};

void CheckExifOf(std::string_view bytes, const std::string &path) {
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

/// The Exif reader on any bytes, with words of its own for some tags.
void CheckExif(std::string_view text) {
    static const ProgramFolder folder;
    static const std::string words =
        folder.Write("exif.ini", "[ExposureTime]\nFormat=1/@X s\n[Orientation]\n1=upright\n[Model]\nFormat=@X@X\n");
    static const MemoryFile file;
    file.Fill(text);
    CheckExifOf(text, file.Path());
    const auto place = ReadPlace(file.Path());
    REQUIRE(!place || (std::abs(place->Latitude) <= 90 && std::abs(place->Longitude) <= 180));
}

/// The module of HEIC and AVIF pictures on any bytes.
void CheckHeif(std::string_view text) {
    const std::vector<unsigned char> file(text.begin(), text.end());
    int width = 0;
    int height = 0;
    PixmoraHeifReader.Exif(file);
    if (!PixmoraHeifReader.Size(file, width, height)) return;
    constexpr std::int64_t mostPixels = 1'000'000;  // many small pictures find more than few large ones
    if (width <= 0 || height <= 0 || std::max(std::int64_t{width} * height, MostCodedPixels(file)) > mostPixels) return;
    HeifPixels pixels;
    if (!PixmoraHeifReader.Decode(file, 50, pixels)) return;
    REQUIRE(pixels.Width > 0 && pixels.Height > 0 && pixels.Stride >= pixels.Width * (pixels.HasAlpha ? 4 : 3));
    const std::size_t last = static_cast<std::size_t>(pixels.Stride) * static_cast<std::size_t>(pixels.Height - 1) +
                             static_cast<std::size_t>(pixels.Width) * (pixels.HasAlpha ? 4 : 3) - 1;
    [[maybe_unused]] volatile const unsigned char touched = pixels.Samples[last];
}

class GivenBytes : public MovieBytes {
public:
    explicit GivenBytes(std::string_view bytes) : bytes_(bytes) {}

    std::int64_t Length() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::size_t ReadAt(std::int64_t offset, void *bytes, std::size_t count) const override {
        REQUIRE(offset >= 0);
        if (offset >= Length()) return 0;
        const std::string_view part = bytes_.substr(static_cast<std::size_t>(offset), count);
        std::memcpy(bytes, part.data(), part.size());
        return part.size();
    }

private:
    std::string_view bytes_;
};

/// Movie facts of any bytes.
void CheckMovies(std::string_view text) {
    const MovieFacts facts = ProbeMovie(GivenBytes(text));
    REQUIRE(facts.Frames >= 0 && facts.LengthMs >= 0);
    REQUIRE(!facts.HasPicture || (facts.Width > 0 && facts.Height > 0));
}

constexpr std::int32_t thumbWidth = 50;
constexpr std::int32_t asJpeg = 3 | 60 << 12;

void CheckThumb(const std::string &path, std::int32_t height) {
    const std::string jpeg = ReadBinaryFile(path);
    REQUIRE(jpeg.starts_with("\xFF\xD8\xFF") && jpeg.ends_with("\xFF\xD9"));
    PictureEngine engine;
    std::int32_t success = 0;
    engine.Load(path, 0, success);
    REQUIRE(success != 0 && engine.Width() == thumbWidth && engine.Height() == height);
}

void CheckPicture(const std::string &source, const std::string &thumb) {
    PictureEngine engine;
    std::int32_t success = 0;
    engine.Load(source, 0, success);
    REQUIRE((success != 0) == (engine.Width() > 0) && (success != 0) == (engine.Height() > 0));
    if (success == 0) return;
    engine.Resize(thumbWidth, 0, 0, success);
    REQUIRE(success != 0 && engine.Width() == thumbWidth && engine.Height() > 0);
    const auto saved = ResultOf([&] {
        engine.Save(thumb, asJpeg, success);
        return success;
    });
    REQUIRE(saved.has_value() == (success != 0));
    if (saved) CheckThumb(thumb, engine.Height());
}

/// The picture engine on any bytes: what it takes for a picture it scales to a whole JPEG, or says that it can't.
void CheckPictures(std::string_view text) {
    static const TempFolder folder;
    static const MemoryFile file;
    file.Fill(text);
    ReadJpegHead(*BinaryFile::OpenForRead(file.Path()));
    static const std::string named = [] {
        std::filesystem::create_symlink(file.Path(), folder.Path("picture.webp"));
        return folder.Path("picture.webp");
    }();
    CheckPicture(named, folder.Path("thumb.jpg"));
}

}  // namespace

const Targets targets = {
    {"fuzz_Exif", CheckExif},
    {"fuzz_Heif", CheckHeif},
    {"fuzz_Movies", CheckMovies},
    {"fuzz_Pictures", CheckPictures},
};

}  // namespace pixmora

/// The AV1 library forgets a few bytes of its own at a broken picture.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libdav1d\n";
}
