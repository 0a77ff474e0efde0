// The form for the webcam.
#pragma once

#include "platform/loop/MessageLoop.h"
#include "setup/SetupWindow.h"
#include "setup/rules/WebcamEditor.h"

class QComboBox;
class QLabel;
class QSlider;

namespace pixmora {

class SkinButton;

/// The webcam's own operations.
WebcamHands DesktopWebcamHands();

/// Source and interval; modal. The device is given up when the form goes.
class frmSetupWebcam : public SetupWindow {
public:
    explicit frmSetupWebcam(QWidget *parent, WebcamHands hands = DesktopWebcamHands());
    ~frmSetupWebcam() override;

    /// Whether the OK of the owner found the webcam usable; true for Cancel, which changes nothing.
    bool IsWebcamUsable() const { return isUsable_; }

protected:
    void CloseByOwner() override { done(Rejected); }

private:
    void ConnectControls();
    void ShowInterval();
    void ClickSource();
    void ShowPreview(const std::string &bitmap);
    void Accept();

    WebcamEditor editor_;
    bool isUsable_ = true;
    Timer tmrPreview;  ///< from one preview's end to the next one
    QLabel *lblPreview;
    QComboBox *cboSource;
    QSlider *sldCaptureInterval;
    QLabel *lblCaptureInterval;
    SkinButton *cmdDeviceFormat;
    SkinButton *cmdDeviceSource;
    SkinButton *cmdOK;
    SkinButton *cmdCancel;
};

}  // namespace pixmora
