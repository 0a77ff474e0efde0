// Capture devices: what a webcam has to do, whatever stands behind it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pixmora {

struct CaptureDescription {
    std::string Name;
    std::string Version;
};

/// A device that was found and could be set up.
class CaptureDevice {
public:
    virtual ~CaptureDevice() = default;
    /// Takes a picture and writes it as a Windows bitmap that appears whole or not at all; blocks the loop, two seconds
    /// at most. @return false when the device gave no picture or the file can't be written; a former file stays then
    virtual bool SaveStill(std::string_view path) = 0;
};

/// The machine's capture devices, by the order in which they are found. @param index from 0
class CaptureDrivers {
public:
    virtual ~CaptureDrivers() = default;
    /// None where there is no such device.
    virtual std::optional<CaptureDescription> Describe(int index) = 0;
    /// Null where there is no such device, or another program uses it, or it has no format that is known here.
    virtual std::unique_ptr<CaptureDevice> Connect(int index) = 0;
};

/// The devices of this machine.
CaptureDrivers &SystemCaptureDrivers();

}  // namespace pixmora
