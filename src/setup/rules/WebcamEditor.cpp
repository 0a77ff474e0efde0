// What the webcam dialog decides.
#include "setup/rules/WebcamEditor.h"

#include <algorithm>

#include "core/site/OwnerDialogue.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr int mostDevices = 10;
constexpr int secondsEach = 5;

int StoredSource() {
    return static_cast<int>(std::clamp(Val(GetSetting("Setup", "WebcamSource", "0")), -1.0, 1e6));
}

}  // namespace

bool WebcamEditor::Enter() const {
    hands_.CloseWebcam();
    if (!hands_.GetDriverDescription(0)) {
        ShowMessageBox(
            "I'm sorry but no capture devices could be found. Please make sure your camera is installed properly.",
            FlagCritical);
        return false;
    }
    hands_.CloseWebcam();
    const int stored = std::max(StoredSource(), 0);
    return hands_.OpenWebcam(hands_.GetDriverDescription(stored) ? stored : 0);
}

int WebcamEditor::CaptureInterval() {
    const double stored = Val(GetSetting("Setup", "CaptureInterval", "6"));
    return static_cast<int>(std::clamp(stored, double{ShortestCaptureInterval}, double{LongestCaptureInterval}));
}

std::string WebcamEditor::IntervalText(int position) {
    return FormatElapsed(position * secondsEach, false, true);
}

std::vector<std::string> WebcamEditor::Sources() const {
    std::vector<std::string> sources;
    for (int device = 0; device < mostDevices; ++device) {
        const std::optional<CaptureDescription> found = hands_.GetDriverDescription(device);
        if (found) sources.push_back(CutAtNul(found->Name) + " " + CutAtNul(found->Version));
    }
    return sources;
}

int WebcamEditor::FirstSource(int sources) {
    const int stored = StoredSource();
    if (stored >= 0 && stored < sources) return stored;
    return sources > 0 ? 0 : -1;
}

WebcamHands::Dialogs WebcamEditor::ChooseSource(int source) const {
    hands_.CloseWebcam();
    hands_.OpenWebcam(source);
    const std::optional<WebcamHands::Dialogs> dialogs = hands_.GetDriverDialogs();
    if (!dialogs) ShowMessageBox("Unable to get driver capabilities!", FlagCritical);
    return dialogs.value_or(WebcamHands::Dialogs{});
}

bool WebcamEditor::Accept(int interval, int source, const std::string &sourceText) const {
    SaveSetting("Setup", "CaptureInterval", std::to_string(interval));
    const bool isUsable = !sourceText.empty() && hands_.TestCapture();
    if (!sourceText.empty() && !isUsable) SaveSetting("Setup", "WebCamSource", "-1");
    // Deliberate: the same key, so that a failed test leaves only the webcam switched off.
    SaveSetting("Setup", "WebcamSource", std::to_string(source));
    return isUsable;
}

}  // namespace pixmora
