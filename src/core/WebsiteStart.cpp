// The website's start.
#include "core/WebsiteStart.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

#include "core/Guards.h"
#include "core/SiteSettings.h"
#include "core/Sweep.h"
#include "core/WebsiteStop.h"
#include "core/site/Globals.h"
#include "core/site/ListenRefusal.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "outside/PortMapping.h"
#include "pages/clsWebServerCommands.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
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
constexpr std::size_t mostFoldersTold = 10;
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
    explicit StartSequence(StartView &view) : view_(view) {}

    void Run() {
        if (TakeSteps()) {
            ShowLive();
        } else {
            StopWebsite(false);
            view_.ShowStatus("Pixmora! Stopped!");
            view_.ShowStopped();
        }
    }

private:
    bool TakeSteps() {
        try {
            return HasAlbums() && OpenPort() && CheckForNews() && LoadSettings() && LoadAlbums() && GoOnline();
        } catch (const RunTimeError &error) {
            if (error.Number() != ErrorNumber::DatabaseFailure) throw;
            ShowMessageBox(DatabaseMessage(), FlagCritical);
            return false;
        }
    }

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
        LoadListenSettings();
        return true;
    }

    bool CheckForNews() {
        view_.ShowStatus("Checking for News and Updates...");
        DoEvents();
        if (view_.Cancelled()) return false;
        check_ = CheckCentralService(true);
        return check_ != ServiceCheck::CalledOff && !view_.Cancelled();
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
        outdated_ = App::UpdateShippedFiles();
        LoadStyleSheet();
        LoadSiteTexts();
        LoadDisplaySettings();
        LoadMediaTypes();
        StartWebcam();
        LoadRestrictedWords();
        for (const Connection &element : gSystray->wnskConnect.Items()) element->Transfer.FileSize = 0;
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
            std::ranges::move(ScanAlbum(*album), std::back_inserter(unreadable_));
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
            if (check_ == ServiceCheck::Answered) SendListing(pictures_, movies_);
        }
        gWebServerCommands = std::make_shared<clsWebServerCommands>();
        // Last of all, so that no request can arrive before everything is in place.
        if (!Listen()) return false;
        if (IsRouterPortWanted()) view_.ShowStatus("Asking the Router to Open the Port...");
        OpenRouterPort([this] { return view_.Cancelled(); });
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
        TellUnreadable();
        TellOutdated();
    }

    void TellOutdated() const {
        if (outdated_.empty()) return;
        ShowNotice("This version brings newer forms of files that you have changed. Yours stay: " +
                   Join(outdated_, ", ") + ". The newer ones are in " + SystemPath(App::ShippedPath("")) + ".");
    }

    void TellUnreadable() const {
        if (unreadable_.empty()) return;
        std::string text = "Unable to read folders of your albums! What is in them isn't shown:";
        for (std::size_t i = 0; i < unreadable_.size() && i < mostFoldersTold; ++i) {
            text += "\r\n" + SystemPath(unreadable_[i]);
        }
        if (unreadable_.size() > mostFoldersTold)
            Append(text, "\r\nand ", unreadable_.size() - mostFoldersTold, " more");
        ShowNotice(text);
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
        TidyPopularDirs(DirectoryOfAlbum,
                        Naming("Setup, FilesPerRow", [] { return MultiplyLong(gFilesPerRow, popularDirsPerRow); }));
        PurgeHourly();
        PurgeDaily();
    }

    bool Listen() {
        try {
            gSystray->wnskListen->Listen();
            return true;
        } catch (const RunTimeError &error) {
            // Deliberate: of a port in use every program says the same.
            const bool isInUse = error.Number() == ErrorNumber::AddressInUse;
            const std::string place = isInUse ? std::string(PortSetup) : view_.PlaceOfPort();
            ShowMessageBox(ListenRefusal(error, gSystray->wnskListen->LocalPort, place), FlagCritical);
            return false;
        }
    }

    StartView &view_;
    std::vector<std::string> names_;
    std::vector<std::string> outdated_;    ///< files that came with an earlier version
    std::vector<std::string> unreadable_;  ///< folders of the albums
    std::int32_t pictures_ = 0;
    std::int32_t movies_ = 0;
    ServiceCheck check_ = ServiceCheck::NoAnswer;
};

}  // namespace

void RunStartSequence(StartView &view) {
    StartSequence(view).Run();
}

}  // namespace pixmora
