// Capture devices: what a webcam has to do, whatever stands behind it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pixmora {

struct CaptureDescription {
    std::string Name;
    std::string Version;
};

/// No still takes longer, in ms.
inline constexpr int LongestStillMs = 1500;

/// A device that was found and could be set up.
class CaptureDevice {
public:
    virtual ~CaptureDevice() = default;
    /// Takes a picture by the message loop's events, without holding it, and calls back once with a Windows bitmap's
    /// bytes; with none when the device gave no picture. The call can come at once. A further still, and the device's
    /// end, drop one that is under way: its call never comes.
    virtual void TakeStill(std::function<void(const std::string &bitmap)> done) = 0;
};

/// The machine's capture devices, by the order in which they are found. @param index from 0
class CaptureDrivers {
public:
    virtual ~CaptureDrivers() = default;
    /// None where there is no such device.
    virtual std::optional<CaptureDescription> Describe(int index) = 0;
    /// Null where there is no such device, or another program uses it, or it has no format that can be had as RGB.
    virtual std::unique_ptr<CaptureDevice> Connect(int index) = 0;
};

/// The devices of this machine.
CaptureDrivers &SystemCaptureDrivers();

}  // namespace pixmora
