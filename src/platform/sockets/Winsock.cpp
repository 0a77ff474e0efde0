#include "platform/sockets/Winsock.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QHostInfo>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/runtime/RunTimeError.h"
#include "platform/sockets/SocketConnection.h"
#include "platform/sockets/SocketListener.h"
#include "platform/sockets/SocketLoop.h"
#include "platform/sockets/TlsConnection.h"

namespace pixmora {

namespace {

constexpr int highestPort = 65535;

void RequireClosed(SocketState state) {
    if (state != SocketState::Closed) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
}

}  // namespace

struct Winsock::Implementation {
    // At most one of these three.
    std::shared_ptr<Listener> listener;
    std::shared_ptr<const bool> lookup;  ///< a name is being resolved; a result that finds this gone comes too late
    std::shared_ptr<ElementConnection> connection;

    std::shared_ptr<Places> places;  ///< of an element that listens, did, or was given a limit

    Places &MadePlaces() {
        if (!places) places = std::make_shared<Places>();
        return *places;
    }

    void ConnectTo(Winsock &element, const SocketAddress &peer) {
        element.RemoteHostIP = peer.Text();
        connection = SocketConnection::Connecting(element.weak_from_this(), peer);
    }

    /// With the first address found, of IPv4 if there is one.
    void FinishLookup(Winsock &element, const QHostInfo &result) {
        lookup.reset();
        QList<QHostAddress> found = result.addresses();
        std::stable_partition(found.begin(), found.end(), [](const QHostAddress &address) {
            return address.protocol() == QAbstractSocket::IPv4Protocol;
        });
        const auto peer = found.isEmpty()
                              ? std::nullopt
                              : SocketAddress::From(found.front().toString().toStdString(), element.RemotePort);
        if (peer) return ConnectTo(element, *peer);
        const auto failed = std::make_shared<SocketConnection>(element.weak_from_this(), -1, SocketState::Connecting);
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

int Winsock::ConnectionLimit() const {
    return implementation_->places ? implementation_->places->Limit() : 0;
}

void Winsock::SetConnectionLimit(int limit) {
    implementation_->MadePlaces().SetLimit(limit);
}

void Winsock::Listen() {
    RequireClosed(State());
    if (LocalPort < 0 || LocalPort > highestPort) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    RaiseDescriptorLimit();
    implementation_->MadePlaces();
    implementation_->listener = Listener::Make(weak_from_this(), implementation_->places, LocalAddress, LocalPort);
    LocalPort = implementation_->listener->Port();
}

void Winsock::Accept(int requestId) {
    RequireClosed(State());
    auto offered = TakeOffered(requestId);
    if (!offered) return;
    RemoteHostIP = std::move(offered->PeerAddress);
    implementation_->connection = SocketConnection::Accepted(weak_from_this(), requestId, std::move(offered->Admitted));
}

void Winsock::Connect() {
    RequireClosed(State());
    RemoteHostIP.clear();
    if (RemotePort < 0 || RemotePort > highestPort) {
        const auto failed = std::make_shared<SocketConnection>(weak_from_this(), -1, SocketState::Connecting);
        implementation_->connection = failed;
        failed->FailFromLoop(EINVAL);
        return;
    }
    if (IsSecure) {
        implementation_->connection = TlsConnection::Connecting(weak_from_this(), RemoteHost, RemotePort);
        return;
    }
    if (const auto peer = SocketAddress::From(RemoteHost, RemotePort)) return implementation_->ConnectTo(*this, *peer);
    const auto lookup = std::make_shared<const bool>(true);
    implementation_->lookup = lookup;
    const auto finish = [element = weak_from_this(), current = std::weak_ptr(lookup)](const QHostInfo &result) {
        const auto self = element.lock();
        if (self && !current.expired()) self->implementation_->FinishLookup(*self, result);
    };
    QHostInfo::lookupHost(QString::fromStdString(RemoteHost), QCoreApplication::instance(), finish);
}

void Winsock::SendData(std::string_view bytes) {
    if (State() != SocketState::Connected) throw RunTimeError(ErrorNumber::ObjectNotSet);
    implementation_->connection->Send(bytes);
}

void Winsock::SendData(std::string_view bytes, ByteSource source) {
    if (State() != SocketState::Connected) throw RunTimeError(ErrorNumber::ObjectNotSet);
    if (!implementation_->connection->SendSource(bytes, std::move(source)))
        throw RunTimeError(ErrorNumber::InvalidProcedureCall);
}

std::size_t Winsock::BytesWaiting() const {
    return implementation_->connection ? implementation_->connection->BytesWaiting() : 0;
}

std::int32_t Winsock::PeerIdleTime() {
    return implementation_->connection ? implementation_->connection->PeerIdleTime() : 0;
}

void Winsock::SetAnswering(bool isAnswering) {
    if (implementation_->connection) implementation_->connection->SetAnswering(isAnswering);
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
