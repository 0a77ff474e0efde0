// The owner's dashboard.
#pragma once

#include <functional>

#include "console/LinkLabel.h"
#include "console/MainStatus.h"
#include "console/MenuItems.h"
#include "console/OwnerActions.h"
#include "console/SkinButton.h"
#include "console/SkinWindow.h"
#include "platform/loop/MessageLoop.h"

class QGridLayout;
class QLabel;

namespace pixmora {

/// What the main window needs of the desktop around it. All must be set.
struct MainWindowHands {
    std::function<bool()> HasTray;                          ///< asked anew each time: a desktop's tray may come late
    std::function<void()> Unloaded;                         ///< the window has gone to the tray
    std::function<void(const QRect &button)> ShowTrayMenu;  ///< at the button, on the screen
};

/// Shows the state of the site and its figures, and passes the owner's clicks on. Loaded and unloaded any number of
/// times. Where there is no tray to go to, it is minimised instead, and a button of its own opens the tray's menu.
class frmMain : public SkinWindow {
public:
    /// @param actions must outlive the window
    frmMain(const OwnerActions &actions, MainWindowHands hands);

    void Load();
    void Unload();
    /// Whether the window is up; a minimised one isn't.
    bool IsUp() const { return isVisible() && !isMinimized(); }

    /// Draws everything that depends on the state anew.
    void UpdateStatus();
    /// Draws the figures, the running ones while the website runs: what tmrStats does each second.
    void ShowFigures();
    void SetFiguresRunning(bool running);
    /// What tmrTray does: the tray's menu has its own button while there is no tray; and a window that went to a tray
    /// comes back when the tray is missing twice running, as nothing else could bring it.
    void LookForTray();

    void reject() override {}  ///< Escape means nothing here

protected:
    void CloseByOwner() override { Unload(); }
    void changeEvent(QEvent *event) override;

private:
    /// One row of the two columns of figures.
    struct FigureLabels {
        QLabel *Session = nullptr;
        QLabel *Total = nullptr;
    };

    QWidget *MakeAddress();
    QWidget *MakeCounts();
    QWidget *MakeStatistics();
    FigureLabels AddFigureRow(QGridLayout &grid, const char *title, const char *sessionName, const char *totalName,
                              const char *start, const char *totalStart) const;
    QLayout *MakeButtons();
    void AddTitleButtons();
    void ConnectControls();
    void SetFigures(const MainFigures &figures);
    void ClickAddress() const;
    void ShowMenuAt(const LinkLabel &link, const char *name, const MenuItems &items) const;
    /// @return whether there is a tray
    bool ShowTrayButton();

    const OwnerActions &actions_;
    MainWindowHands hands_;
    LinkLabel *lblAddress;
    LinkLabel *lblAddressOptions;
    QLabel *lblStatAlbums;
    LinkLabel *lblAlbumsBrowse;
    QLabel *lblStatActiveSession;
    LinkLabel *lblSeeActive;
    FigureLabels runningTime_;
    FigureLabels connections_;
    FigureLabels thumbs_;
    FigureLabels downloads_;
    FigureLabels bandwidth_;
    QLabel *lblVersion;
    SkinButton *cmdStartStop;
    QWidget *imgStopServer;
    SkinButton *cmdSetup;
    SkinButton *cmdStatistics;
    SkinButton *cmdAbout;
    SkinButton *cmdExit;
    TitleButton *cmdMenu;
    TitleButton *imgMin;
    Timer tmrStats;
    Timer tmrTray;  ///< 2000 ms; looks whether the desktop's tray has come or gone
    bool isPlaced_ = false;
    bool wasOutOfReach_ = false;  ///< hidden, without a tray, when last looked
};

}  // namespace pixmora
