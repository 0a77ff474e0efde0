// What the machine knows of its own addresses, without asking a name server.
#pragma once

#include <string>
#include <vector>

namespace pixmora {

/// The hosts table's addresses of the machine's own name, dotted, in the table's order. A name that only a name server
/// knows has none: asking one could hold the caller for half a minute, and the interfaces tell as much.
std::vector<std::string> HostTableAddresses();

enum IpFamily { IPv4, IPv6 };
/// The address that the machine would call other networks from, as its default route has it; empty without one. Sends
/// nothing.
std::string DefaultRouteAddress(IpFamily family = IPv4);

/// The addresses of the interfaces that are up, dotted, in the system's order, loopback left out.
std::vector<std::string> InterfaceAddresses();

}  // namespace pixmora
