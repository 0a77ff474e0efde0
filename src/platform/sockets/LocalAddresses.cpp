// The machine's own IPv4 addresses.
#include "platform/sockets/LocalAddresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <memory>

#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

std::string Dotted(const void *address) {
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, address, text, sizeof text);
    return text;
}

bool Names(const hostent &entry, std::string_view name) {
    if (EqualsIgnoreCase(entry.h_name, name)) return true;
    for (char **alias = entry.h_aliases; *alias != nullptr; ++alias) {
        if (EqualsIgnoreCase(*alias, name)) return true;
    }
    return false;
}

}  // namespace

std::vector<std::string> HostTableAddresses() {
    char name[256] = "";
    if (gethostname(name, sizeof name - 1) != 0) return {};
    std::vector<std::string> addresses;
    sethostent(0);
    while (const hostent *entry = gethostent()) {
        if (entry->h_addrtype != AF_INET || !Names(*entry, name)) continue;
        for (char **address = entry->h_addr_list; *address != nullptr; ++address) {
            addresses.push_back(Dotted(*address));
        }
    }
    endhostent();
    return addresses;
}

std::vector<std::string> InterfaceAddresses() {
    ifaddrs *first = nullptr;
    if (getifaddrs(&first) != 0) return {};
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs *)> owner(first, freeifaddrs);
    std::vector<std::string> addresses;
    for (const ifaddrs *entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
        if ((entry->ifa_flags & IFF_UP) == 0 || (entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
        addresses.push_back(Dotted(&reinterpret_cast<const sockaddr_in *>(entry->ifa_addr)->sin_addr));
    }
    return addresses;
}

}  // namespace pixmora
