// The desktop program: its windows, its tray icon, and the owner's dialogue by their means.
#include "console/Desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QDesktopServices>
#include <QScreen>
#include <QUrl>
#include <cstdio>
#include <utility>

#include "console/AccessibleMenus.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"
#include "console/frmHelpBalloon.h"
#include "console/frmMain.h"
#include "console/frmMsgBox.h"
#include "console/frmQrCode.h"
#include "console/frmStartStatus.h"
#include "core/WebsiteStop.h"
#include "core/modMain.h"
#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Schema.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

bool OpenByDesktop(const std::string &address) {
    return QDesktopServices::openUrl(QUrl(ToQt(address), QUrl::TolerantMode));
}

void CopyText(const std::string &text) {
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(ToQt(text));
}

/// An address as people write it has no scheme where it is one of the web.
std::string WithScheme(const std::string &address) {
    const bool hasScheme =
        address.find("://") != std::string::npos || address.starts_with("mailto:") || address.starts_with("aim:");
    return hasScheme ? address : "http://" + address;
}

/// What an error has left of a site serves nobody.
void CloseSite() {
    if (!gSystray) return;
    for (Timer *timer : {&gSystray->tmrConnections, &gSystray->tmrIdle, &gSystray->tmrWebCam}) timer->SetEnabled(false);
    gSystray->wnskListen->Close();
    for (int index = gSystray->wnskConnect.UBound(); index > 0; --index) gSystray->wnskConnect.Unload(index);
}

}  // namespace

Desktop::Desktop(SetupForms forms)
    : Desktop(std::move(forms), {OpenByDesktop, QSystemTrayIcon::isSystemTrayAvailable, [this] {
                                     ShutDown();
                                 }}) {}

Desktop::Desktop(SetupForms forms, Shell shell)
    : forms_(std::move(forms)), shell_(std::move(shell)), actions_(MakeHands()), font_([this] { FollowFont(); }) {
    SetOwnerDialogue(this);
    ShowMenusToAssistiveTechnology();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setWindowIcon(ProgramIcon());
}

Desktop::~Desktop() {
    SetOwnerDialogue(nullptr);
    tray_.TrayDelete();
}

ActionHands Desktop::MakeHands() {
    return {
        .StartWebsite = [this] { StartWebsite(); },
        .ShowFigures =
            [this] {
                if (main_) main_->ShowFigures();
            },
        .ToggleMainWindow = [this] { ToggleMainWindow(); },
        .ShowSetupForm = [this](const SetupOpening &opening) { forms_.ShowSetup(opening); },
        .CopyText = CopyText,
        .ShowQrCode = [this](const std::string &text) { frmQrCode(text).Run(MainWindowIfUp()); },
        .OpenFolder =
            [this](const std::string &path) {
                Open(FromQt(QUrl::fromLocalFile(ToQt(SystemPath(path))).toString(QUrl::FullyEncoded)));
            },
        .EndProgram = [this] { shell_.EndProgram(); },
    };
}

QWidget *Desktop::MainWindowIfUp() const {
    return main_ && main_->IsUp() ? main_.get() : nullptr;
}

void Desktop::FollowFont() {
    clsXPMenu::KillAllMenus();
    if (balloon_) balloon_->hide();
    Skin::FitFonts();
}

int Desktop::ShowMessageBox(const std::string &text, int flags) {
    if (!messageBox_) messageBox_ = std::make_unique<frmMsgBox>();
    const QWidget *dialog = QApplication::activeModalWidget();
    return messageBox_->Ask(text, flags, dialog != nullptr ? dialog : MainWindowIfUp());
}

void Desktop::ShowHelpBalloon(const std::string &title, const std::string &text) {
    if (!balloon_) {
        balloon_ = std::make_unique<frmHelpBalloon>([this] { OpenInBrowser(SupportAddress()); });
    }
    balloon_->Show(title, text, !SupportAddress().empty());
}

