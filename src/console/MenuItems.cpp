// The items of the program's menus.
#include "console/MenuItems.h"

#include <cstdint>

#include "core/site/Globals.h"
#include "platform/runtime/Numbers.h"
#include "store/Catalogue.h"

namespace pixmora {

namespace {

MenuItem Item(std::string text) {
    return {std::move(text), {}, {}};
}

MenuItem Separator() {
    return {};
}

/// Deliberate: two fixed addresses, whatever the machine's own may be.
std::string VisitorName(const std::string &address) {
    return address == "192.168.0.1" || address == "127.0.0.1" || address == "::1" ? "Me" : address;
}

MenuItems VisitItems(const clsVisitor &visitor) {
    const std::int64_t seconds = (Uptime() - visitor.ConnectTime) / 1000;
    return {Item("Connected Time: " + FormatElapsed(static_cast<double>(seconds), false, false)),
            Item("Page: " + visitor.CurrentPage)};
}

}  // namespace

MenuItems SystrayMenuItems(bool isWindowShown) {
    MenuItems items = {Item("Active Visitors: " + std::to_string(gVisitorsActive)), Separator(),
                       Item(gWebsiteStarted ? "Stop Website" : "Start Website"), Item("Setup"), Separator()};
    if (gWebsiteStarted) {
        items.push_back(Item("Put Link in AIM Away Message"));
        items.push_back(Separator());
    }
    items.push_back(Item(isWindowShown ? "Minimize Window" : "Restore Window"));
    items.push_back(Separator());
    items.push_back(Item("Exit"));
    return items;
}

MenuItems AddressOptsMenuItems() {
    return {Item("View My Website"),    Item("Copy Link to Clipboard"),       Item("Email Link to Someone"),
            Item("IM Link to Someone"), Item("Put Link in AIM Away Message"), Item("Show QR Code")};
}

MenuItems AlbumMenuItems() {
    MenuItems items = {Item("Add New Album"), Item("Edit Album"), Separator()};
    std::int32_t count = 0;
    for (const std::string &name : GetAlbumNames(count)) items.push_back(Item(name));
    return items;
}

MenuItems ActiveMenuItems() {
    if (gVisitors.empty()) return {Item("No Active Users")};
    MenuItems items;
    for (const clsVisitor &visitor : gVisitors) {
        items.push_back({VisitorName(visitor.IP), VisitItems(visitor), std::to_string(items.size()) + ActiveMenu});
    }
    return items;
}

}  // namespace pixmora
