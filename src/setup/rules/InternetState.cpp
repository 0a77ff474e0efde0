// Whether this computer has a way to the Internet.
#include "setup/rules/InternetState.h"

#include <sstream>
#include <string>

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr unsigned routeIsUp = 0x1;
constexpr unsigned routeRefuses = 0x200;  // an entry that turns packets away is no way out

}  // namespace

bool HasDefaultRoute(std::string_view routingTable) {
    for (const std::string &line : Split(routingTable, "\n")) {
        std::istringstream fields(line);
        std::string interface;
        std::string gateway;
        unsigned destination = 0;
        unsigned flags = 0;
        unsigned counts[3];
        unsigned mask = 0;
        fields >> interface >> std::hex >> destination >> gateway >> flags >> std::dec >> counts[0] >> counts[1] >>
            counts[2] >> std::hex >> mask;
        if (!fields || interface == "lo" || destination != 0 || mask != 0) continue;
        if ((flags & routeIsUp) != 0 && (flags & routeRefuses) == 0) return true;
    }
    return false;
}

bool IsConnectedToInternet() {
    return HasDefaultRoute(Try([] { return BinaryFile::OpenForRead("\\proc\\net\\route")->ReadAll(); }).value_or(""));
}

}  // namespace pixmora
