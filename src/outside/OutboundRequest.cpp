// The outbound request and its waits.
#include "outside/OutboundRequest.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

#include "core/site/Globals.h"
#include "core/site/clsTimer.h"
#include "core/site/frmSystray.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr Tick connectLimit = 15000;
constexpr Tick firstByteLimit = 15000;
constexpr Tick silenceLimit = 5000;
constexpr int defaultPort = 80;
constexpr int highestPort = 65535;
constexpr std::string_view schemeEnd = "://";
constexpr std::string_view headEnd = "\r\n\r\n";

struct Address {
    std::string Host;
    int Port = defaultPort;
    std::string Path;
};

std::optional<int> ParsePort(std::string_view text) {
    try {
        const std::int32_t port = CLng(text);
        if (port > 0 && port <= highestPort) return port;
    } catch (const RunTimeError &) {
        // As any other port that can't be.
    }
    return std::nullopt;
}

bool IsControlCharacter(char character) {
    return static_cast<unsigned char>(character) < ' ';
}

/// None for an address that leads nowhere, and for one that would break the request's lines.
std::optional<Address> ParseAddress(std::string_view url) {
    if (std::any_of(url.begin(), url.end(), IsControlCharacter)) return std::nullopt;
    const std::size_t scheme = url.find(schemeEnd);
    if (scheme != std::string_view::npos) url.remove_prefix(scheme + schemeEnd.size());
    const std::size_t slash = url.find('/');
    std::string_view host = url.substr(0, slash);
    Address address;
    address.Path = slash == std::string_view::npos ? "/" : std::string(url.substr(slash));
    const std::size_t colon = host.find(':');
    if (colon != std::string_view::npos) {
        const std::optional<int> port = ParsePort(host.substr(colon + 1));
        if (!port) return std::nullopt;
        address.Port = *port;
        host = host.substr(0, colon);
    }
    if (host.empty()) return std::nullopt;
    address.Host = host;
    return address;
}

bool IsOpen(const Winsock &socket) {
    return socket.State() != SocketState::Closed && socket.State() != SocketState::Error;
}

/// Sleeps in the loop until there is no reason to wait any more, the socket has ended, or the time is over.
template <typename Condition>
void WaitWhile(const Winsock &socket, Tick limit, const Condition &hasReason) {
    clsTimer timer;
    timer.StartTimer();
    while (hasReason() && IsOpen(socket)) {
        const std::int64_t left = limit - timer.Elapsed();
        if (left <= 0) return;
        WaitUntilTick(TickAfter(GetTickCount(), static_cast<Tick>(left)));
    }
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
std::shared_ptr<Winsock> TakeDownloadSocket() {
    const std::shared_ptr<Winsock> former = gSystray->wnskDownload;
    former->Tag.clear();
    former->Close();
    std::shared_ptr<Winsock> socket = gSystray->wnskDownload = Winsock::Create();
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
    return socket;
}

void ReceiveAnswer(const Winsock &socket) {
    WaitWhile(socket, firstByteLimit, [&] { return socket.Tag.empty(); });
    std::size_t length = 0;
    do {
        length = socket.Tag.size();
        WaitWhile(socket, silenceLimit, [&] { return socket.Tag.size() == length; });
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
    const std::shared_ptr<Winsock> socket = TakeDownloadSocket();
    socket->SetRemoteHost(address->Host);
    socket->SetRemotePort(address->Port);
    socket->Connect();
    WaitWhile(*socket, connectLimit, [&] { return socket->State() != SocketState::Connected; });
    if (socket->State() == SocketState::Connected) {
        socket->SendData("GET " + address->Path + " HTTP/1.0\r\nHost: " + socket->RemoteHost() + "\r\n\r\n");
        ReceiveAnswer(*socket);
    }
    socket->Close();
    return WithoutHead(socket->Tag);
}

void EndWebPageRequest() {
    if (gSystray) gSystray->wnskDownload->Close();
}

}  // namespace pixmora
