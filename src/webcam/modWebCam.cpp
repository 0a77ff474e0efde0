// The webcam's device, stills and timer. No capture window stands between the program and its device: the drivers of
// this system need none.
#include "webcam/modWebCam.h"

#include <string>
#include <utility>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/frmSystray.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Settings.h"

namespace pixmora {

std::unique_ptr<CaptureDevice> gCaptureDevice;

namespace {

CaptureDrivers *captureDrivers = nullptr;

CaptureDrivers &Drivers() {
    return captureDrivers != nullptr ? *captureDrivers : SystemCaptureDrivers();
}

std::string CaptureInterval() {
    return GetSetting("Setup", "CaptureInterval", "6");
}

/// @return whether nothing stands at the path; a file that can't be replaced costs the still, not the website
bool RemoveFile(const std::string &path) {
    return !FileExists(path) || Try([&] { DeleteFile(path); });
}

/// As SaveCaptureFile does, without waiting: calls back when it is known whether there is a new still.
void BeginCapture(const std::string &path, const std::function<void(bool isSaved)> &done) {
    if (!RemoveFile(path)) {
        done(false);
        return;
    }
    TakePreview([path, done](const std::string &bitmap) {
        // A full disk costs the still too.
        done(!bitmap.empty() && Try([&] { WriteFileAtomically(path, bitmap); }));
    });
}

/// Makes the visitors' picture of the device's new still; the former stays where that can't be.
void UseStill(bool isSaved) {
    if (!isSaved) return;
    gLastCaptureTick = GetTickCount();
    try {
        std::int32_t success = 0;
        gPictureEngine->Load(App::HtdocsPath("capture.bmp"), 0, success);
        if (success == 0) return;
        gPictureEngine->Resize(gThumbSize, 0, 0, success);
        gPictureEngine->Save(App::HtdocsPath("capture.jpg"), 0, success);
    } catch (const RunTimeError &) {
        // As a still that didn't come.
    }
}

}  // namespace

void SetCaptureDrivers(CaptureDrivers *drivers) {
    captureDrivers = drivers;
}

std::optional<CaptureDescription> GetDriverDescription(int deviceIndex) {
    return Drivers().Describe(deviceIndex);
}

bool ConnectCaptureDriver(int deviceIndex) {
    gCaptureDevice = Drivers().Connect(deviceIndex);
    return gCaptureDevice != nullptr;
}

bool OpenWebcam(int deviceIndex) {
    if (ConnectCaptureDriver(deviceIndex)) return true;
    ShowMessageBox(
        "Unable to connect to capture driver! Please connect your webcam to your computer. Webcam will be disabled!",
        FlagCritical);
    CloseWebcam();
    return false;
}

void CloseWebcam() {
    gCaptureDevice.reset();
}

bool GetDriverCaps(CaptureDriverCaps &caps) {
    caps = {};
    return gCaptureDevice != nullptr;
}

bool SaveCaptureFile(std::string_view path, bool isTest) {
    const std::string target = isTest ? App::Path() + "\\testcapture.bmp" : std::string(path);
    const auto outcome = std::make_shared<std::optional<bool>>();
    BeginCapture(target, [outcome](bool isSaved) { *outcome = isSaved; });
    const Tick end = TickAfter(GetTickCount(), 2 * LongestStillMs);
    while (!*outcome && gCaptureDevice && TicksBetween(GetTickCount(), end) > 0) WaitUntilTick(end);
    const bool isSaved = outcome->value_or(false);
    if (!isTest) return isSaved;
    RemoveFile(target);
    if (!isSaved) {
        ShowMessageBox("Device Error! Either your webcam is not supported or is not plugged in.", FlagCritical);
    }
    return isSaved;
}

void TakePreview(std::function<void(const std::string &bitmap)> done) {
    if (gCaptureDevice) {
        gCaptureDevice->TakeStill(std::move(done));
    } else {
        done({});
    }
}

void StartWebcam() {
    if (GetSettingNumber("Setup", "WebCam", 0) != 1) return;
    // Nothing ever writes this key: the device chosen in setup is meant for the test there, the site takes the first.
    if (!OpenWebcam(GetSettingNumber("Setup", "WebCamDevice", 0))) return;
    Timer &timer = gSystray->tmrWebCam;
    UseStill(SaveCaptureFile(App::HtdocsPath("capture.bmp"), false));  // there before the first visitor
    timer.Tag = CaptureInterval();
    timer.SetEnabled(true);
}

void WebcamTick() {
    std::string &countdown = gSystray->tmrWebCam.Tag;
    countdown = std::to_string(CLng(countdown) - 1);
    if (countdown != "0") return;
    countdown = CaptureInterval();
    BeginCapture(App::HtdocsPath("capture.bmp"), UseStill);
}

void StopWebcam() {
    Timer &timer = gSystray->tmrWebCam;
    if (timer.Enabled()) CloseWebcam();
    timer.SetEnabled(false);
}

}  // namespace pixmora
