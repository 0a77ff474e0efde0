#include "outside/PortMapping.h"

#include <memory>
#include <string>
#include <utility>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "core/site/frmSystray.h"
#include "outside/Address.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/sockets/Hosts.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr Tick startLimit = 3000;
constexpr Tick renewAfter = RouterLease / 2 * 1000;

std::function<std::unique_ptr<RouterProtocols>()> makeProtocols = SystemRouterProtocols;

std::string Port() {
    return std::to_string(gSystray->wnskListen->LocalPort);
}

/// What the owner has to know of a reply; empty when all is well.
std::string TroubleOf(const RouterReply &reply) {
    if (reply.Outcome == RouterOutcome::NoRouter) {
        return "No router has answered the request to open port " + Port() +
               ". If there is one in your home, please lead the port to this computer in its own settings.";
    }
    if (reply.Outcome == RouterOutcome::Refused) {
        return "Your router has refused to open port " + Port() +
               (reply.Reason.empty() ? "" : " (" + reply.Reason + ")") +
               ". Please allow it in its settings, or lead the port to this computer there.";
    }
    if (!reply.OuterAddress.empty() && IsPrivateAddress(reply.OuterAddress)) {
        return "Your router has opened port " + Port() + ", but its own address, " + reply.OuterAddress +
               ", is a private one: there is another router before it, most likely your provider's, and nobody outside "
               "can reach your website. Please ask your provider for a public address.";
    }
    return {};
}

void HeedReply(const RouterReply &reply) {
    RouterFacts &facts = gSystray->RouterPort;
    const std::string trouble = TroubleOf(reply);
    const bool isOuterKnown = trouble.empty() && !reply.OuterAddress.empty();
    facts.Address = isOuterKnown ? WebAddress(reply.OuterAddress, reply.OuterPort) : std::string();
    facts.IsAsked = false;
    if (!trouble.empty() && trouble != facts.Trouble) ShowNotice(trouble);
    facts.Trouble = trouble;
    if (gWebsiteStarted) RefreshWebsiteAddress();
}

void Ask() {
    RouterFacts &facts = gSystray->RouterPort;
    facts.IsAsked = true;
    facts.AskedTick = GetTickCount();
    facts.AskedFrom = GetLocalIP();
    facts.Way->Open(gSystray->wnskListen->LocalPort, HeedReply);
}

}  // namespace

void SetRouterProtocols(std::function<std::unique_ptr<RouterProtocols>()> make) {
    makeProtocols = make ? std::move(make) : SystemRouterProtocols;
}

bool IsRouterPortWanted() {
    return Val(GetSetting("Setup", "PortMapping")) == 1;
}

void OpenRouterPort(const std::function<bool()> &isCancelled) {
    RouterFacts &facts = gSystray->RouterPort;
    const std::shared_ptr<Router> former = std::exchange(facts, {}).Way;  // it may still be taking a port back
    if (!IsRouterPortWanted()) return;
    facts.Way = former ? former : std::make_shared<Router>(makeProtocols());
    Ask();
    const Tick end = TickAfter(GetTickCount(), startLimit);
    while (facts.IsAsked && !isCancelled() && TicksBetween(GetTickCount(), end) > 0) WaitUntilTick(end);
    gWebsiteAddress = BestWebsiteAddress();
}

void RenewRouterPort() {
    const RouterFacts &facts = gSystray->RouterPort;
    if (!facts.Way || facts.IsAsked) return;
    if (!IsWithin(facts.AskedTick, renewAfter - 1) || facts.AskedFrom != GetLocalIP()) Ask();
}

void CloseRouterPort() {
    RouterFacts &facts = gSystray->RouterPort;
    if (facts.Way) facts.Way->Close();
    facts.IsAsked = false;
    facts.Address.clear();
}

}  // namespace pixmora
