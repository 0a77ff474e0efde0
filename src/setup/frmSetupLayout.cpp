// frmSetup.h: the setup dialog: figures of the sliders, files on a page, the order of directories, the webcam.
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>

#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "platform/runtime/Numbers.h"
#include "setup/ControlText.h"
#include "setup/frmSetup.h"
#include "setup/frmSetupDirOrder.h"
#include "setup/frmSetupWebcam.h"

namespace pixmora {

namespace {

constexpr int customOrder = 2;
constexpr int mostFilesPerRow = 10;

}  // namespace

void frmSetup::ConnectLayout() {
    auto *cboFilesPerRow = Find<QComboBox>("cboFilesPerRow");
    for (int files = 1; files <= mostFilesPerRow; ++files) cboFilesPerRow->addItem(QString::number(files));
    connect(cboFilesPerRow, &QComboBox::currentTextChanged, this,
            [this] { RunEventHandler([this] { ChooseFilesPerRow(); }); });
    ChooseFilesPerRow();
    for (const char *name : {"sldImageSize", "sldImageQuality"}) {
        connect(Find<QSlider>(name), &QSlider::valueChanged, this, [this] { ShowFigures(); });
    }
    ShowFigures();
    connect(Find<QButtonGroup>("optDirSortMethod"), &QButtonGroup::idToggled, this, [this](int, bool isOn) {
        if (isOn) RunEventHandler([this] { ChooseSortMethod(); });
    });
    OnClick(Find<SkinButton>("cmdSetDirOrder"), [this] { SetDirOrder(); });
    auto *chkWebcam = Find<QCheckBox>("chkWebcam");
    OnClick(chkWebcam, [this, chkWebcam] {
        if (chkWebcam->isChecked()) SetUpWebcam();
    });
    OnClick(Find<SkinButton>("cmdSetupWebCam"), [this] { SetUpWebcam(); });
}

void frmSetup::ShowFigures() {
    const int size = Find<QSlider>("sldImageSize")->value();
    const int quality = Find<QSlider>("sldImageQuality")->value();
    const std::pair<const char *, std::string> figures[] = {
        {"lblThumbSize", SizeText(size, ThumbPixels)},
        {"lblPreviewSize", SizeText(size, PreviewPixels)},
        {"lblSlideshowSize", SizeText(size, SlideshowPixels)},
        {"lblThumbQuality", QualityText(quality, ThumbQualitySteps)},
        {"lblPreviewQuality", QualityText(quality, PreviewQualitySteps)},
        {"lblSlideshowQuality", QualityText(quality, SlideshowQualitySteps)},
    };
    for (const auto &[name, text] : figures) Find<QLabel>(name)->setText(ToQt(text));
}

void frmSetup::ChooseFilesPerRow() {
    auto *cboFilesPerRow = Find<QComboBox>("cboFilesPerRow");
    const std::string text = FromQt(cboFilesPerRow->currentText());
    if (const std::string number = NumericText(text); number != text) {
        SetControlText(*cboFilesPerRow, number);  // comes back here
        return;
    }
    const int filesPerRow = static_cast<int>(Val(text));
    auto *cboFilesPerPage = Find<QComboBox>("cboFilesPerPage");
    cboFilesPerPage->clear();
    for (const std::string &choice : FilesPerPageChoices(filesPerRow)) cboFilesPerPage->addItem(ToQt(choice));
    cboFilesPerPage->setCurrentText(ToQt(FilesPerPageAtFirst(filesPerRow)));
}

void frmSetup::ChooseSortMethod() {
    const int method = Find<QButtonGroup>("optDirSortMethod")->checkedId();
    for (QAbstractButton *option : Find<QButtonGroup>("optDirSortOrder")->buttons()) {
        option->setEnabled(method != customOrder);
    }
    if (method == customOrder && isVisible() && !HasDirectoryOrder()) SetDirOrder();
}

void frmSetup::SetDirOrder() {
    if (!HasAlbumFor("set the directory order")) return;
    frmSetupDirOrder form(this);
    form.exec();
    auto *methods = Find<QButtonGroup>("optDirSortMethod");
    if (methods->checkedId() == customOrder) return;  // its click would ask for an order again
    const QSignalBlocker quiet(methods);
    SetControlText(*Find<QObject>("optDirSortMethod"), std::to_string(customOrder));
    for (QAbstractButton *option : Find<QButtonGroup>("optDirSortOrder")->buttons()) option->setEnabled(false);
    settingsChanged_ = true;
}

void frmSetup::SetUpWebcam() {
    const WebcamHands hands = surroundings_.Webcam();
    auto *chkWebcam = Find<QCheckBox>("chkWebcam");
    if (!WebcamEditor(hands).Enter()) {
        chkWebcam->setChecked(false);
        return;
    }
    frmSetupWebcam form(this, hands);
    form.exec();
    if (!form.IsWebcamUsable()) chkWebcam->setChecked(false);
}

}  // namespace pixmora
