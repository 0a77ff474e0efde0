// Desktop.h: the desktop program's entry and its run modes.
#include <QApplication>

#include "console/Desktop.h"
#include "console/RunMode.h"
#include "console/frmMain.h"
#include "console/frmSplash.h"
#include "core/modMain.h"
#include "core/site/Globals.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr Tick waitMs = 100;

/// An emptied setting is the sign of a first run as an absent one is.
double RunSetup() {
    return Val(GetSetting("Setup", "RunSetup"));
}

}  // namespace

bool Desktop::Main(const std::string &commandLine) {
    if (BeginProgram(commandLine) != ProgramStart::Ready) return false;
    if (RunModeOf(commandLine) == RunMode::NewAlbum) forms_.ShowNewAlbum(NewAlbumDirectory(commandLine));
    NoteInstallTime();
    LoadSystray();
    LoadTray();
    frmSplash splash([this] { ShowMainWindow(); });
    splash.Show();
    while (MainWindowIfUp() == nullptr) WaitUntilTick(TickAfter(GetTickCount(), waitMs));
    StartByMode(commandLine);
    if (RunSetup() <= 0) GreetFirstTime();
    return true;
}

void Desktop::StartByMode(const std::string &commandLine) {
    const RunMode mode = RunModeOf(commandLine);
    if (mode != RunMode::Start && mode != RunMode::StartOpenSite) return;
    StartWebsite();
    if (gWebsiteStarted) main_->Unload();
    if (mode == RunMode::StartOpenSite) OpenInBrowser(gWebsiteAddress);
}

void Desktop::GreetFirstTime() {
    ShowMessageBox(
        "Welcome to your first time using Pixmora! Digital Media Software!\r\n\r\nTo get your website up and running, "
        "there are some things we have to setup and configure.\r\n\r\nPlease read everything carefully to expedite the "
        "setup process.\r\n\r\nClick OK to continue!",
        FlagInformation);
    forms_.ShowSetup({});
    WebsiteStatusChanged();
    if (RunSetup() != 1 || Val(GetSetting("Records", "CreatedAlbum")) != 1) return;
    const bool startsNow = Asks(
        "In order for your pictures and movies to appear online, you must start your "
        "website.\r\n\r\nWould you like to do that now?\r\n\r\nIn the future you can do this yourself by "
        "clicking the 'Start Website' button on the main window.",
        FlagYesNo);
    if (startsNow) actions_.StartStop();
}

}  // namespace pixmora
