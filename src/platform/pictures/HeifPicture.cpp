// Gives the module a file's bytes and makes pictures of what it reads.
#include "platform/pictures/HeifPicture.h"

#include <QColorSpace>
#include <algorithm>
#include <utility>
#include <vector>

#include "platform/files/Files.h"
#include "platform/pictures/HeifExif.h"
#include "platform/pictures/HeifModule.h"
#include "platform/pictures/HevcHead.h"
#include "platform/runtime/Modules.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

using Bytes = std::vector<unsigned char>;

/// No picture below the limit of size has as many.
constexpr std::int64_t maximumLength = 128 << 20;

const HeifReader *Reader() {
    static const auto *const reader = static_cast<const HeifReader *>(LoadModule("heif", "PixmoraHeifReader"));
    return reader;
}

/// Nothing of a file that is none, or that there is no module for. @throws RunTimeError when it can't be opened
Bytes ReadHeif(std::string_view path) {
    const auto file = BinaryFile::OpenForRead(path);
    char head[8] = {};
    const bool isHeif = file->ReadAt(0, head, sizeof head) == sizeof head && std::string_view(head + 4, 4) == "ftyp";
    const std::int64_t length = file->Length();
    if (!isHeif || length > maximumLength || Reader() == nullptr) return {};
    Bytes bytes(static_cast<std::size_t>(length));
    bytes.resize(file->ReadAt(0, bytes.data(), bytes.size()));
    return bytes;
}

QImage ImageOf(const HeifPixels &pixels) {
    const auto format = pixels.HasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888;
    const auto release = [](void *owner) {
        delete static_cast<std::shared_ptr<const void> *>(owner);
    };
    QImage image(pixels.Samples, pixels.Width, pixels.Height, pixels.Stride, format, release,
                 new std::shared_ptr<const void>(pixels.Owner));
    if (!pixels.Profile.empty()) {
        const auto *profile = reinterpret_cast<const char *>(pixels.Profile.data());
        image.setColorSpace(
            QColorSpace::fromIccProfile(QByteArray(profile, static_cast<qsizetype>(pixels.Profile.size()))));
    }
    return image;
}

class HeifPicture : public PictureSource {
public:
    HeifPicture(Bytes bytes, QSize size) : bytes_(std::move(bytes)), size_(size) {}

    QSize UprightSize() const override { return size_; }

    QImage Decode(QSize wanted, const std::function<void()> &pause) override {
        const auto decode = [&] {
            HeifPixels pixels;
            const bool hasWorked = Reader()->Decode(bytes_, wanted.width(), pixels);
            return hasWorked ? Scaled(ImageOf(pixels), wanted) : QImage();
        };
        return RunAside(decode, pause);
    }

private:
    const Bytes bytes_;
    const QSize size_;
};

}  // namespace

bool IsHeifName(std::string_view path) {
    return PathMatchSpec(path, "*.heic;*.heif;*.avif");
}

std::unique_ptr<PictureSource> OpenHeif(std::string_view path) {
    Bytes bytes = ReadHeif(path);
    int width = 0;
    int height = 0;
    if (bytes.empty() || !Reader()->Size(bytes, width, height)) return nullptr;
    const std::int64_t pixels = std::max(std::int64_t{width} * height, MostCodedPixels(bytes));
    if (width <= 0 || height <= 0 || pixels > MaximumPixelsHeldWhole) return nullptr;
    return std::make_unique<HeifPicture>(std::move(bytes), QSize(width, height));
}

std::string ReadHeifExif(std::string_view path) {
    const Bytes bytes = IsHeifName(path) ? ReadHeif(path) : Bytes();
    if (bytes.empty()) return {};
    const Bytes exif = Reader()->Exif(bytes);
    return {exif.begin(), exif.end()};
}

}  // namespace pixmora
