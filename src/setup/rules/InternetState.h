// Whether this computer has a way to the Internet.
#pragma once

#include <string_view>

namespace pixmora {

/// Whether any interface but loopback is up with a default route (IPv4).
bool IsConnectedToInternet();

/// The same, read from a routing table as /proc/net/route has it: one heading, then a route a line, its fields set off
/// by blanks or tabs: interface, destination, gateway, flags, three counts, mask; numbers in hexadecimal digits.
bool HasDefaultRoute(std::string_view routingTable);

}  // namespace pixmora
