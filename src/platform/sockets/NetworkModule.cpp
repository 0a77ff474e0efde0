// The module that needs Qt's network library.
#include "platform/sockets/NetworkModule.h"

#include <QCoreApplication>
#include <QHostInfo>
#include <QSslSocket>
#include <algorithm>
#include <memory>
#include <utility>

namespace pixmora {

namespace {

bool IsIPv4(const QHostAddress &address) {
    return address.protocol() == QAbstractSocket::IPv4Protocol;
}

void Lookup(const std::string &name, std::function<void(const std::vector<std::string> &)> done) {
    const auto finish = [done = std::move(done)](const QHostInfo &result) {
        QList<QHostAddress> found = result.addresses();
        std::stable_partition(found.begin(), found.end(), IsIPv4);
        std::vector<std::string> addresses;
        for (const QHostAddress &address : found) addresses.push_back(address.toString().toStdString());
        done(addresses);
    };
    QHostInfo::lookupHost(QString::fromStdString(name), QCoreApplication::instance(), finish);
}

class QtTlsSocket : public TlsSocket {
public:
    explicit QtTlsSocket(TlsEvents events) : events_(std::move(events)) {
        QSslSocket *const socket = socket_.get();
        QObject::connect(socket, &QSslSocket::encrypted, socket, [this] {
            isEncrypted_ = true;
            events_.Encrypted();
        });
        QObject::connect(socket, &QSslSocket::readyRead, socket, [this] {
            if (isEncrypted_) events_.Arrived(static_cast<std::size_t>(socket_->bytesAvailable()));
        });
        QObject::connect(socket, &QSslSocket::errorOccurred, socket, [this](QAbstractSocket::SocketError error) {
            if (isEncrypted_ && error == QAbstractSocket::RemoteHostClosedError) return events_.ClosedByPeer();
            events_.Failed(socket_->errorString().toStdString());
        });
    }

    void Connect(const std::string &host, int port) override {
        // From the loop, as it can fail at once.
        const auto connect = [socket = socket_.get(), name = QString::fromStdString(host), port] {
            socket->connectToHostEncrypted(name, static_cast<quint16>(port));
        };
        QMetaObject::invokeMethod(socket_.get(), connect, Qt::QueuedConnection);
    }
    void Write(std::string_view bytes) override { socket_->write(bytes.data(), static_cast<qint64>(bytes.size())); }
    std::string ReadAll() override { return socket_->readAll().toStdString(); }
    std::size_t BytesToWrite() const override {
        return static_cast<std::size_t>(socket_->encryptedBytesToWrite() + socket_->bytesToWrite());
    }
    void Close() override {
        socket_->disconnect();
        socket_->disconnectFromHost();
    }

private:
    struct DeleteLater {
        void operator()(QSslSocket *socket) const { socket->deleteLater(); }  // it may be in the midst of a signal
    };

    const TlsEvents events_;
    const std::unique_ptr<QSslSocket, DeleteLater> socket_{new QSslSocket};
    bool isEncrypted_ = false;
};

TlsSocket *NewTlsSocket(TlsEvents events) {
    return new QtTlsSocket(std::move(events));
}

}  // namespace

extern "C" const NetworkLibrary PixmoraNetworkLibrary{Lookup, NewTlsSocket};

}  // namespace pixmora
