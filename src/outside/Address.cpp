// The machine's own address, and the links that carry the site's.
#include "outside/Address.h"

#include <algorithm>
#include <optional>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/frmSystray.h"
#include "outside/CentralService.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "platform/sockets/LocalAddresses.h"
#include "store/Settings.h"
#include "store/clsRegistry.h"

namespace pixmora {

namespace {

const std::string messengerKey = R"(Software\America Online\AOL Instant Messenger (TM)\CurrentVersion)";
constexpr std::string_view ownTitle = "Advertise My Picture Website</title>";
constexpr std::string_view valueName = "GoneMsg";
constexpr double highestNumber = 999999999;

bool IsLoopback(std::string_view address) {
    return address.starts_with("127.");
}

/// The key of the away messages of the user who signed on last; none where the messenger isn't installed.
std::optional<clsRegistry> AwayMessages() {
    clsRegistry key;
    key.hkey = Registry::Root::CurrentUser;
    key.KeyRoot = messengerKey;
    key.Subkey = "Login\\";
    if (!key.KeyExists()) return std::nullopt;
    key.KeyRoot = messengerKey + "\\Users\\" + clsRegistry::ValueText(key.GetRegistryValue("Screen Name"));
    key.Subkey = "IAmGoneList\\";
    return key;
}

std::vector<std::pair<std::string, Registry::Value>> ValuesOf(const clsRegistry &key) {
    return clsRegistry::EnumRegistryValues(key.hkey, key.KeyRoot + "\\" + key.Subkey);
}

bool IsOwnMessage(const Registry::Value &value) {
    return Contains(clsRegistry::ValueText(value), ownTitle);
}

/// The number in a name of the form "GoneMsg0001", 0 in others.
double MessageNumber(std::string_view name) {
    if (name.size() <= valueName.size()) return 0;
    const double number = Val(name.substr(valueName.size()));
    return number > highestNumber ? 0 : number;
}

std::string AwayMessageText() {
    return "<title>" + std::string(ownTitle) + "<HTML><BODY BGCOLOR=\"#ffffff\"><FONT LANG=\"0\"><A HREF=\"" +
           gWebsiteAddress + "\">Check out my picture website!</A></FONT><BR><BR><FONT LANG=\"0\" SIZE=1><A HREF=\"" +
           ServiceBase() +
           "\"></FONT><FONT BACK=\"#ffffff\" SIZE=1>Powered by Pixmora! Digital Media Software"
           "</A></FONT></BODY></HTML>";
}

std::string LinkAnchor(std::string_view address) {
    return "<A+HREF=\"" + std::string(address) + "\">";
}

}  // namespace

std::string GetLocalIP() {
    std::string address = ListenAddress();
    if (address.empty()) address = DefaultRouteAddress();
    if (address.empty()) address = GetLocalIP(HostTableAddresses(), InterfaceAddresses());
    const bool isOfThisMachineAlone = address.empty() || IsLoopback(address);
    const std::string six = isOfThisMachineAlone && ListensOnIPv6() ? DefaultRouteAddress(IPv6) : std::string();
    return six.empty() ? address : six;
}

std::string GetLocalIP(const std::vector<std::string> &hostTable, const std::vector<std::string> &interfaces) {
    if (!hostTable.empty() && (interfaces.empty() || !IsLoopback(hostTable.front()))) return hostTable.front();
    return interfaces.empty() ? std::string() : interfaces.front();
}

std::string OwnWebAddress() {
    const std::string own = GetLocalIP();
    return WebAddress(own.empty() ? "127.0.0.1" : own, gSystray->wnskListen->LocalPort);
}

std::string BestWebsiteAddress() {
    std::string wished = WebAddressFrom(GetSetting("Setup", "PublicAddress"), gSystray->wnskListen->LocalPort);
    if (!wished.empty()) return wished;
    if (!gSystray->ServiceAddress.empty()) return gSystray->ServiceAddress;
    return gSystray->RouterPort.Address.empty() ? OwnWebAddress() : gSystray->RouterPort.Address;
}

void RefreshWebsiteAddress() {
    const std::string address = BestWebsiteAddress();
    if (address == gWebsiteAddress) return;
    gWebsiteAddress = address;
    RemoveAwayMessage();
    InstallAwayMessage();
    WebsiteStatusChanged();
}

std::string EmailLink(std::string_view address) {
    return "mailto:?subject=Check%20this%20out!&body=Here's%20the%20link:%20" + std::string(address);
}

std::string InstantMessageLink(std::string_view address) {
    return "aim:goim?screenname=&message=Check+out+" + std::string(address);
}

std::string AwayLink(std::string_view address, std::string_view serviceBase) {
    return "aim:goaway?message=" + LinkAnchor(address) +
           "Check+out+the+pictures+on+my+website!</A><BR><BR><FONT+SIZE=1>" + LinkAnchor(serviceBase) +
           "Powered+by+Pixmora!+Digital+Media+Software</A></FONT>";
}

void InstallAwayMessage() {
    const std::optional<clsRegistry> key = AwayMessages();
    if (!key) return;
    double last = 0;
    for (const auto &[name, value] : ValuesOf(*key)) {
        if (IsOwnMessage(value)) return;
        last = std::max(last, MessageNumber(name));
    }
    key->SetRegistryValue(std::string(valueName) + FormatPadded(static_cast<std::int64_t>(last) + 1, 4),
                          AwayMessageText());
}

void RemoveAwayMessage() {
    const std::optional<clsRegistry> key = AwayMessages();
    if (!key) return;
    for (const auto &[name, value] : ValuesOf(*key)) {
        if (IsOwnMessage(value)) key->DeleteValue(name);
    }
}

}  // namespace pixmora
