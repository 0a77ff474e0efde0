// From a device's frame to a bitmap.
#include "platform/capture/CaptureFrame.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <cstddef>

namespace pixmora {

namespace {

constexpr std::string_view jpegStart = "\xFF\xD8\xFF";
constexpr std::string_view jpegEnd = "\xFF\xD9";

std::size_t BytesNeeded(const FrameFormat &format) {
    const auto lines = static_cast<std::size_t>(format.Height) - 1;
    return lines * static_cast<std::size_t>(format.BytesPerLine) + static_cast<std::size_t>(format.Width) * 3;
}

QImage FromRgb(const FrameFormat &format, std::string_view bytes) {
    return {reinterpret_cast<const uchar *>(bytes.data()), format.Width, format.Height, format.BytesPerLine,
            QImage::Format_RGB888};
}

QImage FromJpeg(std::string_view bytes) {
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer, "jpeg");
    const QSize size = reader.size();
    if (size.width() > LongestFrameSide || size.height() > LongestFrameSide) return {};
    return reader.read();
}

}  // namespace

FrameState LookAtFrame(const FrameFormat &format, std::string_view bytes) {
    if (format.Pixels == FramePixels::Rgb) {
        return bytes.size() >= BytesNeeded(format) ? FrameState::Whole : FrameState::Damaged;
    }
    if (!bytes.starts_with(jpegStart)) return FrameState::Damaged;
    return bytes.rfind(jpegEnd) == std::string_view::npos ? FrameState::Unended : FrameState::Whole;
}

std::string FrameToBitmap(const FrameFormat &format, std::string_view bytes) {
    const QImage image = format.Pixels == FramePixels::Rgb ? FromRgb(format, bytes) : FromJpeg(bytes);
    QBuffer bitmap;
    if (image.isNull() || !image.save(&bitmap, "BMP")) return {};
    return bitmap.data().toStdString();
}

}  // namespace pixmora
