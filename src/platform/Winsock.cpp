#include "platform/Winsock.h"

#include <arpa/inet.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QHostInfo>
#include <QTimer>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <map>
#include <utility>

#include "platform/MessageLoop.h"
#include "platform/RunTimeError.h"
#include "platform/SocketConnection.h"
#include "platform/SocketLoop.h"

namespace pixmora {

namespace {

constexpr int backlog = 512;
constexpr int highestPort = 65535;

/// A connection in the hands of a ConnectionRequest handler.
struct OfferedConnection {
    std::string PeerAddress;
    std::shared_ptr<void> Unsettled;  ///< see Listener
};

/// By their descriptors.
std::map<int, OfferedConnection> offeredConnections;

std::string DottedAddress(const in_addr &address) {
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

[[noreturn]] void ThrowListenError(int error) {
    if (error == EADDRINUSE) throw RunTimeError(ErrorNumber::AddressInUse);
    if (error == EACCES) throw RunTimeError(ErrorNumber::PermissionDenied);
    throw RunTimeError(ErrorNumber::DeviceIOError, std::strerror(error));
}

void RequireClosed(SocketState state) {
    if (state != SocketState::Closed) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
}

/// How long a connection that sends nothing keeps the next one waiting.
constexpr auto settlingTime = std::chrono::milliseconds(5);

/// A listening element's descriptor. Offers one connection at a time: the next stays in the system's queue until this
/// one is settled, that is, has had its first answer, is closed, or has taken settlingTime. So quick requests follow
/// each other however many come at once, and each finds the places of those before it free again.
class Listener : public SocketDescriptor {
public:
    explicit Listener(std::weak_ptr<Winsock> element)
        : SocketDescriptor(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
          element_(std::move(element)) {}

    /// @return the port in use @throws RunTimeError
    int Listen(int port) {
        const int on = 1;
        sockaddr_in address{};
        socklen_t length = sizeof address;
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        auto *const general = reinterpret_cast<sockaddr *>(&address);
        if (Number() < 0 || setsockopt(Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
            bind(Number(), general, length) != 0 || listen(Number(), backlog) != 0 || !Watch(EPOLLIN) ||
            getsockname(Number(), general, &length) != 0) {
            ThrowListenError(errno);
        }
        return ntohs(address.sin_port);
    }

    void OnReady(std::uint32_t) override {
        const auto element = element_.lock();  // held, so that its handler may drop it
        if (!element) return;
        if (isOffering_ || !unsettled_.expired()) {
            Watch(0);
            return;
        }
        if (!HasSpareNumbers()) {
            Pause();
            return;
        }
        sockaddr_in address{};
        socklen_t length = sizeof address;
        const int number =
            accept4(Number(), reinterpret_cast<sockaddr *>(&address), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (number >= 0) {
            Offer(*element, number, DottedAddress(address.sin_addr));
        } else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
            Pause();  // above all, the process or the machine is out of descriptors
        }
    }

private:
    void Offer(const Winsock &element, int number, std::string address) {
        offeredConnections[number] = {std::move(address), MakeUnsettled()};
        const auto handler = element.OnConnectionRequest;
        isOffering_ = true;
        if (handler) RunEventHandler([&] { handler(number); });
        isOffering_ = false;
        if (offeredConnections.erase(number) != 0) close(number);
        if (unsettled_.expired()) Resume();
    }

    /// What the connection holds until it is settled.
    std::shared_ptr<void> MakeUnsettled() {
        const auto self = std::static_pointer_cast<Listener>(shared_from_this());
        const auto resume = [weak = std::weak_ptr<Listener>(self)] {
            if (const auto listener = weak.lock()) listener->Resume();
        };
        std::shared_ptr<void> unsettled(nullptr, [resume](void *) { resume(); });
        unsettled_ = unsettled;
        QTimer::singleShot(settlingTime, QCoreApplication::instance(),
                           [resume, weak = std::weak_ptr<void>(unsettled), self] {
                               if (weak.expired()) return;
                               self->unsettled_.reset();
                               resume();
                           });
        return unsettled;
    }

    void Resume() {
        if (Number() >= 0 && !isOffering_) Watch(EPOLLIN);
    }

    void Pause() {
        Watch(0);
        CallWhenFreed([weak = weak_from_this()] {
            const auto self = std::static_pointer_cast<Listener>(weak.lock());
            if (self) self->Resume();
        });
    }

    const std::weak_ptr<Winsock> element_;
    bool isOffering_ = false;
    std::weak_ptr<void> unsettled_;
};

}  // namespace

struct Winsock::Implementation {
    int localPort = 0;
    std::string remoteHost;
    int remotePort = 0;
    std::string remoteHostIP;

    // At most one of these three.
    std::shared_ptr<Listener> listener;
    std::shared_ptr<const bool> lookup;  ///< a name is being resolved; a result that finds this gone comes too late
    std::shared_ptr<SocketConnection> connection;

    void ConnectTo(std::weak_ptr<Winsock> element, const in_addr &address) {
        remoteHostIP = DottedAddress(address);
        connection = SocketConnection::Connecting(std::move(element), address, remotePort);
    }

    void FinishLookup(std::weak_ptr<Winsock> element, const QHostInfo &result) {
        lookup.reset();
        for (const QHostAddress &found : result.addresses()) {
            if (found.protocol() != QAbstractSocket::IPv4Protocol) continue;
            ConnectTo(std::move(element), in_addr{htonl(found.toIPv4Address())});
            return;
        }
        const auto failed = std::make_shared<SocketConnection>(std::move(element), -1, SocketState::Connecting);
        connection = failed;
        failed->Fail(EHOSTUNREACH, "Host not found");
    }
};

std::shared_ptr<Winsock> Winsock::Create() {
    return std::shared_ptr<Winsock>(new Winsock);
}

Winsock::Winsock() : implementation_(std::make_unique<Implementation>()) {}

Winsock::~Winsock() {
    Close();
}

SocketState Winsock::State() const {
    if (implementation_->listener) return SocketState::Listening;
    if (implementation_->lookup) return SocketState::ResolvingHost;
    return implementation_->connection ? implementation_->connection->State() : SocketState::Closed;
}

int Winsock::LocalPort() const {
    return implementation_->localPort;
}

void Winsock::SetLocalPort(int port) {
    implementation_->localPort = port;
}

void Winsock::Listen() {
    RequireClosed(State());
    const int port = implementation_->localPort;
    if (port < 0 || port > highestPort) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    RaiseDescriptorLimit();
    auto listener = std::make_shared<Listener>(weak_from_this());
    implementation_->localPort = listener->Listen(port);
    implementation_->listener = std::move(listener);
}

void Winsock::Accept(int requestId) {
    RequireClosed(State());
    auto offered = offeredConnections.extract(requestId);
    if (!offered) return;
    implementation_->remoteHostIP = std::move(offered.mapped().PeerAddress);
    implementation_->connection =
        SocketConnection::Accepted(weak_from_this(), requestId, std::move(offered.mapped().Unsettled));
}

void Winsock::SetRemoteHost(std::string host) {
    implementation_->remoteHost = std::move(host);
}

const std::string &Winsock::RemoteHost() const {
    return implementation_->remoteHost;
}

void Winsock::SetRemotePort(int port) {
    implementation_->remotePort = port;
}

void Winsock::Connect() {
    RequireClosed(State());
    implementation_->remoteHostIP.clear();
    in_addr address{};
    if (inet_pton(AF_INET, implementation_->remoteHost.c_str(), &address) == 1) {
        implementation_->ConnectTo(weak_from_this(), address);
        return;
    }
    const auto lookup = std::make_shared<const bool>(true);
    implementation_->lookup = lookup;
    const auto finish = [element = weak_from_this(), current = std::weak_ptr(lookup)](const QHostInfo &result) {
        const auto self = element.lock();
        if (self && !current.expired()) self->implementation_->FinishLookup(self, result);
    };
    QHostInfo::lookupHost(QString::fromStdString(implementation_->remoteHost), QCoreApplication::instance(), finish);
}

const std::string &Winsock::RemoteHostIP() const {
    return implementation_->remoteHostIP;
}

void Winsock::SendData(std::string_view bytes) {
    if (State() != SocketState::Connected) throw RunTimeError(ErrorNumber::ObjectNotSet);
    implementation_->connection->Send(bytes);
}

std::size_t Winsock::BytesWaiting() const {
    return implementation_->connection ? implementation_->connection->BytesWaiting() : 0;
}

std::string Winsock::GetData() {
    return implementation_->connection ? implementation_->connection->Fetch() : std::string();
}

void Winsock::Close() {
    if (const auto listener = std::exchange(implementation_->listener, nullptr)) listener->Close();
    implementation_->lookup.reset();  // left to run out: QHostInfo leaks the callback of one that is aborted
    if (const auto connection = std::exchange(implementation_->connection, nullptr)) connection->Finish();
}

}  // namespace pixmora
