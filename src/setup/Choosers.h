// The choosers of folders and files.
#pragma once

#include <QUrl>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace pixmora {

/// What the album editor lets the owner choose with; tests answer in their place.
struct Choosers {
    /// The chosen folder, none when the owner cancels. A folder that isn't on the disk has an address of its own kind.
    std::function<std::optional<QUrl>(QWidget *over, const std::string &start)> ChooseFolder;
    /// The chosen file's path, empty when the owner cancels.
    std::function<std::string(QWidget *over, const std::string &start)> ChoosePicture;
};

/// The desktop's own.
Choosers DesktopChoosers();

/// The owner's folders of pictures and documents, in the system's form.
std::string MyPictures();
std::string MyDocuments();

}  // namespace pixmora
