// The website's one-minute heartbeat.
#include "core/Sweep.h"

#include <string>

#include "core/site/Globals.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "outside/CentralService.h"
#include "outside/PortMapping.h"
#include "platform/loop/Memory.h"
#include "platform/runtime/Numbers.h"
#include "store/RecordKeeping.h"
#include "store/Settings.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

constexpr Tick idleLimit = 600000;
constexpr Tick cookieLifetime = 600000;
constexpr Tick stallLimit = 20000;

bool IsOlderThan(Tick tick, Tick limit) {
    return !IsWithin(tick, limit);
}

}  // namespace

void HandleConnectionsTick() {
    RenewRouterPort();
    RefreshWebsiteAddress();
    KeepRecord(Record::LastOnline, [] {
        SaveSetting("Website", "LastOnline", DateText(Now()));
        SaveSetting("Website", "Address", gWebsiteAddress);
    });
    RecordStat(Stat::RunningTime, NoAlbum, 1);
    std::string &countdown = gSystray->tmrConnections.Tag;
    countdown = std::to_string(CLng(countdown) - 1);
    const bool isReportDue = countdown == "0";
    if (isReportDue) countdown = TicksBetweenReports;
    SweepVisitors();
    SweepDownloadCookies();
    SweepTransfers();
    // What a power cut could take is thus a minute of counts at most.
    KeepRecord(Record::Checkpoint, [] { gDatabase->Checkpoint(); });
    ReturnFreeMemory();
    if (isReportDue) SendPing();
}

void SweepVisitors() {
    std::erase_if(gVisitors, [](const clsVisitor &visitor) {
        const bool isIdle = IsOlderThan(visitor.LastTime, idleLimit);
        if (isIdle) --gVisitorsActive;
        return isIdle;
    });
}

void SweepDownloadCookies() {
    std::erase_if(gDownloadCookies,
                  [](const clsDownloadCookie &cookie) { return IsOlderThan(cookie.CookieTime, cookieLifetime); });
}

void SweepTransfers() {
    for (const Connection &element : gSystray->wnskConnect.Items()) {
        if (element->Transfer.FileSize <= 0 || !IsOlderThan(element->Transfer.LastSendTick, stallLimit)) continue;
        ClearTransfer(*element);
        element->Close();
    }
}

}  // namespace pixmora
