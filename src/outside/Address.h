// The site's address: how the program finds it, and how the owner passes it on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

/// The machine's own IPv4 address, dotted: the one listened on, else that of the default route; where there is no such
/// route the hosts table's for the machine's own name, or the first interface's where that is none or a loopback one.
/// Never waits. Empty on a machine without a network.
std::string GetLocalIP();
/// The choice among a hosts table's and the interfaces' addresses.
std::string GetLocalIP(const std::vector<std::string> &hostTable, const std::vector<std::string> &interfaces);

/// The website's address within the machine's own network; loopback's on a machine without one.
std::string OwnWebAddress();
/// The address that the site calls itself by: the owner's (PublicAddress), else the central service's, else by the
/// home router's outer address, else the machine's own.
std::string BestWebsiteAddress();
/// Lets gWebsiteAddress follow the network, and with it what the owner and the instant messenger have of it.
void RefreshWebsiteAddress();

/// A new mail with the address in it.
std::string EmailLink(std::string_view address);
/// An instant message with the address in it.
std::string InstantMessageLink(std::string_view address);
/// An away message of the instant messenger with anchors on the address and the central service.
std::string AwayLink(std::string_view address, std::string_view serviceBase);

/// Writes the away message with gWebsiteAddress into the instant messenger's list in the registry, unless it stands
/// there already. Without that messenger in the registry nothing happens.
void InstallAwayMessage();
/// Takes every away message of this program out of the list.
void RemoveAwayMessage();

}  // namespace pixmora
