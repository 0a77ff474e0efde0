// The outbound request and its waits.
#include "outside/OutboundRequest.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

constexpr Tick requestLimit = 20000;
constexpr Tick connectLimit = 15000;
constexpr Tick firstByteLimit = 15000;
constexpr Tick silenceLimit = 5000;
constexpr int defaultPort = 80;
constexpr int defaultSecurePort = 443;
constexpr int highestPort = 65535;
constexpr std::string_view schemeEnd = "://";
constexpr std::string_view headEnd = "\r\n\r\n";

struct Address {
    std::string Host;
    int Port = defaultPort;
    std::string Path;
    bool IsSecure = false;
};

std::optional<int> ParsePort(std::string_view text) {
    const std::int32_t port = Try([&] { return CLng(text); }).value_or(0);
    return port > 0 && port <= highestPort ? std::optional<int>(port) : std::nullopt;
}

bool IsControlCharacter(char character) {
    return static_cast<unsigned char>(character) < ' ';
}

/// None for an address that leads nowhere, and for one that would break the request's lines.
std::optional<Address> ParseAddress(std::string_view url) {
    if (std::any_of(url.begin(), url.end(), IsControlCharacter)) return std::nullopt;
    Address address;
    const std::size_t scheme = url.find(schemeEnd);
    if (scheme != std::string_view::npos) {
        address.IsSecure = EqualsIgnoreCase(url.substr(0, scheme), "https");
        url.remove_prefix(scheme + schemeEnd.size());
    }
    if (address.IsSecure) address.Port = defaultSecurePort;
    const std::size_t slash = url.find('/');
    std::string_view host = url.substr(0, slash);
    address.Path = slash == std::string_view::npos ? "/" : std::string(url.substr(slash));
    const std::size_t bracket = host.starts_with('[') ? host.find(']') : std::string_view::npos;
    const std::size_t colon = host.find(':', bracket == std::string_view::npos ? 0 : bracket);
    if (colon != std::string_view::npos) {
        const std::optional<int> port = ParsePort(host.substr(colon + 1));
        if (!port) return std::nullopt;
        address.Port = *port;
        host = host.substr(0, colon);
    }
    if (bracket != std::string_view::npos) host = host.substr(1, bracket - 1);
    if (host.empty()) return std::nullopt;
    address.Host = host;
    return address;
}

bool IsOpen(const Winsock &socket) {
    return socket.State() != SocketState::Closed && socket.State() != SocketState::Error;
}

/// Sleeps in the loop until there is no reason to wait any more, the socket has ended, or the time is over.
/// @param deadline of the whole request
template <typename Condition>
void WaitWhile(const Winsock &socket, Tick limit, Tick deadline, const Condition &hasReason) {
    Tick end = TickAfter(GetTickCount(), limit);
    if (TicksBetween(end, deadline) < 0) end = deadline;
    while (hasReason() && IsOpen(socket) && TicksBetween(GetTickCount(), end) > 0) WaitUntilTick(end);
}

void CollectAnswer(const std::weak_ptr<Winsock> &weak) {
    const std::shared_ptr<Winsock> socket = weak.lock();
    socket->Tag += socket->GetData();
    if (socket->Tag.size() < LongestAnswer) return;
    socket->Tag.resize(LongestAnswer);
    socket->Close();
}

/// Each request has an element of its own in the place of the one before, whose request, if it still waits, finds its
/// socket closed and its Tag empty. So two that overlap never see each other's answer.
std::shared_ptr<Winsock> ConnectAnew(std::shared_ptr<Winsock> &place, const Address &address) {
    place->Tag.clear();
    place->Close();
    std::shared_ptr<Winsock> socket = place = Winsock::Create();
    const std::weak_ptr<Winsock> weak = socket;
    socket->OnDataArrival = [weak](std::size_t) {
        CollectAnswer(weak);
    };
    socket->OnClose = [weak] {
        weak.lock()->Close();
    };
    socket->OnError = [weak](int, const std::string &) {
        weak.lock()->Close();
    };
    socket->RemoteHost = address.Host;
    socket->RemotePort = address.Port;
    socket->IsSecure = address.IsSecure;
    socket->Connect();
    return socket;
}

void SendRequest(Winsock &socket, const std::string &path) {
    socket.SendData("GET " + path + " HTTP/1.0\r\nHost: " + socket.RemoteHost + "\r\n\r\n");
}

void ReceiveAnswer(const Winsock &socket, Tick deadline) {
    WaitWhile(socket, firstByteLimit, deadline, [&] { return socket.Tag.empty(); });
    std::size_t length = 0;
    do {
        length = socket.Tag.size();
        WaitWhile(socket, silenceLimit, deadline, [&] { return socket.Tag.size() == length; });
    } while (socket.Tag.size() != length);
}

std::string WithoutHead(const std::string &answer) {
    const std::size_t end = answer.find(headEnd);
    return end == std::string::npos ? answer : answer.substr(end + headEnd.size());
}

}  // namespace

std::string GetWebPage(std::string_view url) {
    const std::optional<Address> address = ParseAddress(url);
    if (!address) return {};
    const Tick deadline = TickAfter(GetTickCount(), requestLimit);
    const std::shared_ptr<Winsock> socket = ConnectAnew(gSystray->wnskDownload, *address);
    WaitWhile(*socket, connectLimit, deadline, [&] { return socket->State() != SocketState::Connected; });
    if (socket->State() == SocketState::Connected) {
        SendRequest(*socket, address->Path);
        ReceiveAnswer(*socket, deadline);
    }
    socket->Close();
    return WithoutHead(socket->Tag);
}

void EndWebPageRequest() {
    if (!gSystray) return;
    gSystray->wnskDownload->Tag.clear();
    gSystray->wnskDownload->Close();
}

void SendWebRequest(std::string_view url) {
    const std::optional<Address> address = ParseAddress(url);
    if (!address) return;
    Winsock *const socket = ConnectAnew(gSystray->wnskReport, *address).get();
    socket->OnConnect = [socket, path = address->Path] {
        SendRequest(*socket, path);
    };
    gSystray->tmrReport.OnTimer = [] {
        gSystray->tmrReport.SetEnabled(false);
        gSystray->wnskReport->Close();
    };
    gSystray->tmrReport.SetInterval(requestLimit);
    gSystray->tmrReport.SetEnabled(true);
}

}  // namespace pixmora
