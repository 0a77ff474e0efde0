// The connected end of a Winsock element: its buffers, and the order in which its events come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/runtime/Clock.h"
#include "platform/sockets/SocketAddress.h"
#include "platform/sockets/SocketListener.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// What an element asks of its connection.
class ElementConnection {
public:
    virtual ~ElementConnection() = default;
    virtual SocketState State() const = 0;
    /// Only while connected.
    virtual void Send(std::string_view bytes) = 0;
    /// The bytes, and the source's behind them. @return false while another source waits, or where none is taken:
    /// nothing is sent then
    virtual bool SendSource(std::string_view bytes, ByteSource source) = 0;
    virtual std::size_t BytesWaiting() const = 0;
    virtual std::string Fetch() = 0;
    /// See Winsock.
    virtual std::int32_t PeerIdleTime() = 0;
    virtual void SetAnswering(bool) {}
    /// The element's Close. No event comes after it.
    virtual void Finish() = 0;
};

/// One connection, from its begin to its end; the element gets a new one for its next.
///
/// An event is never raised inside a handler of its own kind (that handler may turn the loop, and would nest without
/// bound); what has come meanwhile is raised when the handler returns. Events of different kinds do nest. While
/// DataArrival's handler is on the stack, or its bytes were not fetched, nothing is read: so at most 64 KB of input
/// wait here.
///
///     begin -> Connecting -> Connected -> Closed (Finish)
///                  |             |
///                  +-------------+------> Error -> Closed (Finish)
class SocketConnection : public SocketDescriptor, public ElementConnection {
public:
    /// Over a descriptor that was accepted.
    static std::shared_ptr<SocketConnection> Accepted(std::weak_ptr<Winsock> element, int number, Admission admission);
    /// Begins to connect. Every failure is told from the loop.
    static std::shared_ptr<SocketConnection> Connecting(std::weak_ptr<Winsock> element, const SocketAddress &peer);

    SocketConnection(std::weak_ptr<Winsock> element, int number, SocketState state);

    SocketState State() const override { return state_; }
    void Send(std::string_view bytes) override;
    bool SendSource(std::string_view bytes, ByteSource source) override;
    std::size_t BytesWaiting() const override {
        return unsent_.size() - unsentStart_ + static_cast<std::size_t>(SourceLeft()) + behindSource_.size();
    }
    std::string Fetch() override;
    std::int32_t PeerIdleTime() override;
    void SetAnswering(bool isAnswering) override;
    void Finish() override;
    /// Fails at the loop's next turn, for a failure met while a caller of the element is on the stack.
    void FailFromLoop(int number);
    /// Ends the connection and raises the error; only from the loop.
    void Fail(int number, const std::string &description);

    void OnReady(std::uint32_t events) override;

private:
    enum Handler : unsigned {
        ConnectHandler = 1,
        DataArrivalHandler = 2,
        SendCompleteHandler = 4,
        CloseHandler = 8,
        ErrorHandler = 16,
        PutOffAnswer = 32,  ///< counts as DataArrival's
        PeerEndHandler = 64
    };

    template <class... Parameters, class... Arguments>
    void Raise(Handler handler, std::function<void(Parameters...)> Winsock::*event, const Arguments &...arguments);

    bool WantsToRead() const;
    bool WantsToWrite() const;
    bool IsSendCompleteDue() const;
    bool IsCloseDue() const;
    std::uint32_t Wanted() const;
    std::int64_t SourceLeft() const { return source_.Length - sourceSent_; }

    void BecomeConnected();
    void Write();
    void WriteSource();
    void EndSource();
    void Read();
    void NotePeerEnd();
    void DropBytes();
    void DropUnsent();
    std::size_t WriteNow(std::string_view bytes);

    const std::weak_ptr<Winsock> element_;
    SocketState state_;
    Admission admission_;
    std::string received_;         ///< not yet fetched
    std::string unsent_;           ///< not yet taken by the network, from unsentStart_ on
    std::size_t unsentStart_ = 0;  ///< an offset, so that a slow reader of a big answer costs no copying
    ByteSource source_;            ///< goes behind unsent_
    std::int64_t sourceSent_ = 0;
    std::string behindSource_;     ///< goes behind source_
    unsigned running_ = 0;         ///< the handlers on the stack
    std::uint64_t exchanged_ = 0;  ///< bytes, both ways, when PeerIdleTime last saw them grow
    Tick peerIdleSince_ = GetTickCount();
    int failure_ = 0;       ///< errno that waits to be raised
    bool hasSent_ = false;  ///< SendComplete owes an event
    bool isPeerEndSeen_ = false;
    bool isInputEnded_ = false;  ///< and every byte before the end was read
    bool isCloseRaised_ = false;
};

}  // namespace pixmora
