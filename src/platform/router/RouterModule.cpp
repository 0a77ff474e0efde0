// The module that speaks with routers, through the libraries for their two languages.
#include "platform/router/RouterModule.h"

#include <arpa/inet.h>
#include <miniupnpc/miniupnpc.h>
#include <miniupnpc/upnpcommands.h>
#include <miniupnpc/upnperrors.h>
#include <natpmp.h>
#include <poll.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace pixmora {

namespace {

constexpr auto natPmpPatience = std::chrono::milliseconds(750);  // a first and a second try
constexpr int discoveryMs = 1500;                                // routers take up to a second
constexpr int leasesArePermanent = 725;                          // UPnP's OnlyPermanentLeasesSupported

/// One conversation with the gateway of the default route.
class NatPmp {
public:
    NatPmp() : isUsable_(initnatpmp(&state_, 0, 0) == 0) {}
    ~NatPmp() {
        if (isUsable_) closenatpmp(&state_);
    }
    NatPmp(const NatPmp &) = delete;
    NatPmp &operator=(const NatPmp &) = delete;

    std::string OuterAddress() {
        natpmpresp_t response{};
        if (!isUsable_ || sendpublicaddressrequest(&state_) < 0 || Receive(response) != 0) return {};
        char text[INET_ADDRSTRLEN] = "";
        inet_ntop(AF_INET, &response.pnu.publicaddress.addr, text, sizeof text);
        return text;
    }

    /// @param seconds 0: takes the port back @return the library's code, 0 for success
    int Map(int port, int outerPort, int seconds, int &givenPort) {
        natpmpresp_t response{};
        if (!isUsable_) return NATPMP_ERR_NOGATEWAYSUPPORT;
        if (sendnewportmappingrequest(&state_, NATPMP_PROTOCOL_TCP, static_cast<std::uint16_t>(port),
                                      static_cast<std::uint16_t>(outerPort), static_cast<std::uint32_t>(seconds)) < 0)
            return NATPMP_ERR_SENDERR;
        const int result = Receive(response);
        givenPort = response.pnu.newportmapping.mappedpublicport;
        return result;
    }

private:
    int Receive(natpmpresp_t &response) {
        const auto end = std::chrono::steady_clock::now() + natPmpPatience;
        int result = NATPMP_TRYAGAIN;
        while (result == NATPMP_TRYAGAIN && std::chrono::steady_clock::now() < end) {
            timeval wait{};
            if (getnatpmprequesttimeout(&state_, &wait) != 0) return NATPMP_ERR_NOGATEWAYSUPPORT;
            pollfd watched{state_.s, POLLIN, 0};
            poll(&watched, 1, static_cast<int>(wait.tv_sec * 1000 + wait.tv_usec / 1000) + 1);
            result = readnatpmpresponseorretry(&state_, &response);
        }
        return result;
    }

    natpmp_t state_{};
    const bool isUsable_;
};

/// A gateway device that was found, with the addresses at which it takes orders.
class Gateway {
public:
    static std::optional<Gateway> Find() {
        int error = 0;
        const char *const wanted[] = {"urn:schemas-upnp-org:device:InternetGatewayDevice:1", nullptr};
        const std::unique_ptr<UPNPDev, void (*)(UPNPDev *)> devices(
            upnpDiscoverDevices(wanted, discoveryMs, nullptr, nullptr, UPNP_LOCAL_PORT_ANY, 0, 2, &error, 0),
            freeUPNPDevlist);
        if (!devices) return std::nullopt;
        UPNPUrls urls{};
        IGDdatas facts{};
        char own[64] = "";
        const int kind = UPNP_GetValidIGD(devices.get(), &urls, &facts, own, sizeof own);
        constexpr int connected = 1;
        constexpr int notConnected = 2;
        std::optional<Gateway> found;
        if (kind == connected || kind == notConnected) found = Gateway{urls.controlURL, facts.first.servicetype, own};
        if (kind != 0) FreeUPNPUrls(&urls);
        return found;
    }

    std::string OuterAddress() const {
        char text[64] = "";
        return UPNP_GetExternalIPAddress(control_.c_str(), service_.c_str(), text) == 0 ? text : "";
    }

    /// @return UPnP's code, 0 for success
    int Map(int port) const {
        const std::string number = std::to_string(port);
        const auto add = [&](const std::string &seconds) {
            return UPNP_AddPortMapping(control_.c_str(), service_.c_str(), number.c_str(), number.c_str(), own_.c_str(),
                                       "Pixmora!", "TCP", nullptr, seconds.c_str());
        };
        const int result = add(std::to_string(RouterLease));
        return result == leasesArePermanent ? add("0") : result;
    }

    void Unmap(int port) const {
        UPNP_DeletePortMapping(control_.c_str(), service_.c_str(), std::to_string(port).c_str(), "TCP", nullptr);
    }

private:
    Gateway(std::string control, std::string service, std::string own)
        : control_(std::move(control)), service_(std::move(service)), own_(std::move(own)) {}

    std::string control_;
    std::string service_;
    std::string own_;
};

std::string ReasonOf(int upnpCode) {
    const char *const words = strupnperror(upnpCode);
    return words != nullptr ? words : "error " + std::to_string(upnpCode);
}

class SystemProtocols : public RouterProtocols {
public:
    RouterReply Open(int port) override {
        RouterReply byNatPmp = OpenByNatPmp(port);
        if (byNatPmp.Outcome == RouterOutcome::Opened) return byNatPmp;
        RouterReply byUpnp = OpenByUpnp(port);
        return byUpnp.Outcome == RouterOutcome::NoRouter ? byNatPmp : byUpnp;
    }

    void Close() override {
        int ignored = 0;
        if (natPmpPort_ != 0) NatPmp().Map(natPmpPort_, 0, 0, ignored);
        if (upnpPort_ != 0) gateway_->Unmap(upnpPort_);
        natPmpPort_ = upnpPort_ = 0;
    }

private:
    RouterReply OpenByNatPmp(int port) {
        NatPmp router;
        RouterReply reply;
        reply.OuterAddress = router.OuterAddress();
        if (reply.OuterAddress.empty()) return reply;
        const int result = router.Map(port, port, RouterLease, reply.OuterPort);
        reply.Outcome = result == 0 ? RouterOutcome::Opened : RouterOutcome::Refused;
        if (result == 0) natPmpPort_ = port;
        if (result == NATPMP_ERR_NOTAUTHORIZED) reply.Reason = "it is not allowed in its settings";
        return reply;
    }

    RouterReply OpenByUpnp(int port) {
        if (!gateway_) gateway_ = Gateway::Find();
        if (!gateway_) return {};
        RouterReply reply;
        const int result = gateway_->Map(port);
        reply.Outcome = result == 0 ? RouterOutcome::Opened : RouterOutcome::Refused;
        reply.OuterAddress = gateway_->OuterAddress();
        if (result == 0) {
            upnpPort_ = reply.OuterPort = port;
        } else {
            reply.Reason = ReasonOf(result);
            gateway_.reset();  // looked for anew the next time
        }
        return reply;
    }

    std::optional<Gateway> gateway_;
    int natPmpPort_ = 0;  ///< ports that are open; 0 for none
    int upnpPort_ = 0;
};

}  // namespace

extern "C" RouterProtocols *PixmoraRouterProtocols() {
    return new SystemProtocols;
}

}  // namespace pixmora
