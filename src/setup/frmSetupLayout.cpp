// frmSetup.h: the setup dialog: figures of the sliders, files on a page, the order of directories, the webcam.
#include <QRadioButton>

#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "platform/runtime/Numbers.h"
#include "setup/ControlText.h"
#include "setup/SetupPages.h"
#include "setup/frmSetup.h"
#include "setup/frmSetupDirOrder.h"
#include "setup/frmSetupWebcam.h"

namespace pixmora {

namespace {

constexpr int customOrder = 2;
constexpr int mostFilesPerRow = 10;

}  // namespace

void frmSetup::ConnectLayout() {
    for (int files = 1; files <= mostFilesPerRow; ++files) layout_->cboFilesPerRow->addItem(QString::number(files));
    connect(layout_->cboFilesPerRow, &QComboBox::currentTextChanged, this,
            [this] { RunEventHandler([this] { ChooseFilesPerRow(); }); });
    ChooseFilesPerRow();
    layout_->cboBrowserCache->addItems({QLatin1String(CacheOff), "10", "60", "240", "1440"});
    for (QSlider *slider : {layout_->sldImageSize, layout_->sldImageQuality}) {
        connect(slider, &QSlider::valueChanged, this, [this] { ShowFigures(); });
    }
    ShowFigures();
    connect(layout_->optDirSortMethod, &QButtonGroup::idToggled, this, [this](int, bool isOn) {
        if (isOn) RunEventHandler([this] { ChooseSortMethod(); });
    });
    OnClick(layout_->cmdSetDirOrder, [this] { SetDirOrder(); });
    OnClick(layout_->chkWebcam, [this] {
        if (layout_->chkWebcam->isChecked()) SetUpWebcam();
    });
    OnClick(layout_->cmdSetupWebCam, [this] { SetUpWebcam(); });
}

void frmSetup::ShowFigures() {
    const int size = layout_->sldImageSize->value();
    layout_->lblThumbSize->setText(ToQt(SizeText(size, ThumbPixels)));
    layout_->lblPreviewSize->setText(ToQt(SizeText(size, PreviewPixels)));
    layout_->lblSlideshowSize->setText(ToQt(SizeText(size, SlideshowPixels)));
    const int quality = layout_->sldImageQuality->value();
    layout_->lblThumbQuality->setText(ToQt(QualityText(quality, ThumbQualitySteps)));
    layout_->lblPreviewQuality->setText(ToQt(QualityText(quality, PreviewQualitySteps)));
    layout_->lblSlideshowQuality->setText(ToQt(QualityText(quality, SlideshowQualitySteps)));
}

void frmSetup::ChooseFilesPerRow() {
    const std::string text = FromQt(layout_->cboFilesPerRow->currentText());
    if (const std::string number = NumericText(text); number != text) {
        SetControlText(*layout_->cboFilesPerRow, number);  // comes back here
        return;
    }
    const int filesPerRow = static_cast<int>(Val(text));
    layout_->cboFilesPerPage->clear();
    for (const std::string &choice : FilesPerPageChoices(filesPerRow)) layout_->cboFilesPerPage->addItem(ToQt(choice));
    layout_->cboFilesPerPage->setCurrentText(ToQt(FilesPerPageAtFirst(filesPerRow)));
}

void frmSetup::ChooseSortMethod() {
    const int method = layout_->optDirSortMethod->checkedId();
    for (QAbstractButton *option : layout_->optDirSortOrder->buttons()) {
        option->setEnabled(method != customOrder);
    }
    if (method == customOrder && isVisible() && !HasDirectoryOrder()) SetDirOrder();
}

void frmSetup::SetDirOrder() {
    if (!HasAlbumFor("set the directory order")) return;
    frmSetupDirOrder form(this);
    form.exec();
    if (layout_->optDirSortMethod->checkedId() == customOrder) return;
    const QSignalBlocker quiet(layout_->optDirSortMethod);  // its click would ask for an order again
    layout_->optDirSortMethod->button(customOrder)->setChecked(true);
    for (QAbstractButton *option : layout_->optDirSortOrder->buttons()) option->setEnabled(false);
    settingsChanged_ = true;
}

void frmSetup::SetUpWebcam() {
    const WebcamHands hands = surroundings_.Webcam();
    if (!WebcamEditor(hands).Enter()) {
        layout_->chkWebcam->setChecked(false);
        return;
    }
    frmSetupWebcam form(this, hands);
    form.exec();
    if (!form.IsWebcamUsable()) layout_->chkWebcam->setChecked(false);
}

}  // namespace pixmora
