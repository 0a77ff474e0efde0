// Format, buffers and frames of a video device.
#include "platform/capture/V4l2Session.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace pixmora {

namespace {

constexpr std::uint32_t wantedWidth = 640;
constexpr std::uint32_t wantedHeight = 480;
constexpr std::uint32_t mostFormats = 64;
constexpr std::uint32_t buffersWanted = 4;
constexpr std::uint32_t largestFrame = LongestFrameSide * LongestFrameSide * 3;

std::optional<FramePixels> PixelsOf(std::uint32_t code) {
    if (code == V4L2_PIX_FMT_RGB24) return FramePixels::Rgb;
    if (code == V4L2_PIX_FMT_MJPEG || code == V4L2_PIX_FMT_JPEG) return FramePixels::Jpeg;
    return std::nullopt;
}

std::int64_t DistanceFromWanted(const v4l2_pix_format &format) {
    return std::abs(std::int64_t{format.width} * format.height - std::int64_t{wantedWidth} * wantedHeight);
}

/// A size nearer to the wanted one first; of two alike JPEG, which is as the camera has it, while RGB may have been
/// made of anything.
bool IsBetter(const v4l2_pix_format &left, const v4l2_pix_format &right) {
    return std::pair(DistanceFromWanted(left), PixelsOf(left.pixelformat)) <
           std::pair(DistanceFromWanted(right), PixelsOf(right.pixelformat));
}

bool IsPossible(const v4l2_pix_format &format) {
    return format.width > 1 && format.height > 0 && format.width <= LongestFrameSide &&
           format.height <= LongestFrameSide && format.bytesperline <= largestFrame / format.height;
}

FrameFormat FrameFormatOf(const v4l2_pix_format &format) {
    return {*PixelsOf(format.pixelformat), static_cast<int>(format.width), static_cast<int>(format.height),
            static_cast<int>(std::max(format.bytesperline, format.width * 3))};
}

std::string TextOf(const std::uint8_t *bytes, std::size_t size) {
    return {bytes, std::find(bytes, bytes + size, 0)};
}

bool IsTransient(int error) {
    return error == EAGAIN || error == EINTR;
}

}  // namespace

/// How a device hands its frames over: started by Start, stopped by the destructor.
class FrameSource {
public:
    virtual ~FrameSource() = default;
    virtual bool Start() { return true; }
    virtual bool Next(V4l2Session::Attempt &frame) = 0;
};

namespace {

/// Frames that the driver puts into memory which it shares.
class MappedFrames : public FrameSource {
public:
    MappedFrames(V4l2Calls &calls, int descriptor) : calls_(calls), descriptor_(descriptor) {}

    ~MappedFrames() override {
        Call(VIDIOC_STREAMOFF, &type_);
        for (const auto &[start, length] : buffers_) calls_.Unmap(start, length);
        v4l2_requestbuffers none = Request(0);
        Call(VIDIOC_REQBUFS, &none);
    }
    MappedFrames(const MappedFrames &) = delete;
    MappedFrames &operator=(const MappedFrames &) = delete;

    bool Start() override {
        v4l2_requestbuffers request = Request(buffersWanted);
        if (!Call(VIDIOC_REQBUFS, &request)) return false;
        for (std::uint32_t index = 0; index < request.count; ++index) {
            v4l2_buffer buffer = Buffer(index);
            if (!Call(VIDIOC_QUERYBUF, &buffer)) return false;
            void *start = calls_.Map(descriptor_, buffer.length, static_cast<off_t>(buffer.m.offset));
            if (start == MAP_FAILED) return false;
            buffers_.emplace_back(start, buffer.length);
            if (!Call(VIDIOC_QBUF, &buffer)) return false;
        }
        return !buffers_.empty() && Call(VIDIOC_STREAMON, &type_);
    }

    bool Next(V4l2Session::Attempt &frame) override {
        v4l2_buffer buffer = Buffer(0);
        if (!Call(VIDIOC_DQBUF, &buffer)) return IsTransient(errno);
        if (buffer.index >= buffers_.size()) return false;
        const auto &[start, length] = buffers_[buffer.index];
        if ((buffer.flags & V4L2_BUF_FLAG_ERROR) == 0) {
            frame.emplace(static_cast<const char *>(start), std::min<std::size_t>(buffer.bytesused, length));
        }
        return Call(VIDIOC_QBUF, &buffer);
    }

private:
    bool Call(unsigned long request, void *argument) { return calls_.Ioctl(descriptor_, request, argument) >= 0; }

    static v4l2_requestbuffers Request(std::uint32_t count) {
        v4l2_requestbuffers request{};
        request.count = count;
        request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        request.memory = V4L2_MEMORY_MMAP;
        return request;
    }

