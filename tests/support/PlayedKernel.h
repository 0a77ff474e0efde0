// The kernel's side of video devices, played: cameras that a test makes, spoils and pulls out.
#pragma once

#include <linux/videodev2.h>
#include <sys/mman.h>

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/capture/V4l2Calls.h"
#include "platform/runtime/Clock.h"

namespace pixmora {

struct Format {
    std::uint32_t Code;
    std::uint32_t Width = 640;  ///< the size that the device has, whatever it is asked for
    std::uint32_t Height = 480;
};

struct Frame {
    std::string Bytes;
    std::uint32_t Flags = 0;
    int Delay = 33;  ///< ms
};

/// Gives its frames one after the other, then none any more.
struct Camera {
    std::string Card = "Camera";
    std::uint32_t Capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    std::vector<Format> Formats = {{V4L2_PIX_FMT_RGB24, 4, 2}};
    std::deque<Frame> Frames = {};
    std::map<unsigned long, int> Errors = {};  ///< errno by request
    bool HasVanished = false;
    bool CanMap = true;
    std::size_t FramesGiven = 0;
};

/// Holds the cameras by their paths and keeps account of what is open, mapped and running. Its clock moves on only
/// while a frame is awaited.
class PlayedKernel : public V4l2Calls {
public:
    std::map<std::string, Camera> Cameras;
    int OpenDescriptors = 0;
    std::multiset<std::size_t> Mapped;  ///< lengths
    bool IsStreaming = false;
    std::uint32_t Buffers = 0;

    bool IsAtRest() const { return OpenDescriptors == 0 && Mapped.empty() && !IsStreaming && Buffers == 0; }

    std::vector<std::string> Devices() override {
        std::vector<std::string> paths;
        for (const auto &[path, camera] : Cameras) paths.push_back(path);
        return paths;
    }
    int Open(const std::string &path) override {
        if (!Cameras.contains(path)) return Failed(ENOENT);
        camera_ = &Cameras[path];
        if (camera_->HasVanished) return Failed(ENODEV);
        ++OpenDescriptors;
        return 3;
    }
    void Close(int) override { --OpenDescriptors; }

    int Ioctl(int, unsigned long request, void *argument) override {
        const auto error = camera_->Errors.find(request);
        if (camera_->HasVanished || error != camera_->Errors.end())
            return Failed(camera_->HasVanished ? ENODEV : error->second);
        auto *const description = static_cast<v4l2_fmtdesc *>(argument);
        auto *const format = static_cast<v4l2_format *>(argument);
        auto *const buffers = static_cast<v4l2_requestbuffers *>(argument);
        auto *const buffer = static_cast<v4l2_buffer *>(argument);
        switch (request) {
            case VIDIOC_QUERYCAP:
                return QueryCapability(*static_cast<v4l2_capability *>(argument));
            case VIDIOC_ENUM_FMT:
                if (description->index >= camera_->Formats.size()) return Failed(EINVAL);
                description->pixelformat = camera_->Formats[description->index].Code;
                return 0;
            case VIDIOC_G_FMT:
                format->fmt.pix.pixelformat = camera_->Formats.front().Code;
                [[fallthrough]];
            case VIDIOC_TRY_FMT:
            case VIDIOC_S_FMT:
                return SetFormat(format->fmt.pix);
            case VIDIOC_REQBUFS:
                Buffers = buffers->count = std::min(buffers->count, 2U);
                return 0;
            case VIDIOC_QUERYBUF:
                buffer->length = sizeof memory_[0];
                buffer->m.offset = buffer->index;
                return 0;
            case VIDIOC_QBUF:
                queued_.push_back(buffer->index);
                return 0;
            case VIDIOC_DQBUF:
                return GiveFrame(*buffer);
            case VIDIOC_STREAMON:
                IsStreaming = true;
                return 0;
            case VIDIOC_STREAMOFF:
                IsStreaming = false;
                queued_.clear();
                return 0;
            default:
                return Failed(ENOTTY);
        }
    }
    void *Map(int, std::size_t length, off_t offset) override {
        if (!camera_->CanMap) return MAP_FAILED;
        Mapped.insert(length);
        return memory_[static_cast<std::size_t>(offset)];
    }
    void Unmap(void *, std::size_t length) override { Mapped.erase(Mapped.find(length)); }

    std::shared_ptr<void> AwaitInput(int, int ms, std::function<void(bool hasInput)> done) override {
        const auto wait = std::make_shared<bool>();
        const auto finish = [this, ms, done, weak = std::weak_ptr(wait)] {
            if (weak.expired()) return;
            const int due = camera_->Frames.empty() ? ms + 1 : camera_->Frames.front().Delay;
            Clock.Advance(std::min(due, ms));
            done(due <= ms || camera_->HasVanished);
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), finish, Qt::QueuedConnection);
        return wait;
    }
    ssize_t Read(int, void *, std::size_t) override { return Failed(EINVAL); }

    ClockSetForTest Clock{1000000, MakeDate(2004, 3, 1)};

private:
    static int Failed(int error) {
        errno = error;
        return -1;
    }
    int QueryCapability(v4l2_capability &capability) const {
        std::strcpy(reinterpret_cast<char *>(capability.card), camera_->Card.c_str());
        capability.version = 6 << 16 | 1 << 8 | 99;
        // As of a camera whose nodes together can do more than this one.
        capability.capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_DEVICE_CAPS;
        capability.device_caps = camera_->Capabilities;
        return 0;
    }
    int SetFormat(v4l2_pix_format &pixels) const {
        for (const Format &format : camera_->Formats) {
            if (format.Code != pixels.pixelformat) continue;
            pixels.width = format.Width;
            pixels.height = format.Height;
            pixels.bytesperline = format.Code == V4L2_PIX_FMT_RGB24 ? format.Width * 3 : 0;
            pixels.sizeimage = sizeof memory_[0];
            return 0;
        }
        return Failed(EINVAL);
    }
    Frame TakeFrame() {
        Frame frame = camera_->Frames.front();
        camera_->Frames.pop_front();
        ++camera_->FramesGiven;
        return frame;
    }
    int GiveFrame(v4l2_buffer &buffer) {
        if (!IsStreaming || queued_.empty() || camera_->Frames.empty()) return Failed(EAGAIN);
        const Frame frame = TakeFrame();
        buffer.index = queued_.front();
        queued_.pop_front();
        buffer.bytesused = static_cast<std::uint32_t>(frame.Bytes.size());
        buffer.flags = frame.Flags;
        frame.Bytes.copy(memory_[buffer.index], sizeof memory_[0]);
        return 0;
    }

    Camera *camera_ = nullptr;
    std::deque<std::uint32_t> queued_;
    char memory_[2][65536]{};
};

}  // namespace pixmora
