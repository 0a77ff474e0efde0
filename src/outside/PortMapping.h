// The way into the house: the router is asked to lead the site's port to this machine.
#pragma once

#include <functional>

#include "platform/router/RouterProtocols.h"

namespace pixmora {

/// Puts other protocols in the place of the machine's own, for tests; null puts those back.
void SetRouterProtocols(std::function<std::unique_ptr<RouterProtocols>()> make);

/// Whether the owner wants the router asked (PortMapping 1).
bool IsRouterPortWanted();

/// Part of the website's start, for an owner who wants it: asks for the listening port, and waits up to
/// three seconds for the router's outer address, turning the message loop; what comes later is heeded too. What has
/// failed is told to the owner. @param isCancelled ends the wait
void OpenRouterPort(const std::function<bool()> &isCancelled);

/// At each minute's tick: asks again, by events, when half of the router's time is over or the machine has moved to
/// another network. Before gWebsiteAddress is brought up to date.
void RenewRouterPort();

/// Part of the website's stop: takes the port back, by events.
void CloseRouterPort();

}  // namespace pixmora
