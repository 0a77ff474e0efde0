// The form for the webcam.
#include "setup/frmSetupWebcam.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPixmap>
#include <QSlider>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "setup/FormParts.h"
#include "webcam/modWebCam.h"

namespace pixmora {

using namespace FormParts;

namespace {

constexpr QSize previewSize(320, 240);
constexpr int previewMs = 500;

}  // namespace

WebcamHands DesktopWebcamHands() {
    const auto driverDialogs = []() -> std::optional<WebcamHands::Dialogs> {
        CaptureDriverCaps caps;
        if (!GetDriverCaps(caps)) return std::nullopt;
        return WebcamHands::Dialogs{caps.fHasDlgVideoSource, caps.fHasDlgVideoFormat};
    };
    return {
        .GetDriverDescription = GetDriverDescription,
        .OpenWebcam = OpenWebcam,
        .CloseWebcam = CloseWebcam,
        .GetDriverDialogs = driverDialogs,
        .TestCapture = [] { return SaveCaptureFile("", true); },
        .TakePreview = TakePreview,
    };
}

frmSetupWebcam::frmSetupWebcam(QWidget *parent, WebcamHands hands)
    : SetupWindow("frmSetupWebcam", QStringLiteral("Webcam Setup"), parent),
      editor_(std::move(hands)),
      lblPreview(Label("lblPreview")),
      cboSource(DropDown("cboSource")),
      sldCaptureInterval(Slider("sldCaptureInterval", ShortestCaptureInterval, LongestCaptureInterval)),
      lblCaptureInterval(Label("lblCaptureInterval", QStringLiteral("0m 5s"))),
      cmdDeviceFormat(Button("cmdDeviceFormat", "Format...")),
      cmdDeviceSource(Button("cmdDeviceSource", "Source...")),
      cmdOK(Button("cmdOK", "OK")),
      cmdCancel(Button("cmdCancel", "Cancel")) {
    cboSource->setAccessibleName(QStringLiteral("Capture Source"));
    cboSource->setMinimumWidth(260);
    sldCaptureInterval->setAccessibleName(QStringLiteral("Capture Interval"));
    sldCaptureInterval->setPageStep(12);
    lblCaptureInterval->setMinimumWidth(lblCaptureInterval->fontMetrics().horizontalAdvance(QStringLiteral("10m 55s")));
    lblPreview->setAccessibleName(QStringLiteral("What the camera sees"));
    lblPreview->setAlignment(Qt::AlignCenter);
    lblPreview->setFixedSize(previewSize);
    tmrPreview.SetInterval(previewMs);
    tmrPreview.OnTimer = [this] {
        tmrPreview.SetEnabled(false);
        editor_.TakePreview([this](const std::string &bitmap) { ShowPreview(bitmap); });
    };
    auto *devices = new QHBoxLayout;
    devices->addWidget(cmdDeviceFormat);
    devices->addWidget(cmdDeviceSource);
    devices->addStretch();
    auto *source = new QVBoxLayout;
    source->addWidget(cboSource);
    source->addLayout(devices);
    source->addWidget(lblPreview, 0, Qt::AlignCenter);
    Contents()->addWidget(Captioned("SContainer1", "Capture Source", source, Help("lblHelpSource")));
    auto *interval = new QHBoxLayout;
    interval->addWidget(sldCaptureInterval, 1);
    interval->addWidget(lblCaptureInterval);
    Contents()->addWidget(Captioned("SContainer2", "Capture Interval", interval, Help("lblHelpInterval")));
    Contents()->addStretch();
    Contents()->addLayout(ButtonRow({cmdOK, cmdCancel}));
    cmdDeviceFormat->setEnabled(false);
    cmdDeviceSource->setEnabled(false);
    ConnectControls();
    cmdOK->setDefault(true);
    FinishLayout();
}

frmSetupWebcam::~frmSetupWebcam() {
    editor_.Close();
}

void frmSetupWebcam::ConnectControls() {
    connect(sldCaptureInterval, &QSlider::valueChanged, this, [this] { ShowInterval(); });
    sldCaptureInterval->setValue(WebcamEditor::CaptureInterval());
    ShowInterval();
    for (const std::string &source : editor_.Sources()) cboSource->addItem(ToQt(source));
    cboSource->setCurrentIndex(-1);
    connect(cboSource, &QComboBox::currentIndexChanged, this, [this] { RunEventHandler([this] { ClickSource(); }); });
    cboSource->setCurrentIndex(WebcamEditor::FirstSource(cboSource->count()));
    OnClick(cmdOK, [this] { Accept(); });
    OnClick(cmdCancel, [this] { CloseByOwner(); });
}

void frmSetupWebcam::ShowInterval() {
    lblCaptureInterval->setText(ToQt(WebcamEditor::IntervalText(sldCaptureInterval->value())));
}

void frmSetupWebcam::ClickSource() {
    const WebcamHands::Dialogs dialogs = editor_.ChooseSource(cboSource->currentIndex());
    cmdDeviceSource->setEnabled(dialogs.Source);
    cmdDeviceFormat->setEnabled(dialogs.Format);
    lblPreview->clear();
    tmrPreview.OnTimer();
}

void frmSetupWebcam::ShowPreview(const std::string &bitmap) {
    const QPixmap picture = QPixmap::fromImage(
        QImage::fromData(reinterpret_cast<const uchar *>(bitmap.data()), static_cast<int>(bitmap.size())));
    if (picture.isNull()) {
        lblPreview->setText(QStringLiteral("The camera gives no picture."));
    } else {
        const qreal scale = devicePixelRatioF();
        QPixmap fitted = picture.scaled(lblPreview->size() * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        fitted.setDevicePixelRatio(scale);
        lblPreview->setPixmap(fitted);
    }
    tmrPreview.SetEnabled(true);
}

void frmSetupWebcam::Accept() {
    tmrPreview.SetEnabled(false);
    setEnabled(false);  // the test lets other clicks through
    isUsable_ =
        editor_.Accept(sldCaptureInterval->value(), cboSource->currentIndex(), FromQt(cboSource->currentText()));
    done(Accepted);
}

}  // namespace pixmora
