// The listening end of a Winsock element.
#include "platform/sockets/SocketListener.h"

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
constexpr const char *allOfFour = "0.0.0.0";

/// How long a connection that sends nothing keeps the next one waiting.
constexpr auto settlingTime = std::chrono::milliseconds(5);

/// By their descriptors.
std::map<int, OfferedConnection> offeredConnections;

int NewSocket(const SocketAddress &own) {
    return socket(own.Family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

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

std::shared_ptr<Listener> Listener::Make(std::weak_ptr<Winsock> element, std::shared_ptr<Places> places,
                                         const std::string &address, int port) {
    std::optional<SocketAddress> own = SocketAddress::From(address.empty() ? allOfFour : address, port);
    if (!own) ThrowListenError(EADDRNOTAVAIL);
    int number = NewSocket(*own);
    if (number < 0 && errno == EAFNOSUPPORT && address == Winsock::AllAddresses) {
        own = SocketAddress::From(allOfFour, port);  // a system without IPv6
        number = NewSocket(*own);
    }
    auto listener = std::make_shared<Listener>(number, std::move(element), std::move(places));
    listener->Begin(*own);
    return listener;
}

Listener::Listener(int number, std::weak_ptr<Winsock> element, std::shared_ptr<Places> places)
    : SocketDescriptor(number), element_(std::move(element)), places_(std::move(places)) {}

void Listener::Begin(const SocketAddress &own) {
    const int on = 1;
    const int off = 0;
    // What listens on all of IPv6 is there for IPv4 too, whatever the system's default.
    if (own.Family() == AF_INET6) setsockopt(Number(), IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    SetUpSending();
    if (Number() < 0 || setsockopt(Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(Number(), &own.General, own.Length) != 0 || listen(Number(), backlog) != 0 || !Watch(EPOLLIN)) {
        ThrowListenError(errno);
    }
    places_->OnFree = Resumer();
}

int Listener::Port() const {
    SocketAddress own;
    return getsockname(Number(), &own.General, &own.Length) == 0 ? own.Port() : 0;
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
    SocketAddress peer;
    const int number = accept4(Number(), &peer.General, &peer.Length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (number >= 0) {
        Offer(*element, number, peer.Text());
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
