#include "platform/sockets/TlsConnection.h"

#include <QTimer>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

TlsConnection::TlsConnection(std::weak_ptr<Winsock> element) : element_(std::move(element)), socket_(new QSslSocket) {}

std::shared_ptr<TlsConnection> TlsConnection::Connecting(std::weak_ptr<Winsock> element, const std::string &host,
                                                         int port) {
    auto connection = std::make_shared<TlsConnection>(std::move(element));
    QSslSocket *const socket = connection->socket_.get();
    connection->ConnectSignals();
    // From the loop, as it can fail at once.
    QTimer::singleShot(0, socket, [socket, name = QString::fromStdString(host), port] {
        socket->connectToHostEncrypted(name, static_cast<quint16>(port));
    });
    return connection;
}

void TlsConnection::ConnectSignals() {
    QSslSocket *const socket = socket_.get();
    QObject::connect(socket, &QSslSocket::encrypted, socket, [this] {
        state_ = SocketState::Connected;
        Raise(&Winsock::OnConnect);
    });
    QObject::connect(socket, &QSslSocket::readyRead, socket, [this] {
        if (state_ != SocketState::Connected) return;
        Raise(&Winsock::OnDataArrival, static_cast<std::size_t>(socket_->bytesAvailable()));
    });
    QObject::connect(socket, &QSslSocket::errorOccurred, socket, [this](QAbstractSocket::SocketError error) {
        if (state_ == SocketState::Connected && error == QAbstractSocket::RemoteHostClosedError) {
            Raise(&Winsock::OnClose);
            return;
        }
        state_ = SocketState::Error;
        Raise(&Winsock::OnError, ECONNABORTED, socket_->errorString().toStdString());
    });
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
    socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

/// Requests have no files to send.
bool TlsConnection::SendSource(std::string_view /*bytes*/, ByteSource /*source*/) {
    return false;
}

std::size_t TlsConnection::BytesWaiting() const {
    return static_cast<std::size_t>(socket_->encryptedBytesToWrite() + socket_->bytesToWrite());
}

std::string TlsConnection::Fetch() {
    return socket_->readAll().toStdString();
}

void TlsConnection::Finish() {
    state_ = SocketState::Closed;
    socket_->disconnect();
    socket_->disconnectFromHost();
}

}  // namespace pixmora
