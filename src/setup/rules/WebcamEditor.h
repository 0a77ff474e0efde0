// What the webcam dialog decides, and its entry from the setup dialog.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/capture/CaptureDevice.h"

namespace pixmora {

/// The capture operations that the dialog uses; each as the webcam has it. All must be set.
struct WebcamHands {
    std::function<std::optional<CaptureDescription>(int deviceIndex)> GetDriverDescription;
    std::function<bool(int deviceIndex)> OpenWebcam;
    std::function<void()> CloseWebcam;
    /// Whether the driver's own dialogs for source and format exist; none when the device can't tell.
    struct Dialogs {
        bool Source = false;
        bool Format = false;
    };
    std::function<std::optional<Dialogs>()> GetDriverDialogs;
    std::function<bool()> TestCapture;
    /// What the connected device sees now, as a bitmap; calls back once, or not at all after CloseWebcam.
    std::function<void(std::function<void(const std::string &bitmap)> show)> TakePreview;
};

inline constexpr int ShortestCaptureInterval = 1;  ///< in units of 5 s
inline constexpr int LongestCaptureInterval = 120;

class WebcamEditor {
public:
    explicit WebcamEditor(WebcamHands hands) : hands_(std::move(hands)) {}

    /// Finds a device and connects it. @return whether the dialog is to show; if not, the webcam is off
    bool Enter() const;

    /// Slider position.
    static int CaptureInterval();
    /// "2m 5s"
    static std::string IntervalText(int position);

    /// Name and version of each device.
    std::vector<std::string> Sources() const;
    /// Which of the sources is chosen at first; -1 for none. @param sources how many there are
    static int FirstSource(int sources);

    /// Connects the source. @return which of its own dialogs can be opened
    WebcamHands::Dialogs ChooseSource(int source) const;

    void TakePreview(std::function<void(const std::string &bitmap)> show) const { hands_.TakePreview(std::move(show)); }

    /// Saves interval and source after a test of the device. @param source index, -1 with no source
    /// @return whether the webcam can stay on
    bool Accept(int interval, int source, const std::string &sourceText) const;

    void Close() const { hands_.CloseWebcam(); }

private:
    WebcamHands hands_;
};

}  // namespace pixmora
