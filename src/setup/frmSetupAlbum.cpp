// The album editor's form.
#include "setup/frmSetupAlbum.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/FormParts.h"
#include "setup/PageFrame.h"
#include "setup/rules/HelpTexts.h"
#include "store/MediaTypes.h"

namespace pixmora {

using namespace FormParts;

namespace {

/// "Share Pictures (jpg, gif, bmp)", as the setting stands now.
std::string ShareCaption(std::string_view kind, std::string_view (*patterns)()) {
    LoadMediaTypes();
    return Concat("Share ", kind, " (", EndingsText(patterns()), ")");
}

}  // namespace

frmSetupAlbum::frmSetupAlbum(QWidget *parent, const std::optional<std::string> &editAlbumName, Choosers choosers)
    : SetupWindow("frmSetupAlbum", editAlbumName ? QStringLiteral("Edit Album") : QStringLiteral("Create Album"),
                  parent),
      editor_(editAlbumName ? AlbumEditor(*editAlbumName) : AlbumEditor()),
      choosers_(std::move(choosers)),
      txtAlbumName(TextBox("txtAlbumName")),
      txtAlbumPath(TextBox("txtAlbumPath")),
      cmdAlbumChangeDir(Button("cmdAlbumChangeDir", "Browse...")),
      txtDescription(TextBox("txtDescription")),
      chkAlbumSubDirs(CheckBox("chkAlbumSubDirs", "Include Subdirectories")),
      chkAlbumPictures(CheckBox("chkAlbumPictures", ShareCaption("Pictures", PicturePatterns).c_str())),
      chkAlbumMovies(CheckBox("chkAlbumMovies", ShareCaption("Movies", MoviePatterns).c_str())),
      optFeaturedImageNone(Option(QStringLiteral("optFeaturedImageNone"), "No Image")),
      optFeaturedImageRandom(Option(QStringLiteral("optFeaturedImageRandom"), "Random Image From Album")),
      optFeaturedImageSpecified(Option(QStringLiteral("optFeaturedImageSpecified"), "Specified Image:")),
      txtFeaturedImagePath(TextBox("txtFeaturedImagePath")),
      cmdBrowseFeaturedImage(Button("cmdBrowseFeaturedImage", "Browse...")),
      cmdOK(Button("cmdOK", "OK")),
      cmdCancel(Button("cmdCancel", "Cancel")),
      cmdDelete(Button("cmdDelete", "Delete")) {
    auto *rows = new QVBoxLayout;
    rows->setSpacing(14);
    rows->addLayout(MakeNameRows());
    rows->addLayout(MakeShareRows());
    rows->addLayout(MakeFeaturedRows());
    rows->addStretch();
    auto *frame = new PageFrame(0);
    frame->AddTall(Captioned("SContainer1", editAlbumName ? "Edit Album" : "Create Album", rows));
    Contents()->addWidget(frame, 1);
    Contents()->addLayout(ButtonRow({cmdOK, cmdCancel, cmdDelete}));
    ConnectControls();
    Load(editor_.Load());
    cmdDelete->setEnabled(editAlbumName.has_value());
    cmdOK->setDefault(true);
    FinishLayout();
    txtAlbumName->setFocus();
}

QLayout *frmSetupAlbum::MakeNameRows() {
    txtAlbumPath->setReadOnly(true);
    txtAlbumPath->setToolTip(QStringLiteral("Click to choose a directory"));
    cmdAlbumChangeDir->setAccessibleDescription(QStringLiteral("Chooses the album's directory"));
    auto *rows = new QVBoxLayout;
    rows->setSpacing(4);
    rows->addWidget(
        Note("Give your album a name and description, and the directory containing the pictures and movies you want "
             "to share."));
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(4);
    AddRow(*grid, "Name:", txtAlbumName);
    AddRow(*grid, "Directory:", txtAlbumPath);
    grid->addWidget(cmdAlbumChangeDir, grid->rowCount() - 1, 2);
    AddRow(*grid, "Description:", txtDescription);
    grid->setColumnMinimumWidth(1, 300);
    rows->addLayout(grid);
    rows->addWidget(Link("lblHelpAlbum", QStringLiteral("Click for Tip"), "Shows a recommendation about albums",
                         [] { ShowHelpOf("lblHelpAlbum"); }),
                    0, Qt::AlignRight);
    return rows;
}

QLayout *frmSetupAlbum::MakeShareRows() {
    auto *rows = new QVBoxLayout;
    rows->setSpacing(4);
    rows->addWidget(Note("Choose whether to share subdirectories of this album."));
    for (QCheckBox *box : {chkAlbumSubDirs, chkAlbumPictures, chkAlbumMovies}) rows->addWidget(box);
    return rows;
}

QLayout *frmSetupAlbum::MakeFeaturedRows() {
    txtFeaturedImagePath->setReadOnly(true);
    txtFeaturedImagePath->setAccessibleName(QStringLiteral("Path of the specified image"));
    cmdBrowseFeaturedImage->setAccessibleDescription(QStringLiteral("Chooses the featured image"));
    auto *rows = new QVBoxLayout;
    rows->setSpacing(4);
    rows->addWidget(
        Note("On the front page of your site where each of your albums is listed, you may choose to have an image "
             "represent your album. This is very much like an icon for your album."));
    auto *group = new QLabel(QStringLiteral("Featured Image:"));
    rows->addWidget(group);
    for (QRadioButton *option : {optFeaturedImageNone, optFeaturedImageRandom, optFeaturedImageSpecified}) {
        option->setAccessibleDescription(group->text());
    }
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(4);
    grid->addWidget(optFeaturedImageNone, 0, 0, 1, 3);
    grid->addWidget(optFeaturedImageRandom, 1, 0, 1, 3);
    grid->addWidget(optFeaturedImageSpecified, 2, 0);
    grid->addWidget(txtFeaturedImagePath, 2, 1);
    grid->addWidget(cmdBrowseFeaturedImage, 2, 2);
    grid->setColumnStretch(1, 1);
    rows->addLayout(grid);
    return rows;
}

void frmSetupAlbum::ConnectControls() {
    txtAlbumName->installEventFilter(this);
    txtAlbumPath->installEventFilter(this);
    OnClick(cmdAlbumChangeDir, [this] { ChangeDirectory(); });
    OnClick(optFeaturedImageSpecified, [this] {
        if (txtFeaturedImagePath->text().isEmpty()) BrowseFeaturedImage();
    });
    OnClick(cmdBrowseFeaturedImage, [this] { BrowseFeaturedImage(); });
    OnClick(cmdOK, [this] { Accept(); });
    OnClick(cmdCancel, [this] { CloseByOwner(); });
    OnClick(cmdDelete, [this] { Delete(); });
}

void frmSetupAlbum::SetDirectory(const std::string &path) {
    txtAlbumPath->setText(ToQt(path));
}

void frmSetupAlbum::Load(const AlbumFields &fields) {
    txtAlbumName->setText(ToQt(fields.Name));
    SetDirectory(fields.Directory);
    txtDescription->setText(ToQt(fields.Description));
    chkAlbumSubDirs->setChecked(fields.SubDirs);
    chkAlbumPictures->setChecked(fields.Pictures);
    chkAlbumMovies->setChecked(fields.Movies);
    optFeaturedImageNone->setChecked(fields.FeaturedImage == 0);
    optFeaturedImageRandom->setChecked(fields.FeaturedImage == 1);
    optFeaturedImageSpecified->setChecked(fields.FeaturedImage == 2);
    txtFeaturedImagePath->setText(ToQt(fields.FeaturedImagePath));
}

AlbumFields frmSetupAlbum::Fields() const {
    return {.Name = FromQt(txtAlbumName->text()),
            .Directory = FromQt(txtAlbumPath->text()),
            .Description = FromQt(txtDescription->text()),
            .SubDirs = chkAlbumSubDirs->isChecked(),
            .Pictures = chkAlbumPictures->isChecked(),
            .Movies = chkAlbumMovies->isChecked(),
            .FeaturedImage = optFeaturedImageNone->isChecked()     ? 0
                             : optFeaturedImageRandom->isChecked() ? 1
                                                                   : 2,
            .FeaturedImagePath = FromQt(txtFeaturedImagePath->text())};
}

bool frmSetupAlbum::eventFilter(QObject *watched, QEvent *event) {
    if (watched == txtAlbumName && event->type() == QEvent::KeyRelease) {
        RunEventHandler([this] { RefuseBadCharacter(); });
    } else if (watched == txtAlbumPath && event->type() == QEvent::MouseButtonRelease) {
        RunEventHandler([this] {
            if (!PathExists(FromQt(txtAlbumPath->text()))) ChangeDirectory();
        });
    }
    return SetupWindow::eventFilter(watched, event);
}

void frmSetupAlbum::RefuseBadCharacter() {
    if (!HasBadFileChars(FromQt(txtAlbumName->text()))) return;
    ShowMessageBox(BadNameMessage("Album name"), FlagCritical);
    txtAlbumName->backspace();
}

void frmSetupAlbum::GetFolderName() {
    const std::string start = ChooserStart(FromQt(txtAlbumPath->text()), MyPictures(), MyDocuments());
    const std::optional<QUrl> chosen = choosers_.ChooseFolder(this, start);
    if (!chosen) return;
    if (chosen->isLocalFile() && !chosen->toLocalFile().isEmpty()) {
        txtAlbumPath->setText(chosen->toLocalFile());
    } else {
        ShowMessageBox("Invalid directory to share!\r\n\r\nPlease choose a folder on your harddrive to share.",
                       FlagCritical);
    }
}

void frmSetupAlbum::ChangeDirectory() {
    for (;;) {
        GetFolderName();
        if (!IsDriveRoot(FromQt(txtAlbumPath->text()))) return;
        if (Asks(DriveRootQuestion)) continue;
        txtAlbumPath->clear();
        return;
    }
}

void frmSetupAlbum::BrowseFeaturedImage() {
    const std::string chosen = choosers_.ChoosePicture(this, FromQt(txtAlbumPath->text()));
    if (chosen.empty()) {
        if (txtFeaturedImagePath->text().isEmpty()) optFeaturedImageRandom->setChecked(true);
        return;
    }
    try {
        txtFeaturedImagePath->setText(ToQt(OfferSmallCopy(chosen)));
        optFeaturedImageSpecified->setChecked(true);
    } catch (const RunTimeError &) {
        ShowMessageBox("This file cannot be used as a picture! Please choose another one.", FlagCritical);
        if (txtFeaturedImagePath->text().isEmpty()) optFeaturedImageRandom->setChecked(true);
    }
}

void frmSetupAlbum::Mend(AlbumEditor::Field field) {
    switch (field) {
        case AlbumEditor::Field::Name:
            txtAlbumName->setFocus();
            break;
        case AlbumEditor::Field::Directory:
            ChangeDirectory();
            break;
        case AlbumEditor::Field::Pictures:
            chkAlbumPictures->setFocus();
            break;
    }
}

void frmSetupAlbum::Accept() {
    const AlbumFields fields = Fields();
    if (const auto refusal = AlbumEditor::Validate(fields)) {
        ShowMessageBox(refusal->Message, FlagCritical);
        Mend(refusal->Where);
        return;
    }
    if (editor_.TellIfGone()) return End(AlbumOutcome::Kind::Deleted);
    setCursor(Qt::WaitCursor);
    outcome_ = {AlbumOutcome::Kind::Saved, editor_.Save(fields)};
    unsetCursor();
    done(Accepted);
}

void frmSetupAlbum::End(AlbumOutcome::Kind what) {
    outcome_.What = what;
    done(Accepted);
}

void frmSetupAlbum::Delete() {
    if (!editor_.OfferToDelete()) return;
    End(AlbumOutcome::Kind::Deleted);
}

}  // namespace pixmora
