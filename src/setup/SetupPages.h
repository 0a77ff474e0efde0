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
#include <vector>

#include "setup/FormParts.h"
#include "setup/PageFrame.h"

namespace pixmora {

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

    QTreeWidget *lstAlbums =
        FormParts::ListView("lstAlbums", {"Album Name", "Path"}, 10,
                            "There are no albums yet. Click Create Album... to share a directory.");
    SkinButton *cmdAlbumAdd = FormParts::Button("cmdAlbumAdd", "Create Album...");
};

/// With links to the pages of the central service.
struct ServicePage : PageFrame {
    /// Without a service, whose base is empty, the links are words like the others.
    void SetService(const std::string &base);

protected:
    LinkLabel *ServiceLink(const char *name, const char *caption, const char *page);

private:
    std::vector<LinkLabel *> links_;
    std::string base_;
};

struct FirewallPage : ServicePage {
    FirewallPage();

    QLabel *lblPublicIP = FormParts::Label("lblPublicIP", QStringLiteral("..."));
    QLabel *lblPrivateIP = FormParts::Label("lblPrivateIP");
    SkinButton *cmdCheckFirewall = FormParts::Button("cmdCheckFirewall", "Run Test");
    QCheckBox *chkPortMapping = FormParts::CheckBox("chkPortMapping", "Ask the router to open the port");

private:
    QLayout *MakeAdvice();
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
    QCheckBox *chkMoreTypes = FormParts::CheckBox("chkMoreTypes", "Show what today's phones and cameras make, too");
    QCheckBox *chkShowPlaces = FormParts::CheckBox("chkShowPlaces", "Link photographs to a map of their place");
    QComboBox *cboBrowserCache = FormParts::DropDown("cboBrowserCache", true);
    QButtonGroup *optDirSortMethod = new QButtonGroup(this);
    SkinButton *cmdSetDirOrder = FormParts::Button("cmdSetDirOrder", "Set...");
    QButtonGroup *optDirSortOrder = new QButtonGroup(this);
    QCheckBox *chkWebcam = FormParts::CheckBox("chkWebcam", "Enabled");
    SkinButton *cmdSetupWebCam = FormParts::Button("cmdSetupWebCam", "Setup...");

private:
    SContainer *MakePictureBox();
    SContainer *MakeSortBox();
    SContainer *MakeVisitorBox();
};

struct OnlinePage : PageFrame {
    OnlinePage();

    QLineEdit *txtServiceBase = FormParts::TextBox("txtServiceBase");
    QLineEdit *txtAccountName = FormParts::TextBox("txtAccountName");
    QCheckBox *chkListOnline = FormParts::CheckBox("chkListOnline", "List Website Online");
    QLineEdit *txtPublicAddress = FormParts::TextBox("txtPublicAddress");

private:
    void ShowAddresses();

    LinkLabel *lblURLOnlineList;
    LinkLabel *lblURLRedirecting;
};

struct AccessPage : PageFrame {
    AccessPage();

    QTreeWidget *lvwRestricted =
        FormParts::ListView("lvwRestricted", {"Share", "Directory", "Username"}, 12, "No directory is protected.");
    SkinButton *cmdSetupRestricted = FormParts::Button("cmdSetupRestricted", "Setup...");
};

struct PortPage : ServicePage {
    PortPage();

    QComboBox *cboListenPort = FormParts::DropDown("cboListenPort", true);
    SkinButton *cmdPortCheck = FormParts::Button("cmdPortCheck", "Check Port");
};

}  // namespace pixmora
