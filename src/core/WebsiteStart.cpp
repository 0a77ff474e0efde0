// The website's start.
#include "core/WebsiteStart.h"

#include <cstdint>
#include <optional>
#include <vector>

#include "core/SiteSettings.h"
#include "core/Sweep.h"
#include "core/WebsiteStop.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Catalogue.h"
#include "store/MediaTypes.h"
#include "store/Popularity.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "store/Statistics.h"
#include "webcam/modWebCam.h"

namespace pixmora {

namespace {

constexpr double pauseSeconds = 0.5;
constexpr int popularDirsPerRow = 5;
/// Visitors wait while the message loop waits for another program's lock. ms
constexpr int lockWaitServing = 150;

/// The root folder of the running website's album of that name, by way of its number.
std::optional<std::string> DirectoryOfAlbum(const std::string &albumName) {
    const std::string number = GetSetting("AlbumIDs", albumName);
    if (!IsNumeric(number) || !IsAlbumNumber(CLng(number))) return std::nullopt;
    return AlbumByNumber(CLng(number))->Directory;
}

class StartSequence {
public:
    StartSequence(StartView &view, const GuardDefaults &guards) : view_(view), guards_(guards) {}

    void Run() {
        if (HasAlbums() && OpenPort() && CheckForNews() && LoadSettings() && LoadAlbums() && GoOnline()) {
            ShowLive();
        } else {
            StopWebsite(false);
            view_.ShowStatus("Pixmora! Stopped!");
            view_.ShowStopped();
        }
    }

private:
    /// Without any, the owner may set one up; the start ends in any case.
    bool HasAlbums() {
        std::int32_t count = 0;
        names_ = GetAlbumNames(count);
        if (!names_.empty()) return true;
        if (Asks("You haven't setup any albums! Would you like to set one up now?")) ShowSetup();
        return false;
    }

    bool OpenPort() {
        DoEvents();
        gOnlineTimer->Pause(pauseSeconds);
        if (view_.Cancelled()) return false;
        view_.AdvanceProgress();
        view_.ShowStatus("Opening Ports...");
        gSystray->wnskListen->Close();
        LoadListenSettings(guards_);
        return true;
    }

    bool CheckForNews() {
        view_.ShowStatus("Checking for News and Updates...");
        DoEvents();
        return CheckCentralService(true) && !view_.Cancelled();
    }

    bool LoadSettings() {
        gSystray->tmrConnections.Tag = TicksBetweenReports;
        view_.AdvanceProgress();
        view_.ShowStatus("Loading Settings...");
        DoEvents();
        gOnlineTimer->StartTimer();
        ClearSessionFigures();
        ReadTotals();
        gVisitors.clear();
        CreateStatsRecent();
        SetFiguresRunning(true);
        gSystray->tmrConnections.SetEnabled(true);
        LoadStyleSheet();
        LoadSiteTexts();
        LoadDisplaySettings();
        LoadMediaTypes();
        StartWebcam();
        LoadRestrictedWords();
        for (SendState &state : gSendStates) state.FileSize = 0;
        return !view_.Cancelled();
    }

    bool LoadAlbums() {
        view_.AdvanceProgress();
        view_.ShowStatus("Loading Albums...");
        gAlbums.clear();
        std::int16_t number = 0;
        for (const std::string &name : names_) {
            const AlbumPointer album = LoadAlbum(name, ++number);
            if (!PathExists(album->Directory) && WantsToFix(name)) return false;
            gAlbums.push_back(album);
            SaveSetting("AlbumIDs", name, std::to_string(number));
            ScanAlbum(*album);
            pictures_ += album->PictureCount;
            movies_ += album->MovieCount;
        }
        SaveSetting("Setup", "NextAlbumID", std::to_string(number + 1));
        TidyTables();
        return true;
    }

    bool GoOnline() {
        if (GetSettingNumber("Setup", "ListOnline", 0) == 1) {
            view_.ShowStatus("Listing Online...");
            view_.AdvanceProgress();
            SendListing(pictures_, movies_);
        }
        gWebServerCommands = std::make_shared<clsWebServerCommands>();
        // Last of all, so that no request can arrive before everything is in place.
        if (!Listen()) return false;
        gDatabase->SetSynchronousFull(false);
        gDatabase->SetLockWait(lockWaitServing);
        SaveSetting("Website", "LastOnline", DateText(Now()));
        SaveSetting("Website", "Address", gWebsiteAddress);
        InstallAwayMessage();
        return true;
    }

    void ShowLive() {
        view_.AdvanceProgress();
        view_.ShowStatus("Website Started!");
        gOnlineTimer->Pause(pauseSeconds);
        gWebsiteStarted = true;
        WebsiteStatusChanged();
        view_.AdvanceProgress();
        view_.ShowStatus("Your Website is Live!");
        view_.ShowLive();
    }

    static void ClearSessionFigures() {
        gVisitorsActive = 0;
        gConnectionsSession = 0;
        gThumbsSession = 0;
        gDownloadsSession = 0;
        gBandwidthSession = 0;
    }

    static bool WantsToFix(const std::string &albumName) {
        return Asks("Your album '" + albumName +
                    "' cannot be found! The directory which contains its files has been moved or "
                    "deleted.\r\n\r\nWould you like to stop your website and fix your album in Setup?");
    }

    static void TidyTables() {
        TidyPopularFiles(DirectoryOfAlbum);
        TidyPopularDirs(DirectoryOfAlbum, MultiplyLong(gFilesPerRow, popularDirsPerRow));
        PurgeHourly();
        PurgeDaily();
    }

    static bool Listen() {
        try {
            gSystray->wnskListen->Listen();
            return true;
        } catch (const RunTimeError &error) {
            TellListenError(error);
            return false;
        }
    }

    static void TellListenError(const RunTimeError &error) {
        if (error.Number() == ErrorNumber::AddressNotAvailable) {
            ShowMessageBox("The address '" + GetSetting("Setup", "ListenAddress") +
                               "' is not an address of this computer! Please correct the setting ListenAddress, or "
                               "remove it to listen on all addresses.",
                           FlagCritical);
        } else {
            ShowMessageBox("There is another application already listening on port " +
                               std::to_string(gSystray->wnskListen->LocalPort()) +
                               "! Please go to Port Setup in Setup and choose another port.",
                           FlagCritical);
        }
    }

    StartView &view_;
    const GuardDefaults guards_;
    std::vector<std::string> names_;
    std::int32_t pictures_ = 0;
    std::int32_t movies_ = 0;
};

}  // namespace

void RunStartSequence(StartView &view, const GuardDefaults &guards) {
    StartSequence(view, guards).Run();
}

}  // namespace pixmora
