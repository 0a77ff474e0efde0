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
    std::string localAddress;
    int localPort = 0;
    std::string remoteHost;
    int remotePort = 0;
    bool isSecure = false;
    std::string remoteHostIP;

    // At most one of these three.
    std::shared_ptr<Listener> listener;
    std::shared_ptr<const bool> lookup;  ///< a name is being resolved; a result that finds this gone comes too late
    std::shared_ptr<ElementConnection> connection;

    std::shared_ptr<Places> places;  ///< of an element that listens, did, or was given a limit

    Places &MadePlaces() {
        if (!places) places = std::make_shared<Places>();
        return *places;
    }

    void ConnectTo(std::weak_ptr<Winsock> element, const SocketAddress &peer) {
        remoteHostIP = peer.Text();
        connection = SocketConnection::Connecting(std::move(element), peer);
    }

    /// With the first address found, of IPv4 if there is one.
    void FinishLookup(std::weak_ptr<Winsock> element, const QHostInfo &result) {
        lookup.reset();
        QList<QHostAddress> found = result.addresses();
        std::stable_partition(found.begin(), found.end(), [](const QHostAddress &address) {
            return address.protocol() == QAbstractSocket::IPv4Protocol;
        });
        const auto peer =
            found.isEmpty() ? std::nullopt : SocketAddress::From(found.front().toString().toStdString(), remotePort);
        if (peer) {
            ConnectTo(std::move(element), *peer);
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

void Winsock::SetLocalAddress(std::string address) {
    implementation_->localAddress = std::move(address);
}

int Winsock::ConnectionLimit() const {
    return implementation_->places ? implementation_->places->Limit() : 0;
}

void Winsock::SetConnectionLimit(int limit) {
    implementation_->MadePlaces().SetLimit(limit);
}

void Winsock::Listen() {
    RequireClosed(State());
    const int port = implementation_->localPort;
    if (port < 0 || port > highestPort) throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    RaiseDescriptorLimit();
    implementation_->MadePlaces();
    implementation_->listener =
        Listener::Make(weak_from_this(), implementation_->places, implementation_->localAddress, port);
    implementation_->localPort = implementation_->listener->Port();
}

void Winsock::Accept(int requestId) {
    RequireClosed(State());
    auto offered = TakeOffered(requestId);
    if (!offered) return;
    implementation_->remoteHostIP = std::move(offered->PeerAddress);
    implementation_->connection = SocketConnection::Accepted(weak_from_this(), requestId, std::move(offered->Admitted));
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

void Winsock::SetSecure(bool isSecure) {
    implementation_->isSecure = isSecure;
}

void Winsock::Connect() {
    RequireClosed(State());
    implementation_->remoteHostIP.clear();
    const int port = implementation_->remotePort;
    if (port < 0 || port > highestPort) {
        const auto failed = std::make_shared<SocketConnection>(weak_from_this(), -1, SocketState::Connecting);
        implementation_->connection = failed;
        failed->FailFromLoop(EINVAL);
        return;
    }
    if (implementation_->isSecure) {
        implementation_->connection = TlsConnection::Connecting(weak_from_this(), implementation_->remoteHost, port);
        return;
    }
    if (const auto peer = SocketAddress::From(implementation_->remoteHost, port)) {
        implementation_->ConnectTo(weak_from_this(), *peer);
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

void Winsock::SetRemoteHostIP(std::string address) {
    implementation_->remoteHostIP = std::move(address);
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
