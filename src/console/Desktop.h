// The desktop program: its windows, its tray icon, and the owner's dialogue by their means.
#pragma once

#include <QPoint>
#include <functional>
#include <memory>
#include <string>

#include "console/DesktopFont.h"
#include "console/OwnerActions.h"
#include "console/SetupForms.h"
#include "console/TrayIcon.h"
#include "core/site/OwnerDialogue.h"

namespace pixmora {

class frmHelpBalloon;
class frmMain;
class frmMsgBox;
class RunTimeError;
class clsXPMenu;

/// What the program asks of the desktop that it runs on; tests put their own in its place.
struct Shell {
    std::function<bool(const std::string &address)> Open;  ///< an address or a folder's, in the program made for it
    std::function<bool()> HasTray;
    std::function<void()> EndProgram;  ///< ends the process
};

/// The one object of the desktop program. It is the owner's dialogue for its life.
class Desktop : public OwnerDialogue {
public:
    /// @param forms the setup dialogs
    explicit Desktop(SetupForms forms);
    Desktop(SetupForms forms, Shell shell);
    ~Desktop() override;
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// The program's entry, up to where only the message loop is left.
    /// @return false when the program is not to go on; the owner has been told why
    bool Main(const std::string &commandLine);

    /// Stops the website without a question and ends the program.
    void EndWithoutQuestion();
    /// Closes what is left of the site, and shows an error that no handler caught, in its own words on standard error.
    /// @return false when another one is being shown
    bool ShowUnhandledError(const RunTimeError &error);

    int ShowMessageBox(const std::string &text, int flags) override;
    void ShowHelpBalloon(const std::string &title, const std::string &text) override;
    void ShowNotice(const std::string &text) override;
    void OpenInBrowser(const std::string &url) override;
    void WebsiteStatusChanged() override;
    void SetFiguresRunning(bool running) override;
    void ShowSetup() override;

    const OwnerActions &Actions() const { return actions_; }
    /// From the start, although the splash comes first.
    bool IsMainWindowShown() const { return !main_ || MainWindowIfUp() != nullptr; }
    /// Shows the main window or sends it to the tray.
    void ToggleMainWindow();
    /// The tray's menu at a pointer on the screen, unless a dialog is open.
    void ShowTrayMenu(const QPoint &pointer) const;

private:
    ActionHands MakeHands();
    std::shared_ptr<clsXPMenu> MakeTrayMenu() const;
    void LoadTray();
    void ShowMainWindow();
    void HandleUnloaded();
    void StartWebsite();
    void StartByMode(const std::string &commandLine);
    void GreetFirstTime();
    void Open(const std::string &address);
    void ShutDown();
    QWidget *MainWindowIfUp() const;
    void FollowFont();

    SetupForms forms_;
    Shell shell_;
    OwnerActions actions_;
    TrayIcon tray_;
    DesktopFont font_;
    std::unique_ptr<frmMain> main_;
    std::unique_ptr<frmMsgBox> messageBox_;
    std::unique_ptr<frmHelpBalloon> balloon_;
    bool isFailing_ = false;
};

}  // namespace pixmora
