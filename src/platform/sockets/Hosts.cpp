#include "platform/sockets/Hosts.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <cctype>
#include <vector>

#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr std::size_t longestName = 253;
constexpr std::size_t longestLabel = 63;
constexpr int highestPort = 65535;

bool IsDigit(unsigned char character) {
    return std::isdigit(character) != 0;
}

bool IsLabel(std::string_view text) {
    return !text.empty() && text.size() <= longestLabel && text.front() != '-' && text.back() != '-' &&
           std::ranges::all_of(text, [](unsigned char character) {
               return character < 0x80 && (std::isalnum(character) != 0 || character == '-' || character == '_');
           });
}

bool IsName(std::string_view text) {
    const std::vector<std::string> labels = Split(text, ".");
    // A last label of digits alone would be the end of an address that is none.
    return text.size() <= longestName && !labels.empty() && std::ranges::all_of(labels, IsLabel) &&
           !std::ranges::all_of(labels.back(), IsDigit);
}

bool IsPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 && std::ranges::all_of(text, IsDigit) && Val(text) >= 1 &&
           Val(text) <= highestPort;
}

/// "host", "host:port", "[address]" or "[address]:port".
bool IsAuthority(std::string_view text, bool needsPort) {
    const std::size_t bracket = text.starts_with('[') ? text.find(']') : 0;
    if (bracket == std::string_view::npos) return false;
    const std::size_t colon = text.find(':', bracket);
    const std::string_view host = text.substr(0, colon);
    const bool isHost =
        bracket == 0 ? IsHost(host)
                     : host.size() == bracket + 1 && IsIpAddress(host.substr(1, bracket - 1)) && Contains(host, ":");
    return isHost && (colon == std::string_view::npos ? !needsPort : IsPort(text.substr(colon + 1)));
}

/// Of an address, 32 or 128, the highest first; none of what is none.
std::vector<bool> AddressBits(std::string_view text) {
    const std::string terminated(text);
    unsigned char bytes[sizeof(in6_addr)] = {};
    std::size_t count = 0;
    if (inet_pton(AF_INET, terminated.c_str(), bytes) == 1) count = sizeof(in_addr);
    if (inet_pton(AF_INET6, terminated.c_str(), bytes) == 1) count = sizeof(in6_addr);
    std::vector<bool> bits;
    if (text.find('\0') != std::string_view::npos) return bits;
    for (std::size_t i = 0; i < 8 * count; ++i) bits.push_back((bytes[i / 8] >> (7 - i % 8) & 1) != 0);
    return bits;
}

/// Nothing that would end an attribute of a page or a line of a request.
bool IsWebAddress(std::string_view text) {
    constexpr std::string_view never = "<>\"'\\`{}|^ ";
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (!EqualsIgnoreCase(text.substr(0, scheme.size()), scheme)) continue;
        const std::string_view rest = text.substr(scheme.size());
        return IsAuthority(rest.substr(0, rest.find_first_of("/?#")), false) &&
               std::ranges::none_of(rest, [never](unsigned char character) {
                   return character < ' ' || character == 0x7F ||
                          Contains(never, {reinterpret_cast<const char *>(&character), 1});
               });
    }
    return false;
}

}  // namespace

bool IsIpAddress(std::string_view text) {
    return !AddressBits(text).empty();
}

bool IsHost(std::string_view text) {
    return IsIpAddress(text) || IsName(text);
}

std::string HostIn(std::string_view answer) {
    answer = answer.substr(0, answer.find_last_not_of("\r\n") + 1);
    return IsHost(answer) ? std::string(answer) : std::string();
}

std::string WebAddress(const std::string &host, int port) {
    return "http://" + (Contains(host, ":") ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

std::string WebAddressFrom(std::string_view text, int port) {
    const std::string address(TrimWhitespace(text));
    if (IsHost(address)) return WebAddress(address, port);
    if (IsAuthority(address, true)) return "http://" + address;
    if (IsAuthority(address, false)) return "http://" + address + ":" + std::to_string(port);
    return IsWebAddress(address) ? address : std::string();
}

bool IsInNetwork(const std::string &address, const std::string &network) {
    const std::string text = Trim(network);
    const std::size_t slash = text.find('/');
    const std::vector<bool> own = AddressBits(address);
    const std::vector<bool> first = AddressBits(text.substr(0, slash));
    if (first.empty() || own.size() != first.size()) return false;
    if (slash == std::string::npos) return own == first;
    const std::string length = text.substr(slash + 1);
    if (length.empty() || length.size() > 3 || !std::ranges::all_of(length, IsDigit)) return false;
    const auto common = static_cast<std::ptrdiff_t>(Val(length));
    return common <= std::ssize(own) && std::equal(own.begin(), own.begin() + common, first.begin());
}

bool IsPrivateAddress(const std::string &address) {
    constexpr const char *networks[] = {"0.0.0.0/8",      "10.0.0.0/8",    "100.64.0.0/10",  "127.0.0.0/8",
                                        "169.254.0.0/16", "172.16.0.0/12", "192.168.0.0/16", "::/127",
                                        "fc00::/7",       "fe80::/10"};
    return std::ranges::any_of(networks, [&](const char *network) { return IsInNetwork(address, network); });
}

}  // namespace pixmora
