// The machine's own IPv4 addresses.
#include "platform/sockets/LocalAddresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>

#include "platform/runtime/Text.h"
#include "platform/sockets/SocketAddress.h"

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

std::string DefaultRouteAddress(IpFamily family) {
    // Addresses kept for documentation (RFC 5737, RFC 3849): a datagram socket's connect chooses the route and no more.
    const auto far = SocketAddress::From(family == IPv6 ? "2001:db8::1" : "192.0.2.1", 9);
    const int number = socket(far->Family(), SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (number < 0) return {};
    SocketAddress own;
    const bool hasRoute =
        connect(number, &far->General, far->Length) == 0 && getsockname(number, &own.General, &own.Length) == 0;
    close(number);
    return hasRoute ? own.Text() : std::string();
}

std::vector<std::string> InterfaceAddresses() {
    std::vector<std::string> addresses;
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0) return addresses;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const ifaddrs *entry = list; entry != nullptr; entry = entry->ifa_next) {
        const bool isOutward = (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_LOOPBACK) == 0;
        if (!isOutward || entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
        addresses.push_back(Dotted(&reinterpret_cast<const sockaddr_in *>(entry->ifa_addr)->sin_addr));
    }
    return addresses;
}

}  // namespace pixmora
