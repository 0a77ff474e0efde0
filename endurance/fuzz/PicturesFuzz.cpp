// The picture engine on any bytes: what it takes for a picture it scales to a whole JPEG, or says that it can't.
#include "Fuzz.h"
#include "platform/files/Files.h"
#include "platform/pictures/JpegHead.h"
#include "platform/pictures/PictureEngine.h"
#include "support/TempFolder.h"

namespace pixmora {
namespace {

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

void Check(const std::string &source, const std::string &thumb) {
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

}  // namespace

void CheckInput(std::string_view text) {
    static const TempFolder folder;
    static const MemoryFile file;
    file.Fill(text);
    ReadJpegHead(*BinaryFile::OpenForRead(file.Path()));
    static const std::string named = [] {
        std::filesystem::create_symlink(file.Path(), folder.Path("picture.webp"));
        return folder.Path("picture.webp");
    }();
    Check(named, folder.Path("thumb.jpg"));
}

}  // namespace pixmora
