#include "platform/sockets/TlsConnection.h"

#include <cerrno>
#include <utility>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

TlsConnection::TlsConnection(const NetworkLibrary &library, std::weak_ptr<Winsock> element)
    : element_(std::move(element)), socket_(library.NewTlsSocket(Events())) {}

std::shared_ptr<TlsConnection> TlsConnection::Connecting(const NetworkLibrary &library, std::weak_ptr<Winsock> element,
                                                         const std::string &host, int port) {
    auto connection = std::make_shared<TlsConnection>(library, std::move(element));
    connection->socket_->Connect(host, port);
    return connection;
}

TlsEvents TlsConnection::Events() {
    TlsEvents events;
    events.Encrypted = [this] {
        state_ = SocketState::Connected;
        Raise(&Winsock::OnConnect);
    };
    events.Arrived = [this](std::size_t bytesWaiting) {
        Raise(&Winsock::OnDataArrival, bytesWaiting);
    };
    events.ClosedByPeer = [this] {
        Raise(&Winsock::OnClose);
    };
    events.Failed = [this](const std::string &description) {
        state_ = SocketState::Error;
        Raise(&Winsock::OnError, ECONNABORTED, description);
    };
    return events;
}

template <class... Parameters, class... Arguments>
void TlsConnection::Raise(std::function<void(Parameters...)> Winsock::*event, const Arguments &...arguments) {
    const auto self = shared_from_this();  // held, as the element: their handlers may drop both
    const auto element = element_.lock();
    if (!element || !((*element).*event)) return;
    const auto run = (*element).*event;
    RunEventHandler([&] { run(arguments...); });
}

void TlsConnection::Send(std::string_view bytes) {
    socket_->Write(bytes);
}

/// Requests have no files to send.
bool TlsConnection::SendSource(std::string_view /*bytes*/, ByteSource /*source*/) {
    return false;
}

std::size_t TlsConnection::BytesWaiting() const {
    return socket_->BytesToWrite();
}

std::string TlsConnection::Fetch() {
    return socket_->ReadAll();
}

void TlsConnection::Finish() {
    state_ = SocketState::Closed;
    socket_->Close();
}

}  // namespace pixmora