void Desktop::ShowNotice(const std::string &text) {
    if (shell_.HasTray()) {
        tray_.TrayBalloon(App::Title, text, BalloonInformation);
    } else {
        ShowHelpBalloon(App::Title, text);
    }
}

void Desktop::OpenInBrowser(const std::string &url) {
    DoEvents();
    Open(url);
    DoEvents();
}

void Desktop::Open(const std::string &address) {
    const bool isOpen = shell_.Open(address.empty() ? address : WithScheme(address));
    if (!isOpen && !address.empty()) {
        ShowMessageBox("There is no program on this computer that opens '" + address + "'.", FlagCritical);
    }
}

void Desktop::WebsiteStatusChanged() {
    if (main_) main_->UpdateStatus();
}

void Desktop::SetFiguresRunning(bool running) {
    if (main_) main_->SetFiguresRunning(running);
}

void Desktop::ShowSetup() {
    actions_.Setup();
}

void Desktop::StartWebsite() {
    frmStartStatus form;
    form.Run(MainWindowIfUp());
}

void Desktop::ShowMainWindow() {
    if (!main_) {
        const auto showTrayMenu = [this](const QRect &button) {
            const auto menu = MakeTrayMenu();
            menu->ShowMenu(MenuPlaceAt(button, {menu->GetWidth(), menu->GetHeight()},
                                       ScreenAt(button.center()).availableGeometry()));
        };
        main_ = std::make_unique<frmMain>(actions_,
                                          MainWindowHands{shell_.HasTray, [this] { HandleUnloaded(); }, showTrayMenu});
    }
    main_->Load();
}

void Desktop::HandleUnloaded() {
    tray_.TrayBalloon(App::Title,
                      "You can show the main window again by double clicking on the icon in your system "
                      "tray.\r\n\r\nTo close Pixmora!, right click its icon and click Exit.",
                      BalloonInformation);
    SaveSetting("Setup", "MinimizeOnce", "1");
}

void Desktop::ToggleMainWindow() {
    if (!IsMainWindowShown()) {
        ShowMainWindow();
    } else if (main_) {
        main_->Unload();
    }
}

void Desktop::LoadTray() {
    tray_.OnDoubleClick = [this] {
        ToggleMainWindow();
    };
    tray_.OnRightButton = [this] {
        ShowTrayMenu(QCursor::pos());
    };
    tray_.TrayAdd(App::Title, QGuiApplication::windowIcon());
}

std::shared_ptr<clsXPMenu> Desktop::MakeTrayMenu() const {
    return clsXPMenu::Create(
        SystrayMenu, SystrayMenuItems(IsMainWindowShown()),
        [this](const std::string &menuName, const std::string &itemText) { actions_.HandleClick(menuName, itemText); });
}

void Desktop::ShowTrayMenu(const QPoint &pointer) const {
    if (QApplication::activeModalWidget() != nullptr) return;
    const auto menu = MakeTrayMenu();
    const QScreen &screen = ScreenAt(pointer);
    menu->ShowMenu(
        TrayMenuPlace(pointer, {menu->GetWidth(), menu->GetHeight()}, screen.geometry(), screen.availableGeometry()));
}

void Desktop::EndWithoutQuestion() {
    if (gSystray) StopWebsite(true);  // also one that is only starting
    shell_.EndProgram();
}

bool Desktop::ShowUnhandledError(const RunTimeError &error) {
    if (std::exchange(isFailing_, true)) return false;
    tray_.IgnoreTrayEvents = true;
    std::fprintf(stderr, "%s\n", error.what());
    std::fflush(stderr);
    SetFiguresRunning(false);
    CloseSite();
    ShowMessageBox(OwnersMessage(error), FlagCritical);
    return true;
}

void Desktop::ShutDown() {
    tray_.IgnoreTrayEvents = true;
    const auto unloadForms = [] {
        for (QWidget *form : QApplication::topLevelWidgets()) form->hide();
    };
    ShutDownProgram({.RemoveTrayIcon = [this] { tray_.TrayDelete(); }, .UnloadForms = unloadForms});
}

}  // namespace pixmora
