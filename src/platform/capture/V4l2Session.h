// A video device for as long as it is open.
#pragma once

#include <linux/videodev2.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/capture/CaptureFrame.h"
#include "platform/capture/V4l2Calls.h"

namespace pixmora {

/// What tells a device from others. Its number doesn't: that of a camera pulled out goes to the next one plugged in.
struct V4l2Identity {
    std::string Card;
    std::string Bus;
    bool operator==(const V4l2Identity &) const = default;
};

class FrameSource;

/// One video device, opened by the constructor and closed by the destructor.
class V4l2Session {
public:
    V4l2Session(V4l2Calls &calls, const std::string &path);
    ~V4l2Session();
    V4l2Session(const V4l2Session &) = delete;
    V4l2Session &operator=(const V4l2Session &) = delete;

    /// Whether it is open and can capture.
    bool IsCaptureDevice() const { return isCaptureDevice_; }
    V4l2Identity Identity() const;
    /// Of the driver, as "6.1.0".
    std::string Version() const;

    /// Asks for JPEG or RGB in the size nearest to 640 by 480. False when there is none or another program uses the
    /// device.
    bool SetFormat();
    const FrameFormat &Format() const { return frameFormat_; }

    /// Lets the device begin, with the format set.
    bool Start();
    /// Nothing for an attempt that gave no frame, though the next one may.
    using Attempt = std::optional<std::string>;
    /// Fetches a frame that is ready. @return false when there will be no further one
    bool Next(Attempt &frame);
    /// See V4l2Calls.
    std::shared_ptr<void> AwaitInput(int ms, std::function<void(bool hasInput)> done);

private:
    bool Call(unsigned long request, void *argument);
    std::uint32_t Capabilities() const;
    std::optional<v4l2_format> FindFormat();
    std::optional<v4l2_format> TryFormat(std::uint32_t code);

    V4l2Calls &calls_;
    const int descriptor_;
    v4l2_capability capability_{};
    bool isCaptureDevice_ = false;
    FrameFormat frameFormat_;
    std::size_t imageSize_ = 0;  ///< the most that a frame takes, in bytes
    std::unique_ptr<FrameSource> source_;
};

}  // namespace pixmora
