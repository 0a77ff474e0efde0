// The guards of a site on the open internet.
#include "core/Guards.h"

#include <algorithm>
#include <string>

#include "core/site/Globals.h"
#include "core/site/Transfers.h"
#include "core/site/frmSystray.h"
#include "platform/runtime/Numbers.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr int longestIdleTimeout = 24 * 60 * 60;  // seconds; in ms well inside the ticks' range

/// Val, since a slip in one of these must not keep the site from starting.
int GuardNumber(std::string_view key, int fallback, int highest) {
    const double number = Val(GetSetting("Setup", key, std::to_string(fallback)));
    return RoundToLong(std::clamp<double>(number, 0, highest));
}

}  // namespace

void LoadListenSettings() {
    const std::string address = ListenAddress();
    gSystray->wnskListen->LocalPort = ListenPort();
    gSystray->wnskListen->LocalAddress = address.empty() && ListensOnIPv6() ? Winsock::AllAddresses : address;
    gSystray->TrustedProxy = GetSetting("Setup", "TrustedProxy");
    gSystray->wnskListen->SetConnectionLimit(GuardNumber("MaxConnections", DefaultMaxConnections, HighestSendIndex));
    gSystray->IdleTimeout = GuardNumber("IdleTimeout", DefaultIdleTimeout, longestIdleTimeout) * 1000;
}

void WatchForIdling() {
    if (gSystray->IdleTimeout > 0 && !gSystray->tmrIdle.Enabled()) gSystray->tmrIdle.SetEnabled(true);
}

void HandleIdleTick() {
    ConnectionArray &connections = gSystray->wnskConnect;
    bool isAnyOpen = false;
    for (const Connection &element : connections.Items()) {
        if (gSystray->IdleTimeout <= 0 || element->State() != SocketState::Connected) continue;
        if (element->PeerIdleTime() < gSystray->IdleTimeout) {
            isAnyOpen = true;
            continue;
        }
        ClearTransfer(*element);
        element->Close();
    }
    connections.Trim();
    if (!isAnyOpen) gSystray->tmrIdle.SetEnabled(false);
}

}  // namespace pixmora
