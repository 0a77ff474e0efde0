// A picture's file from its opening to its decoding. For the sources of this room only.
#pragma once

#include <QImage>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <string_view>

namespace pixmora {

/// A picture whose coefficients or samples are all held takes up to 8 bytes a pixel, whatever the size wanted.
inline constexpr std::int64_t MaximumPixelsHeldWhole = 50'000'000;
/// Formats that can't be scaled while they are decoded take 4 bytes a pixel.
inline constexpr std::int64_t MaximumPixelsUnscaled = 40'000'000;

class PictureSource {
public:
    /// Told by content. @return null for what is no picture, or one too large to be decoded. @throws RunTimeError when
    /// the file can't be opened
    static std::unique_ptr<PictureSource> Open(std::string_view path);

    virtual ~PictureSource() = default;
    PictureSource(const PictureSource &) = delete;
    PictureSource &operator=(const PictureSource &) = delete;

    virtual QSize UprightSize() const = 0;
    /// Upright, at the size wanted; null when it can't be decoded. @param pause see
    /// PictureEngine; may be empty
    virtual QImage Decode(QSize wanted, const std::function<void()> &pause) = 0;

protected:
    PictureSource() = default;
};

/// A picture of grey stays one.
QImage Scaled(const QImage &image, QSize size);

/// Has what a library does in one piece done on a thread of its own, with pauses until its end.
template <class Work>
auto RunAside(const Work &work, const std::function<void()> &pause) {
    if (!pause) return work();
    auto result = std::async(std::launch::async, work);
    while (result.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready) pause();
    return result.get();
}

}  // namespace pixmora
