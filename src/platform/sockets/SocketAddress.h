// An address with a port, as the system's socket calls take it: of IPv4 or IPv6.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <optional>
#include <string>

namespace pixmora {

struct SocketAddress {
    /// In the form of its family, and as the calls take it whatever that is.
    union {
        sockaddr_storage Storage{};
        sockaddr General;
        sockaddr_in Four;
        sockaddr_in6 Six;
    };
    socklen_t Length = sizeof(sockaddr_storage);

    /// None for a text that is no address. @param port 0 to 65535
    static std::optional<SocketAddress> From(const std::string &address, int port);

    int Family() const { return General.sa_family; }
    int Port() const;
    /// Without the port. IPv4's is dotted, also where it has come in the clothes of IPv6 (::ffff:192.0.2.1).
    std::string Text() const;
};

}  // namespace pixmora
