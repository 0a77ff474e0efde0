// Capture devices over Video4Linux2.
#pragma once

#include "platform/capture/CaptureDevice.h"
#include "platform/capture/V4l2Calls.h"

namespace pixmora {

/// The devices that can capture video by streaming or by read, in the order of their numbers. A frame is 640 by 480
/// pixels or what the device has nearest to it.
class V4l2Drivers : public CaptureDrivers {
public:
    /// @param calls outlive the drivers and what they connect
    explicit V4l2Drivers(V4l2Calls &calls) : calls_(calls) {}

    std::optional<CaptureDescription> Describe(int index) override;
    std::unique_ptr<CaptureDevice> Connect(int index) override;

private:
    V4l2Calls &calls_;
};

}  // namespace pixmora
