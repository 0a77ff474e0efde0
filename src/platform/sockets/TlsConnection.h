// The connected end of a Winsock element that speaks TLS, for requests to others.
#pragma once

#include <memory>
#include <string>

#include "platform/sockets/NetworkModule.h"
#include "platform/sockets/SocketConnection.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// One connection to a server whose certificate the machine trusts for that name; any other is an error. It comes
/// without SendComplete.
class TlsConnection : public ElementConnection, public std::enable_shared_from_this<TlsConnection> {
public:
    /// Begins to connect, name resolution included. Every failure is told from the loop.
    static std::shared_ptr<TlsConnection> Connecting(const NetworkLibrary &library, std::weak_ptr<Winsock> element,
                                                     const std::string &host, int port);

    TlsConnection(const NetworkLibrary &library, std::weak_ptr<Winsock> element);

    SocketState State() const override { return state_; }
    void Send(std::string_view bytes) override;
    bool SendSource(std::string_view bytes, ByteSource source) override;
    std::size_t BytesWaiting() const override;
    std::string Fetch() override;
    std::int32_t PeerIdleTime() override { return 0; }
    void Finish() override;

private:
    TlsEvents Events();
    template <class... Parameters, class... Arguments>
    void Raise(std::function<void(Parameters...)> Winsock::*event, const Arguments &...arguments);

    const std::weak_ptr<Winsock> element_;
    const std::unique_ptr<TlsSocket> socket_;
    SocketState state_ = SocketState::Connecting;
};

}  // namespace pixmora
