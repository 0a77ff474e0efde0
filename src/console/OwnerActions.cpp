// What the owner's buttons and menu items do.
#include "console/OwnerActions.h"

#include "console/MainStatus.h"
#include "console/MenuItems.h"
#include "core/WebsiteStop.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "store/Globals.h"

namespace pixmora {

namespace {

/// Whether the owner wants to leave a site as it is now.
bool WantsToExit() {
    const bool hasPeople = gWebsiteStarted && gConnectionsSession > 0;
    const std::string warning = hasPeople
                                    ? "There are still people on your website! If you stop your website they won't be "
                                      "able to see your files.\r\n\r\n"
                                    : "";
    return ShowMessageBox(
               warning + "Are you sure you want to " + (gWebsiteStarted ? "stop your website and exit?" : "exit?"),
               hasPeople ? FlagYesNo : FlagQuestion | FlagYesNo) != AnswerNo;
}

}  // namespace

void OwnerActions::StartStop() const {
    if (gWebsiteStarted) {
        StopWebsite(false);
    } else {
        hands_.StartWebsite();
        hands_.ShowFigures();
    }
    WebsiteStatusChanged();
}

void OwnerActions::ShowSetup(bool showAlbumsTab, bool addAlbumOnOpen) const {
    const bool wasStarted = gWebsiteStarted;
    if (wasStarted) {
        if (!Asks("You must stop your website before you enter Setup.\r\n\r\nWould you like to do that now?",
                  FlagYesNo)) {
            return;
        }
        if (!StopWebsite(false)) return;
    }
    hands_.ShowSetupForm({showAlbumsTab, addAlbumOnOpen});
    WebsiteStatusChanged();
    if (wasStarted && Asks("In order for your pictures and movies to appear online, you must restart your "
                           "website.\r\n\r\nWould you like to do that now?",
                           FlagYesNo)) {
        StartStop();
    }
}

void OwnerActions::Statistics() const {
    if (gWebsiteStarted) {
        OpenInBrowser(OwnWebAddress() + "/ShowAlbum?ShowStats");
    } else if (Asks("You must start your website before viewing your statistics.\r\n\r\nWould you like to start it "
                    "now?",
                    FlagYesNo)) {
        StartStop();
        Statistics();
    }
}

void OwnerActions::About() const {
    if (ServiceBase().empty()) {
        ShowMessageBox(App::Title + "\r\n\r\n" + VersionLine(), FlagInformation);
        return;
    }
    OpenInBrowser(ServiceBase() + "/about.php?ver=" + VersionText() + "&username=" + EncodedAccountName());
}

void OwnerActions::Exit() const {
    if (!WantsToExit()) return;
    if (gWebsiteStarted) StopWebsite(true);
    hands_.EndProgram();
}

void OwnerActions::HandleClick(const std::string &menuName, const std::string &itemText) const {
    if (itemText == "Exit") {
        Exit();
    } else if (itemText == "Restore Window" || itemText == "Minimize Window") {
        hands_.ToggleMainWindow();
    } else if (itemText == "Start Website" || itemText == "Stop Website") {
        StartStop();
    } else if (itemText == "Setup") {
        Setup();
    } else if (itemText == "Copy Link to Clipboard") {
        hands_.CopyText(gWebsiteAddress);
    } else if (itemText == "Show QR Code") {
        hands_.ShowQrCode(gWebsiteAddress);
    } else if (itemText == "View My Website") {
        OpenInBrowser(gWebsiteAddress);
    } else if (itemText == "Email Link to Someone") {
        OpenInBrowser(EmailLink(gWebsiteAddress));
    } else if (itemText == "IM Link to Someone") {
        OpenInBrowser(InstantMessageLink(gWebsiteAddress));
    } else if (itemText == "Put Link in AIM Away Message") {
        OpenInBrowser(AwayLink(gWebsiteAddress, ServiceBase()));
    } else if (itemText == "Add New Album") {
        ShowSetup(false, true);
    } else if (itemText == "Edit Album") {
        ShowSetup(true, false);
    } else if (menuName == AlbumMenu) {
        OpenAlbum(itemText);
    }
}

void OwnerActions::OpenAlbum(const std::string &albumName) const {
    const auto album = gDatabase->OpenRecordset("SELECT Directory FROM Albums WHERE AlbumName=" + QuotedText(albumName),
                                                RecordsetType::Snapshot);
    if (album->Eof()) return;
    const std::string directory = AsText(album->Value("Directory"));
    if (PathExists(directory)) {
        hands_.OpenFolder(directory);
    } else {
        ShowMessageBox("Album directory cannot be found! Please run Setup and fix this album!", FlagCritical);
    }
}

std::string SupportAddress() {
    const std::string service = ServiceBase();
    return service.empty() ? service : service + "/support.php";
}

}  // namespace pixmora
