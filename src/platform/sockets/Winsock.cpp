#include "platform/sockets/Winsock.h"

#include <cerrno>
#include <utility>

#include "platform/runtime/Modules.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/sockets/NetworkModule.h"
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

/// @return null where the module is not installed
const NetworkLibrary *Network() {
    static const auto *const library =
        static_cast<const NetworkLibrary *>(LoadModule("network", "PixmoraNetworkLibrary"));
    return library;
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

    void FinishLookup(Winsock &element, const std::vector<std::string> &found) {
        lookup.reset();
        const auto peer = found.empty() ? std::nullopt : SocketAddress::From(found.front(), element.RemotePort);
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
    const auto peer = IsSecure ? std::nullopt : SocketAddress::From(RemoteHost, RemotePort);
    if (RemotePort < 0 || RemotePort > highestPort || (!peer && Network() == nullptr)) {
        const auto failed = std::make_shared<SocketConnection>(weak_from_this(), -1, SocketState::Connecting);
        implementation_->connection = failed;
        failed->FailFromLoop(EINVAL);
        return;
    }
    if (peer) return implementation_->ConnectTo(*this, *peer);
    if (IsSecure) {
        implementation_->connection = TlsConnection::Connecting(*Network(), weak_from_this(), RemoteHost, RemotePort);
        return;
    }
    const auto lookup = std::make_shared<const bool>(true);
    implementation_->lookup = lookup;
    const auto finish = [element = weak_from_this(),
                         current = std::weak_ptr(lookup)](const std::vector<std::string> &found) {
        const auto self = element.lock();
        if (self && !current.expired()) self->implementation_->FinishLookup(*self, found);
    };
    Network()->Lookup(RemoteHost, finish);
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
