#include "platform/sockets/SocketAddress.h"

#include <arpa/inet.h>

#include <cstdint>

namespace pixmora {

namespace {

std::string TextOf(int family, const void *bytes) {
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(family, bytes, text, sizeof text);
    return text;
}

}  // namespace

std::optional<SocketAddress> SocketAddress::From(const std::string &address, int port) {
    SocketAddress made;
    const auto networkPort = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &made.Four.sin_addr) == 1) {
        made.Four.sin_family = AF_INET;
        made.Four.sin_port = networkPort;
        made.Length = sizeof(sockaddr_in);
    } else if (inet_pton(AF_INET6, address.c_str(), &made.Six.sin6_addr) == 1) {
        made.Six.sin6_family = AF_INET6;
        made.Six.sin6_port = networkPort;
        made.Length = sizeof(sockaddr_in6);
    } else {
        return std::nullopt;
    }
    return made;
}

int SocketAddress::Port() const {
    return ntohs(Family() == AF_INET6 ? Six.sin6_port : Four.sin_port);
}

std::string SocketAddress::Text() const {
    if (Family() != AF_INET6) return TextOf(AF_INET, &Four.sin_addr);
    const in6_addr &address = Six.sin6_addr;
    if (!IN6_IS_ADDR_V4MAPPED(&address)) return TextOf(AF_INET6, &address);
    return TextOf(AF_INET, &address.s6_addr[12]);
}

}  // namespace pixmora
