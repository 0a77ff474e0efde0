// The module of HEIC and AVIF pictures on any bytes.
#include "Fuzz.h"
#include "platform/pictures/HeifModule.h"

namespace pixmora {
namespace {

void Check(const std::vector<unsigned char> &file) {
    int width = 0;
    int height = 0;
    PixmoraHeifReader.Exif(file);
    if (!PixmoraHeifReader.Size(file, width, height)) return;
    constexpr std::int64_t mostPixels = 1'000'000;  // many small pictures find more than few large ones
    if (width <= 0 || height <= 0 || std::int64_t{width} * height > mostPixels) return;
    HeifPixels pixels;
    if (!PixmoraHeifReader.Decode(file, 50, pixels)) return;
    REQUIRE(pixels.Width > 0 && pixels.Height > 0 && pixels.Stride >= pixels.Width * (pixels.HasAlpha ? 4 : 3));
    const std::size_t last = static_cast<std::size_t>(pixels.Stride) * static_cast<std::size_t>(pixels.Height - 1) +
                             static_cast<std::size_t>(pixels.Width) * (pixels.HasAlpha ? 4 : 3) - 1;
    [[maybe_unused]] volatile const unsigned char touched = pixels.Samples[last];
}

}  // namespace

void CheckInput(std::string_view text) {
    Check({text.begin(), text.end()});
}

}  // namespace pixmora

/// The AV1 library forgets a few bytes of its own at a broken picture.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libdav1d\n";
}
