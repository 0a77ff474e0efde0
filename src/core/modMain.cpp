// The program's entry and end.
#include "core/modMain.h"

#include <cstdio>
#include <cstdlib>

#include "core/Guards.h"
#include "core/Intake.h"
#include "core/SiteSettings.h"
#include "core/Sweep.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/frmSystray.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "store/RecordKeeping.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "webcam/modWebCam.h"

namespace pixmora {

namespace {

/// The longer text is meant for the shell's album command; every command line that isn't empty gets it.
std::string SecondCopyMessage(const std::string &commandLine) {
    const std::string message = App::Title + " is already running!";
    return commandLine.empty() ? message : message + " To create an album, click on Setup and then Albums.";
}

}  // namespace

ProgramStart BeginProgram(const std::string &commandLine) {
    MigrateSettings();
    if (IsProgramElsewhere()) {
        ShowMessageBox(SecondCopyMessage(commandLine), FlagCritical);
        return ProgramStart::SecondCopy;
    }
    SetRecordTeller(ShowNotice);
    App::InstallHtdocs();
    gPictureEngine = std::make_unique<PictureEngine>();
    gOnlineTimer = std::make_unique<clsTimer>();
    gAlbums.clear();
    gVisitors.clear();
    gDownloadCookies.clear();
    gWebsiteStarted = false;
    gLastConversionTick = 0;
    if (!OpenOrCreateDatabase()) {
        ShowMessageBox(DatabaseMessage(), FlagCritical);
        return ProgramStart::DatabaseFailed;
    }
    ReadTotals();
    return ProgramStart::Ready;
}

void NoteInstallTime() {
    if (!GetSetting("Records", "InstallTime").empty()) return;
    const DateTime now = Now();
    SaveSetting("Records", "InstallTime",
                std::to_string(YearOf(now)) + FormatPadded(MonthOf(now), 2) + FormatPadded(DayOf(now), 2) +
                    FormatPadded(HourOf(now), 2));
}

void LoadSystray() {
    gSystray = std::make_unique<frmSystray>();
    gSystray->wnskListen->OnConnectionRequest = HandleConnectionRequest;
    gSystray->tmrConnections.SetInterval(SweepIntervalMs);
    gSystray->tmrConnections.OnTimer = HandleConnectionsTick;
    gSystray->tmrIdle.SetInterval(IdleCheckIntervalMs);
    gSystray->tmrIdle.OnTimer = HandleIdleTick;
    gSystray->tmrWebCam.SetInterval(WebcamIntervalMs);
    gSystray->tmrWebCam.OnTimer = WebcamTick;
}

void ReleaseProgram(const ShutDownHooks &hooks) {
    gOnlineTimer.reset();
    if (hooks.RemoveTrayIcon) Try(hooks.RemoveTrayIcon);
    if (gSystray) {
        const int last = gSystray->wnskConnect.UBound();
        for (int index = 1; index <= last; ++index) Try([index] { gSystray->wnskConnect.Unload(index); });
    }
    gDatabase.reset();
    if (hooks.UnloadForms) Try(hooks.UnloadForms);
    gSystray.reset();
    gPictureEngine.reset();
    gAlbums.clear();
    gVisitors.clear();
    gDownloadCookies.clear();
    gWebServerCommands.reset();
}

void ShutDownProgram(const ShutDownHooks &hooks) {
    ReleaseProgram(hooks);
    std::fflush(nullptr);
    // Handlers may wait further down this stack; what they hold must not be torn down under them.
    std::_Exit(0);
}

}  // namespace pixmora