    static v4l2_buffer Buffer(std::uint32_t index) {
        v4l2_buffer buffer{};
        buffer.index = index;
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        return buffer;
    }

    V4l2Calls &calls_;
    const int descriptor_;
    int type_ = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    std::vector<std::pair<void *, std::size_t>> buffers_;
};

/// Frames of a device that knows nothing but read.
class ReadFrames : public FrameSource {
public:
    ReadFrames(V4l2Calls &calls, int descriptor, std::size_t size)
        : calls_(calls), descriptor_(descriptor), buffer_(size, '\0') {}

    bool Next(V4l2Session::Attempt &frame) override {
        const ssize_t count = calls_.Read(descriptor_, buffer_.data(), buffer_.size());
        if (count < 0) return IsTransient(errno);
        frame = buffer_.substr(0, static_cast<std::size_t>(count));
        return count > 0;
    }

private:
    V4l2Calls &calls_;
    const int descriptor_;
    std::string buffer_;
};

}  // namespace

V4l2Session::V4l2Session(V4l2Calls &calls, const std::string &path) : calls_(calls), descriptor_(calls.Open(path)) {
    constexpr std::uint32_t ways = V4L2_CAP_STREAMING | V4L2_CAP_READWRITE;
    isCaptureDevice_ = descriptor_ >= 0 && Call(VIDIOC_QUERYCAP, &capability_) &&
                       (Capabilities() & V4L2_CAP_VIDEO_CAPTURE) != 0 && (Capabilities() & ways) != 0;
}

V4l2Session::~V4l2Session() {
    source_.reset();
    if (descriptor_ >= 0) calls_.Close(descriptor_);
}

V4l2Identity V4l2Session::Identity() const {
    return {TextOf(capability_.card, sizeof capability_.card),
            TextOf(capability_.bus_info, sizeof capability_.bus_info)};
}

std::string V4l2Session::Version() const {
    const std::uint32_t version = capability_.version;
    return std::to_string(version >> 16) + "." + std::to_string(version >> 8 & 0xFF) + "." +
           std::to_string(version & 0xFF);
}

bool V4l2Session::SetFormat() {
    std::optional<v4l2_format> format = FindFormat();
    if (!format || !Call(VIDIOC_S_FMT, &*format)) return false;
    const v4l2_pix_format &chosen = format->fmt.pix;
    if (!PixelsOf(chosen.pixelformat) || !IsPossible(chosen)) return false;
    frameFormat_ = FrameFormatOf(chosen);
    imageSize_ = std::min(chosen.sizeimage, largestFrame);
    return true;
}

bool V4l2Session::Start() {
    if ((Capabilities() & V4L2_CAP_STREAMING) == 0) {
        source_ = std::make_unique<ReadFrames>(calls_, descriptor_, imageSize_);
    } else {
        source_ = std::make_unique<MappedFrames>(calls_, descriptor_);
    }
    return source_->Start();
}

bool V4l2Session::Next(Attempt &frame) {
    return source_->Next(frame);
}

std::shared_ptr<void> V4l2Session::AwaitInput(int ms, std::function<void(bool hasInput)> done) {
    return calls_.AwaitInput(descriptor_, ms, std::move(done));
}

bool V4l2Session::Call(unsigned long request, void *argument) {
    return calls_.Ioctl(descriptor_, request, argument) >= 0;
}

/// Of this node; a camera's other nodes carry no pictures.
std::uint32_t V4l2Session::Capabilities() const {
    return (capability_.capabilities & V4L2_CAP_DEVICE_CAPS) != 0 ? capability_.device_caps : capability_.capabilities;
}

std::optional<v4l2_format> V4l2Session::FindFormat() {
    std::optional<v4l2_format> best;
    for (std::uint32_t index = 0; index < mostFormats; ++index) {
        v4l2_fmtdesc description{};
        description.index = index;
        description.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (!Call(VIDIOC_ENUM_FMT, &description)) break;
        if (!PixelsOf(description.pixelformat)) continue;
        const std::optional<v4l2_format> format = TryFormat(description.pixelformat);
        if (format && (!best || IsBetter(format->fmt.pix, best->fmt.pix))) best = format;
    }
    return best;
}

std::optional<v4l2_format> V4l2Session::TryFormat(std::uint32_t code) {
    v4l2_format format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    format.fmt.pix.width = wantedWidth;
    format.fmt.pix.height = wantedHeight;
    format.fmt.pix.pixelformat = code;
    format.fmt.pix.field = V4L2_FIELD_ANY;
    // A driver need not know the trial; the setting tells the size then.
    if (!Call(VIDIOC_TRY_FMT, &format) && errno != ENOTTY) return std::nullopt;
    if (format.fmt.pix.pixelformat != code || !IsPossible(format.fmt.pix)) return std::nullopt;
    return format;
}

}  // namespace pixmora
