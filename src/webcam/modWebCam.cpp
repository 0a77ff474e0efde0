// The webcam's device, stills and timer. No capture window stands between the program and its device: the drivers of
// this system need none.
#include "webcam/modWebCam.h"

#include <string>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/frmSystray.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
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

/// @return whether nothing stands at the path
bool RemoveFile(const std::string &path) {
    try {
        if (FileExists(path)) DeleteFile(path);
        return true;
    } catch (const RunTimeError &) {
        return false;  // a file that can't be replaced costs the still, not the website
    }
}

/// Makes the visitors' picture of the device's still. @return false when it can't be read or written
bool ConvertStill() {
    try {
        std::int32_t success = 0;
        gPictureEngine->Load(App::HtdocsPath("capture.bmp"), 0, success);
        if (success == 0) return false;
        gPictureEngine->Resize(gThumbSize, 0, 0, success);
        gPictureEngine->Save(App::HtdocsPath("capture.jpg"), 0, success);
        return success != 0;
    } catch (const RunTimeError &) {
        return false;
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
    const bool isSaved =
        RemoveFile(target) && gCaptureDevice && gCaptureDevice->SaveStill(target) && FileExists(target);
    if (!isTest) return isSaved;
    RemoveFile(target);
    if (!isSaved) {
        ShowMessageBox("Device Error! Either your webcam is not supported or is not plugged in.", FlagCritical);
    }
    return isSaved;
}

void StartWebcam() {
    if (GetSettingNumber("Setup", "WebCam", 0) != 1) return;
    // Nothing ever writes this key: the device chosen in setup is meant for the test there, the site takes the first.
    if (!OpenWebcam(GetSettingNumber("Setup", "WebCamDevice", 0))) return;
    Timer &timer = gSystray->tmrWebCam;
    timer.Tag = "1";
    WebcamTick();
    timer.Tag = CaptureInterval();
    timer.SetEnabled(true);
}

void WebcamTick() {
    std::string &countdown = gSystray->tmrWebCam.Tag;
    countdown = std::to_string(CLng(countdown) - 1);
    if (countdown != "0") return;
    countdown = CaptureInterval();
    if (SaveCaptureFile(App::HtdocsPath("capture.bmp"), false) && ConvertStill()) gLastCaptureTick = GetTickCount();
}

void StopWebcam() {
    Timer &timer = gSystray->tmrWebCam;
    if (timer.Enabled()) CloseWebcam();
    timer.SetEnabled(false);
}

}  // namespace pixmora
