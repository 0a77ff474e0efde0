#include "platform/sockets/Winsock.h"

#include <arpa/inet.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QHostInfo>
#include <cerrno>
#include <utility>

#include "platform/runtime/RunTimeError.h"
#include "platform/sockets/SocketConnection.h"
#include "platform/sockets/SocketListener.h"
#include "platform/sockets/SocketLoop.h"

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
    std::string remoteHostIP;

    // At most one of these three.
    std::shared_ptr<Listener> listener;
    std::shared_ptr<const bool> lookup;  ///< a name is being resolved; a result that finds this gone comes too late
    std::shared_ptr<SocketConnection> connection;

    std::shared_ptr<Places> places;  ///< of an element that listens, did, or was given a limit

    Places &MadePlaces() {
        if (!places) places = std::make_shared<Places>();
        return *places;
    }

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
    auto listener = std::make_shared<Listener>(weak_from_this(), implementation_->places);
    implementation_->localPort = listener->Listen(implementation_->localAddress, port);
    implementation_->listener = std::move(listener);
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
