// Addresses and names of computers, as texts.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// An IPv4 address with all its four numbers, or an IPv6 one (RFC 4291) without a zone.
bool IsIpAddress(std::string_view text);

/// An address, or a name as RFC 1123 has it.
bool IsHost(std::string_view text);

/// The host that a service has answered with, without a line end behind it; empty when the answer can't be one, as the
/// page of some box on the way can't.
std::string HostIn(std::string_view answer);

/// "http://host:port", an IPv6 address in brackets.
std::string WebAddress(const std::string &host, int port);

/// The web address that an owner means by a host, a host with a port, or a whole address of http or https; empty for
/// what is none of these. @param port of a host without one
std::string WebAddressFrom(std::string_view text, int port);

/// Whether the address lies in a network as "10.0.0.0/8", or is the one that stands in its place.
bool IsInNetwork(const std::string &address, const std::string &network);

/// Whether the address can't be reached from everywhere: loopback, of a home's or a carrier's own network, of one link
/// (RFC 1918, 6598, 3927, 4193).
bool IsPrivateAddress(const std::string &address);

}  // namespace pixmora
