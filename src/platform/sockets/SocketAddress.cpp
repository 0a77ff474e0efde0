#include "platform/sockets/SocketAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstdint>
#include <cstring>

namespace pixmora {

namespace {

// The two families' own forms of a general address.
sockaddr_in &FourOf(SocketAddress &address) {
    return *reinterpret_cast<sockaddr_in *>(&address.Storage);
}
const sockaddr_in &FourOf(const SocketAddress &address) {
    return *reinterpret_cast<const sockaddr_in *>(&address.Storage);
}
sockaddr_in6 &SixOf(SocketAddress &address) {
    return *reinterpret_cast<sockaddr_in6 *>(&address.Storage);
}
const sockaddr_in6 &SixOf(const SocketAddress &address) {
    return *reinterpret_cast<const sockaddr_in6 *>(&address.Storage);
}

std::string TextOf(int family, const void *bytes) {
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(family, bytes, text, sizeof text);
    return text;
}

}  // namespace

std::optional<SocketAddress> SocketAddress::From(const std::string &address, int port) {
    SocketAddress made;
    const auto networkPort = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &FourOf(made).sin_addr) == 1) {
        FourOf(made).sin_family = AF_INET;
        FourOf(made).sin_port = networkPort;
        made.Length = sizeof(sockaddr_in);
    } else if (inet_pton(AF_INET6, address.c_str(), &SixOf(made).sin6_addr) == 1) {
        SixOf(made).sin6_family = AF_INET6;
        SixOf(made).sin6_port = networkPort;
        made.Length = sizeof(sockaddr_in6);
    } else {
        return std::nullopt;
    }
    return made;
}

int SocketAddress::Port() const {
    return ntohs(Family() == AF_INET6 ? SixOf(*this).sin6_port : FourOf(*this).sin_port);
}

std::string SocketAddress::Text() const {
    if (Family() != AF_INET6) return TextOf(AF_INET, &FourOf(*this).sin_addr);
    const in6_addr &address = SixOf(*this).sin6_addr;
    if (!IN6_IS_ADDR_V4MAPPED(&address)) return TextOf(AF_INET6, &address);
    return TextOf(AF_INET, &address.s6_addr[12]);
}

}  // namespace pixmora
