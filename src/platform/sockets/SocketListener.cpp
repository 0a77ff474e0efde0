// The listening end of a Winsock element.
#include "platform/sockets/SocketListener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <map>
#include <utility>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr int backlog = 512;

/// How long a connection that sends nothing keeps the next one waiting.
constexpr auto settlingTime = std::chrono::milliseconds(5);

/// By their descriptors.
std::map<int, OfferedConnection> offeredConnections;

[[noreturn]] void ThrowListenError(int error) {
    if (error == EADDRINUSE) throw RunTimeError(ErrorNumber::AddressInUse);
    if (error == EADDRNOTAVAIL) throw RunTimeError(ErrorNumber::AddressNotAvailable);
    if (error == EACCES) throw RunTimeError(ErrorNumber::PermissionDenied);
    throw RunTimeError(ErrorNumber::DeviceIOError, std::strerror(error));
}

}  // namespace

void Places::SetLimit(int limit) {
    limit_ = std::max(limit, 0);
    if (OnFree && !AreTaken()) OnFree();
}

std::shared_ptr<void> Places::Take() {
    ++taken_;
    return {nullptr, [self = shared_from_this()](void *) {
                const bool wereTaken = self->AreTaken();
                --self->taken_;
                if (wereTaken && self->OnFree) self->OnFree();
            }};
}

std::optional<OfferedConnection> TakeOffered(int requestId) {
    auto offered = offeredConnections.extract(requestId);
    if (!offered) return std::nullopt;
    return std::move(offered.mapped());
}

std::string DottedAddress(const in_addr &address) {
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

Listener::Listener(std::weak_ptr<Winsock> element, std::shared_ptr<Places> places)
    : SocketDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
      element_(std::move(element)),
      places_(std::move(places)) {}

int Listener::Listen(const std::string &address, int port) {
    const int on = 1;
    sockaddr_in own{};
    socklen_t length = sizeof own;
    own.sin_family = AF_INET;
    own.sin_port = htons(static_cast<std::uint16_t>(port));
    if (!address.empty() && inet_pton(AF_INET, address.c_str(), &own.sin_addr) != 1) ThrowListenError(EADDRNOTAVAIL);
    auto *const general = reinterpret_cast<sockaddr *>(&own);
    SetUpSending();
    if (Number() < 0 || setsockopt(Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(Number(), general, length) != 0 || listen(Number(), backlog) != 0 || !Watch(EPOLLIN) ||
        getsockname(Number(), general, &length) != 0) {
        ThrowListenError(errno);
    }
    places_->OnFree = Resumer();
    return ntohs(own.sin_port);
}

void Listener::OnReady(std::uint32_t) {
    const auto element = element_.lock();  // held, so that its handler may drop it
    if (!element) return;
    if (!MayOffer()) {
        Watch(0);
        return;
    }
    if (!HasSpareNumbers()) {
        Pause();
        return;
    }
    sockaddr_in address{};
    socklen_t length = sizeof address;
    const int number = accept4(Number(), reinterpret_cast<sockaddr *>(&address), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (number >= 0) {
        Offer(*element, number, DottedAddress(address.sin_addr));
    } else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
        Pause();  // above all, the process or the machine is out of descriptors
    }
}

void Listener::Offer(const Winsock &element, int number, std::string address) {
    offeredConnections[number] = {std::move(address), {places_->Take(), MakeUnsettled()}};
    const auto handler = element.OnConnectionRequest;
    isOffering_ = true;
    if (handler) RunEventHandler([&] { handler(number); });
    isOffering_ = false;
    if (TakeOffered(number)) close(number);
    Resume();
}

/// What the connection holds until it is settled.
std::shared_ptr<void> Listener::MakeUnsettled() {
    std::shared_ptr<void> unsettled(nullptr, [resume = Resumer()](void *) { resume(); });
    unsettled_ = unsettled;
    unsettledSince_ = std::chrono::steady_clock::now();
    WatchSettling(settlingTime);
    return unsettled;
}

/// One timer for all connections: most are settled long before it runs out, and a timer for each would cost more than
/// they do.
void Listener::WatchSettling(std::chrono::milliseconds time) {
    if (std::exchange(isSettlingWatched_, true)) return;
    QTimer::singleShot(time, QCoreApplication::instance(), [weak = weak_from_this()] {
        if (const auto self = weak.lock()) std::static_pointer_cast<Listener>(self)->LookAtUnsettled();
    });
}

void Listener::LookAtUnsettled() {
    isSettlingWatched_ = false;
    if (unsettled_.expired()) return;
    const auto left = unsettledSince_ + settlingTime - std::chrono::steady_clock::now();
    if (left > left.zero()) {
        WatchSettling(std::chrono::ceil<std::chrono::milliseconds>(left));
    } else {
        unsettled_.reset();
        Resume();
    }
}

void Listener::Resume() {
    if (Number() >= 0 && MayOffer()) Watch(EPOLLIN);
}

void Listener::Pause() {
    Watch(0);
    CallWhenFreed(Resumer());
}

std::function<void()> Listener::Resumer() {
    return [weak = weak_from_this()] {
        if (const auto self = weak.lock()) std::static_pointer_cast<Listener>(self)->Resume();
    };
}

}  // namespace pixmora
