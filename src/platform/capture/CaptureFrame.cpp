// From a device's frame to a bitmap.
#include "platform/capture/CaptureFrame.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace pixmora {

namespace {

constexpr std::string_view jpegStart = "\xFF\xD8\xFF";
constexpr std::string_view jpegEnd = "\xFF\xD9";

std::size_t BytesNeeded(const FrameFormat &format) {
    const auto lines = static_cast<std::size_t>(format.Height) - 1;
    return lines * static_cast<std::size_t>(format.BytesPerLine) + static_cast<std::size_t>(format.Width) * 2;
}

std::uint8_t Clamped(int value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

/// BT.601 in 8-bit fixed point: 1.164, 1.596, 0.813, 0.391 and 2.018 times 256.
void PutPixel(uchar *pixel, int y, int u, int v) {
    const int light = 298 * (y - 16) + 128;
    pixel[0] = Clamped((light + 409 * (v - 128)) / 256);
    pixel[1] = Clamped((light - 100 * (u - 128) - 208 * (v - 128)) / 256);
    pixel[2] = Clamped((light + 516 * (u - 128)) / 256);
}

QImage FromYuyv(const FrameFormat &format, std::string_view bytes) {
    QImage image(format.Width, format.Height, QImage::Format_RGB888);
    for (int row = 0; row < format.Height; ++row) {
        const auto *source = reinterpret_cast<const std::uint8_t *>(bytes.data()) +
                             static_cast<std::ptrdiff_t>(row) * format.BytesPerLine;
        uchar *target = image.scanLine(row);
        for (int column = 0; column < format.Width; ++column) {
            const std::uint8_t *pair = source + static_cast<std::ptrdiff_t>(column / 2) * 4;
            PutPixel(target + static_cast<std::ptrdiff_t>(column) * 3, pair[column % 2 * 2], pair[1], pair[3]);
        }
    }
    return image;
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

bool IsWholeFrame(const FrameFormat &format, std::string_view bytes) {
    if (format.Pixels == FramePixels::Yuyv) return bytes.size() >= BytesNeeded(format);
    const std::size_t last = bytes.find_last_not_of('\0');  // many devices fill their frames up
    return bytes.starts_with(jpegStart) && bytes.substr(0, last + 1).ends_with(jpegEnd);
}

std::string FrameToBitmap(const FrameFormat &format, std::string_view bytes) {
    const QImage image = format.Pixels == FramePixels::Yuyv ? FromYuyv(format, bytes) : FromJpeg(bytes);
    QBuffer bitmap;
    if (image.isNull() || !image.save(&bitmap, "BMP")) return {};
    return bitmap.data().toStdString();
}

}  // namespace pixmora
