// The website's stop.
#include "core/WebsiteStop.h"

#include "core/SiteSettings.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "outside/PortMapping.h"
#include "platform/runtime/RunTimeError.h"
#include "store/RecordKeeping.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "webcam/modWebCam.h"

namespace pixmora {

namespace {

constexpr int lockWaitStopped = 2000;  // ms

bool OwnerRefuses() {
    return ShowMessageBox(
               "There are still people on your website! If you stop your website they won't be able to see "
               "your files.\r\n\r\nAre you sure you want to stop?",
               FlagYesNo) == AnswerNo;
}

void DropMediaLists() {
    // The next start drops what is left.
    for (const AlbumPointer &album : gAlbums) Try([&] { DropMediaList(album->ID); });
}

void CloseTransfers() {
    for (const Connection &element : gSystray->wnskConnect.Items()) {
        if (element->Transfer.FileSize > 0) ClearTransfer(*element);
    }
}

}  // namespace

bool StopWebsite(bool silent) {
    if (!silent && gVisitorsActive != 0 && OwnerRefuses()) return false;
    gWebsiteStarted = false;
    gOnlineTimer->StopTimer();
    ReadTotals();
    KeepRecord(Record::LastOnline, [] { SaveSetting("Website", "LastOnline", "0"); });
    DropMediaLists();
    RemoveAwayMessage();
    CloseRouterPort();
    gVisitorsActive = 0;
    StopWebcam();
    CloseTransfers();
    SetFiguresRunning(false);
    gSystray->tmrConnections.SetEnabled(false);
    gSystray->wnskListen->Close();
    gWebServerCommands = nullptr;
    gDatabase->SetLockWait(lockWaitStopped);
    KeepRecord(Record::Checkpoint, [] { gDatabase->SetSynchronousFull(true); });
    WebsiteStatusChanged();
    return true;
}

}  // namespace pixmora
