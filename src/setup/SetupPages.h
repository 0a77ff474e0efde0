// The tabs of the setup dialog, as they are built; what they do is the dialog's.
#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTreeWidget>
#include <string>

#include "setup/FormParts.h"
#include "setup/PageFrame.h"

namespace pixmora {

/// The central service as the tabs speak of it.
struct ServiceFacts {
    std::string Base;         ///< "http://host", empty for none
    std::string Redirecting;  ///< the site's address there, empty for none
};

// Each a frame that scrolls where the screen is too small for it, with its controls as members.

struct IntroductionPage : PageFrame {
    IntroductionPage();
};

struct GeneralPage : PageFrame {
    GeneralPage();

    QLineEdit *txtServerTitle = FormParts::TextBox("txtServerTitle");
    QLineEdit *txtAuthor = FormParts::TextBox("txtAuthor");
    QLineEdit *txtDesc = FormParts::TextBox("txtDesc");
    QComboBox *cboStyle = FormParts::DropDown("cboStyle");
    QPlainTextEdit *txtWelcome = FormParts::TextArea("txtWelcome", 5);
    QCheckBox *chkRunOnStart =
        FormParts::CheckBox("chkRunOnStart", "Run Pixmora! when Windows loads and start website automatically.");
};

struct AlbumsPage : PageFrame {
    AlbumsPage();

    QTreeWidget *lstAlbums = FormParts::ListView("lstAlbums", {"Album Name", "Path"}, 10);
    SkinButton *cmdAlbumAdd = FormParts::Button("cmdAlbumAdd", "Create Album...");
};

struct FirewallPage : PageFrame {
    explicit FirewallPage(const ServiceFacts &service);

    QLabel *lblPublicIP = FormParts::Label("lblPublicIP", QStringLiteral("..."));
    QLabel *lblPrivateIP = FormParts::Label("lblPrivateIP");
    SkinButton *cmdCheckFirewall = FormParts::Button("cmdCheckFirewall", "Run Test");
};

struct LayoutPage : PageFrame {
    LayoutPage();

    QComboBox *cboFilesPerRow = FormParts::DropDown("cboFilesPerRow");
    QComboBox *cboFilesPerPage = FormParts::DropDown("cboFilesPerPage");
    QSlider *sldImageSize = FormParts::Slider("sldImageSize", 1, 5);
    QLabel *lblThumbSize = FormParts::Label("lblThumbSize");
    QLabel *lblPreviewSize = FormParts::Label("lblPreviewSize");
    QLabel *lblSlideshowSize = FormParts::Label("lblSlideshowSize");
    QSlider *sldImageQuality = FormParts::Slider("sldImageQuality", 1, 5);
    QLabel *lblThumbQuality = FormParts::Label("lblThumbQuality");
    QLabel *lblPreviewQuality = FormParts::Label("lblPreviewQuality");
    QLabel *lblSlideshowQuality = FormParts::Label("lblSlideshowQuality");
    QButtonGroup *optDirSortMethod = new QButtonGroup(this);
    SkinButton *cmdSetDirOrder = FormParts::Button("cmdSetDirOrder", "Set...");
    QButtonGroup *optDirSortOrder = new QButtonGroup(this);
    QCheckBox *chkWebcam = FormParts::CheckBox("chkWebcam", "Enabled");
    SkinButton *cmdSetupWebCam = FormParts::Button("cmdSetupWebCam", "Setup...");

private:
    SContainer *MakePictureBox();
    SContainer *MakeSortBox();
};

struct OnlinePage : PageFrame {
    explicit OnlinePage(const ServiceFacts &service);

    QCheckBox *chkListOnline = FormParts::CheckBox("chkListOnline", "List Website Online");
};

struct AccessPage : PageFrame {
    AccessPage();

    QTreeWidget *lvwRestricted = FormParts::ListView("lvwRestricted", {"Share", "Directory", "Username"}, 12);
    SkinButton *cmdSetupRestricted = FormParts::Button("cmdSetupRestricted", "Setup...");
};

struct PortPage : PageFrame {
    explicit PortPage(const ServiceFacts &service);

    QComboBox *cboListenPort = FormParts::DropDown("cboListenPort", true);
    SkinButton *cmdPortCheck = FormParts::Button("cmdPortCheck", "Check Port");
};

}  // namespace pixmora
