// The picture library over Qt's readers and writers.
#include "platform/pictures/PictureEngine.h"

#include <QBuffer>
#include <QColorSpace>
#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <string>

#include "platform/files/AtomicFile.h"
#include "platform/pictures/PictureSource.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr int allocationLimit = 160;  // megabytes; takes MaximumPixelsUnscaled
constexpr int maximumJpegSide = 65500;
constexpr std::int32_t jpegFileType = 3;
constexpr std::int32_t defaultQuality = 75;

QImage OnWhite(const QImage &image) {
    QImage canvas(image.size(), QImage::Format_RGB32);
    canvas.fill(Qt::white);
    QPainter(&canvas).drawImage(0, 0, image);
    return canvas;
}

/// What browsers show alike: opaque, 8 bits a channel, in the common colour space.
QImage ForTheWeb(QImage image) {
    const QColorSpace common(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != common) image.convertToColorSpace(common);
    if (image.hasAlphaChannel()) return OnWhite(image);
    if (image.format() == QImage::Format_Grayscale8) return image;
    return std::move(image).convertToFormat(QImage::Format_RGB32);
}

/// Baseline, colour at half the resolution. The camera's comments and colour profile stay behind: a profile weighs more
/// than a thumbnail.
QByteArray ToJpeg(const QImage &image, int quality) {
    const QImage bare(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.setOptimizedWrite(true);
    return buffer.open(QIODevice::WriteOnly) && writer.write(bare) ? buffer.data() : QByteArray();
}

bool CanBeMade(QSize size) {
    return std::max(size.width(), size.height()) <= maximumJpegSide &&
           std::int64_t{size.width()} * size.height() <= MaximumPixelsUnscaled;
}

}  // namespace

struct PictureEngine::Implementation {
    std::string Path;  ///< empty with no picture
    QSize Size{0, 0};  ///< upright, after the last Resize
};

PictureEngine::PictureEngine() : implementation_(std::make_unique<Implementation>()) {
    QImageReader::setAllocationLimit(allocationLimit);
    // What the readers have to say about strangers' pictures is for nobody, and standard error is the owner's.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\nqt.gui.icc*=false");
}

PictureEngine::~PictureEngine() = default;

std::int32_t PictureEngine::Width() const {
    return implementation_->Size.width();
}

std::int32_t PictureEngine::Height() const {
    return implementation_->Size.height();
}

void PictureEngine::Load(std::string_view path, [[maybe_unused]] std::int32_t zero, std::int32_t &success) {
    *implementation_ = {{}, QSize(0, 0)};
    success = 0;
    try {
        const auto source = PictureSource::Open(path);
        if (!source) return;
        *implementation_ = {std::string(path), source->UprightSize()};
        success = 1;
    } catch (const RunTimeError &) {
        // a file that can't be opened is no picture
    }
}

std::string PictureEngine::Encoded(std::int32_t flags, const std::function<void()> &pause) {
    const std::int32_t fileType = flags & 0xFFF;
    const std::int32_t quality = flags >> 12;
    const bool isJpegAsked = fileType == jpegFileType || fileType == 0;
    const auto [path, size] = *implementation_;  // as they are now: a pause may load another picture
    if (path.empty() || !isJpegAsked || !CanBeMade(size)) throw RunTimeError(ErrorNumber::PictureError);
    QByteArray jpeg;
    try {
        const auto source = PictureSource::Open(path);
        const QImage image = source ? source->Decode(size, pause) : QImage();
        if (!image.isNull()) jpeg = ToJpeg(ForTheWeb(image), quality <= 0 ? defaultQuality : std::min(quality, 100));
    } catch (const RunTimeError &) {
        throw RunTimeError(ErrorNumber::PictureError);
    }
    if (jpeg.isEmpty()) throw RunTimeError(ErrorNumber::PictureError);
    return jpeg.toStdString();
}

void PictureEngine::Save(std::string_view path, std::int32_t flags, std::int32_t &success) {
    success = 0;
    const std::string jpeg = Encoded(flags);
    try {
        AtomicFile file(path);
        file.Write(jpeg);
        file.CommitUnflushed();
    } catch (const RunTimeError &) {
        throw RunTimeError(ErrorNumber::PictureError);
    }
    success = 1;
}

void PictureEngine::Resize(std::int32_t width, [[maybe_unused]] std::int32_t height, [[maybe_unused]] std::int32_t mode,
                           std::int32_t &success) {
    success = 0;
    QSize &size = implementation_->Size;
    if (size.width() <= 0 || width <= 0) return;
    const double proportional = std::round(double(size.height()) * width / size.width());
    size = QSize(width, static_cast<int>(std::clamp(proportional, 1.0, 1e9)));
    success = 1;
}

}  // namespace pixmora
