// The choosers of folders and files.
#include "setup/Choosers.h"

#include <QFileDialog>
#include <QStandardPaths>

#include "console/Texts.h"
#include "platform/runtime/Text.h"
#include "store/MediaTypes.h"

namespace pixmora {

namespace {

std::optional<QUrl> ChooseFolder(QWidget *over, const std::string &start) {
    QFileDialog dialog(over, QStringLiteral("Choose a directory to share."), ToQt(start));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty()) return std::nullopt;
    return dialog.selectedUrls().first();
}

std::string ChoosePicture(QWidget *over, const std::string &start) {
    QFileDialog dialog(over, QStringLiteral("Select a featured image for this album."), ToQt(start));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(QStringLiteral("jpg"));
    // What is in the last brackets is the filter itself and doesn't show.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    LoadMediaTypes();
    const std::string patterns(PicturePatterns());
    const QStringList filters = {ToQt("All Pictures (" + patterns + ") (" + Replace(patterns, ";", " ") + ")"),
                                 QStringLiteral("JPEG Images (*.jpg) (*.jpg)"),
                                 QStringLiteral("GIF Images (*.gif) (*.gif)"),
                                 QStringLiteral("Bitmaps (*.bmp) (*.bmp)"), QStringLiteral("All Files (*.*) (*)")};
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters[1]);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return FromQt(dialog.selectedFiles().first());
}

}  // namespace

Choosers DesktopChoosers() {
    return {ChooseFolder, ChoosePicture};
}

std::string MyPictures() {
    return FromQt(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
}

std::string MyDocuments() {
    return FromQt(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

}  // namespace pixmora
