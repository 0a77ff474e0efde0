// The webcam: a still from a capture device every so many seconds, left in htdocs for the visitors.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/capture/CaptureDevice.h"

namespace pixmora {

/// Interval of the hidden form's tmrWebCam. Its Tag counts down to the next still, so that a change of the owner's
/// interval holds from the next round on.
inline constexpr int WebcamIntervalMs = 5000;

/// Which of a driver's own dialogs it has.
struct CaptureDriverCaps {
    bool fHasDlgVideoSource = false;
    bool fHasDlgVideoFormat = false;
};

/// The one device that is connected; null when there is none.
extern std::unique_ptr<CaptureDevice> gCaptureDevice;

/// Puts other drivers in the place of the machine's own, for tests; null puts those back. Not owned.
void SetCaptureDrivers(CaptureDrivers *drivers);

/// None where there is no such device. @param deviceIndex from 0
std::optional<CaptureDescription> GetDriverDescription(int deviceIndex);

/// @return whether a device is connected now
bool ConnectCaptureDriver(int deviceIndex);

/// Connects the device; a failure is told to the owner and leaves none connected.
bool OpenWebcam(int deviceIndex);

/// Gives the device up; with none connected it does nothing.
void CloseWebcam();

/// Both dialogs are always absent: no driver of this system has any. @return false when no device is connected
bool GetDriverCaps(CaptureDriverCaps &caps);

/// Takes a still into the file, whose former content goes in any case, so that it can never pass for a new one; the
/// message loop turns meanwhile. As a test the still goes to a file of its own, which doesn't stay, and a failure is
/// told to the owner. @return whether there is a new still
bool SaveCaptureFile(std::string_view path, bool isTest);

/// Takes a still that is for the owner's eyes only; calls back as CaptureDevice::TakeStill does, at once with none
/// when no device is connected.
void TakePreview(std::function<void(const std::string &bitmap)> done);

/// Part of the website's start: opens the device if the owner wants a webcam, takes the first still and enables the
/// timer.
/// @throws RunTimeError TypeMismatch for a setting that is no number
void StartWebcam();

/// The handler of tmrWebCam; a still that is due comes by events of its own, after the handler. @throws RunTimeError
/// TypeMismatch when the interval is no number
void WebcamTick();

/// Part of the website's stop.
void StopWebcam();

}  // namespace pixmora
