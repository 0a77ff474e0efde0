// An address with a port, as the system's socket calls take it: of IPv4 or IPv6.
#pragma once

#include <sys/socket.h>

#include <optional>
#include <string>

namespace pixmora {

struct SocketAddress {
    sockaddr_storage Storage{};
    socklen_t Length = sizeof(sockaddr_storage);

    /// None for a text that is no address. @param port 0 to 65535
    static std::optional<SocketAddress> From(const std::string &address, int port);

    sockaddr *General() { return reinterpret_cast<sockaddr *>(&Storage); }
    const sockaddr *General() const { return reinterpret_cast<const sockaddr *>(&Storage); }
    int Family() const { return Storage.ss_family; }
    int Port() const;
    /// Without the port. IPv4's is dotted, also where it has come in the clothes of IPv6 (::ffff:192.0.2.1).
    std::string Text() const;
};

}  // namespace pixmora
