// The address that a proxy forwards, and the texts that are addresses, networks and hosts.
#include "Fuzz.h"
#include "core/site/RequestGrammar.h"
#include "platform/runtime/Text.h"
#include "platform/sockets/Hosts.h"
#include "platform/sockets/SocketAddress.h"

namespace pixmora {
namespace {

/// Whatever a visitor sends, what the proxy writes behind it is what counts.
void CheckForwarding(std::string_view text) {
    GetForwardedAddress(text);
    std::string visitors = "GET / HTTP/1.0\r\nCookie: " + std::string(text.substr(0, text.find("\r\n\r\n")));
    while (visitors.ends_with("\r\n")) visitors.erase(visitors.size() - 2);
    REQUIRE(GetForwardedAddress(visitors + "\r\nX-Forwarded-For: 203.0.113.7\r\n\r\n") == "203.0.113.7");
    if (Contains(text, "\r\n")) return;
    REQUIRE(GetForwardedAddress("GET / HTTP/1.0\r\nX-Forwarded-For: " + std::string(text) + ", ::1\r\n\r\n") == "::1");
}

void CheckAddress(const std::string &text) {
    const auto address = SocketAddress::From(text, 80);
    IsPrivateAddress(text);
    if (!address) return;
    const std::string plain = address->Text();
    REQUIRE(IsIpAddress(plain) && HoldsOnly(plain, "0123456789abcdef.:"));
    REQUIRE(IsInNetwork(plain, plain));
    const auto again = SocketAddress::From(plain, 80);
    REQUIRE(again && again->Text() == plain);
}

void CheckHosts(std::string_view text) {
    const std::string host = HostIn(text);
    REQUIRE(host.empty() || (IsHost(host) && Contains(text, host)));
    const std::string address = WebAddressFrom(text, 8080);
    REQUIRE(address.empty() || EqualsIgnoreCase(address.substr(0, 7), "http://") ||
            EqualsIgnoreCase(address.substr(0, 8), "https://"));
    REQUIRE(HoldsNone(address, " \r\n\"<>"));
}

}  // namespace

void CheckInput(std::string_view text) {
    CheckForwarding(text);
    CheckAddress(std::string(text));
    CheckHosts(text);
    const auto [address, network] = FirstLineAndRest(text);
    IsInNetwork(std::string(address), std::string(network));
}

}  // namespace pixmora
