// The setup dialog, which is also the wizard of the first run.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "console/SetupForms.h"
#include "platform/loop/MessageLoop.h"
#include "setup/Choosers.h"
#include "setup/SetupWindow.h"
#include "setup/frmSetupAlbum.h"
#include "setup/rules/AccessEditor.h"
#include "setup/rules/PortCheck.h"
#include "setup/rules/SetupDialog.h"
#include "setup/rules/WebcamEditor.h"

class QLabel;
class QTabWidget;
class QTreeWidgetItem;

namespace pixmora {

class SkinButton;
struct AccessPage;
struct AlbumsPage;
struct FirewallPage;
struct GeneralPage;
struct LayoutPage;
struct OnlinePage;
struct PortPage;

/// What the dialog needs of the world around it; tests put their own in its place.
struct SetupSurroundings {
    pixmora::Choosers Choosers = DesktopChoosers();
    std::function<bool()> IsConnectedToInternet;
    std::function<WebcamHands()> Webcam;
    std::string Program;              ///< full path of what starts with the session
    std::string ProposedPort = "80";  ///< where none is stored
};
SetupSurroundings DesktopSurroundings();

/// Holds everything in its controls until Finish, but for what its sub-dialogs and checks write themselves. Made anew
/// for each showing.
class frmSetup : public SetupWindow {
public:
    explicit frmSetup(const SetupOpening &opening, SetupSurroundings surroundings = DesktopSurroundings());
    ~frmSetup() override;

    /// Modal.
    void Run();

    /// Wide enough for all tabs side by side.
    QSize sizeHint() const override;

protected:
    void CloseByOwner() override { ClickCancel(); }

private:
    // frmSetup.cpp: opening, wizard, end
    void MakeTabs();
    QLayout *MakeButtons();
    void ConnectWizard();
    void Load();
    /// A control that holds one of the values that Finish saves.
    struct BoundControl {
        QObject *Control;
        std::string SetupFields::*Value;
    };
    std::vector<BoundControl> BoundControls() const;
    SetupFields Fields() const;
    void GoTo(SetupTab tab);
    SetupTab CurrentTab() const;
    void ChangeTab();
    void FocusFirstField();
    void ClickFinish();
    void ClickCancel();
    void Unload();

    // frmSetupLists.cpp: albums, rights, and the dialogs behind them
    void ConnectLists();
    void FillAlbums();
    QTreeWidgetItem *AddAlbumRow(const std::string &name, const std::string &directory);
    void RemoveAlbumRows(const QString &name);
    void FillRestricted();
    int CountAlbums() const;
    void CreateAlbum();
    void EditAlbum();
    void DeleteAlbum();
    bool HasAlbumFor(const char *purpose);
    void SetUpRestricted();
    void RemoveRestriction();

    // frmSetupLayout.cpp: figures, files, order, webcam
    void ConnectLayout();
    void ShowFigures();
    void ChooseFilesPerRow();
    void ChooseSortMethod();
    void SetDirOrder();
    void SetUpWebcam();

    // frmSetupNetwork.cpp: the checks
    PortCheckHands MakeCheckHands();
    void ConnectNetwork();
    bool CheckFirewall();

    SetupOpening opening_;
    SetupSurroundings surroundings_;
    QTabWidget *SSTab1;
    GeneralPage *general_;
    AlbumsPage *albums_;
    FirewallPage *firewall_;
    LayoutPage *layout_;
    OnlinePage *online_;
    AccessPage *access_;
    PortPage *port_;
    SkinButton *cmdPrevious;
    SkinButton *cmdNext;
    QLabel *lblStep;
    SkinButton *cmdOK;
    SkinButton *cmdCancel;
    Timer tmrShowAddAlbum;
    std::string privateIP_;
    std::vector<RestrictedRow> restricted_;  ///< the rows of lvwRestricted
    PortCheck check_;
    bool settingsChanged_ = false;
    bool isCheckRunning_ = false;
};

}  // namespace pixmora
