// The Winsock element: one TCP socket with the operations and events of the run time's control, on a non-blocking
// descriptor watched by the message loop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pixmora {

/// The control's states, by its numbers.
enum class SocketState { Closed = 0, Listening = 2, ResolvingHost = 4, Connecting = 6, Connected = 7, Error = 9 };

/// Bytes that are read only when the network takes them.
struct ByteSource {
    /// Reads at an offset. @return how many bytes came; fewer than asked for when there are no more
    std::function<std::size_t(std::int64_t offset, void *bytes, std::size_t count)> Read;
    std::int64_t Length = 0;  ///< bytes that it has to give
};

/// Always owned through a shared_ptr, also where an owner adds to it by deriving: events hold the element while their
/// handler runs, so a handler may drop the last reference of its owner. All events run under the event guard and may
/// run inside another handler's DoEvents, but never inside a handler of the same event of the same element: what came
/// meanwhile is raised when that one has returned.
///
///                 Listen                     Close
///     Closed ---------------> Listening ----------------> Closed
///     Closed -- Accept -----> Connected -- Close -------> Closed
///     Closed -- Connect ----> ResolvingHost > Connecting > Connected
///                                  |              |            | failed write
///                                  +--------------+------------+----> Error event; the handler closes
class Winsock : public std::enable_shared_from_this<Winsock> {
public:
    static std::shared_ptr<Winsock> Create();
    virtual ~Winsock();
    Winsock(const Winsock &) = delete;
    Winsock &operator=(const Winsock &) = delete;

    int Index = 0;    ///< place in a control array, for the owner
    std::string Tag;  ///< free text of the owner

    /// Port to listen on, 0 to 65535; after Listen the port in use (which tells what a 0 became).
    int LocalPort = 0;
    /// The one address of this machine to listen on; empty: all its IPv4 addresses; AllAddresses: those of both
    /// families.
    std::string LocalAddress;
    static constexpr const char *AllAddresses = "::";
    std::string RemoteHost;  ///< address or name to connect to
    int RemotePort = 0;
    /// Whether Connect speaks TLS, with a server whose certificate this machine trusts; any other is an error.
    bool IsSecure = false;
    /// The peer's address, IPv4's dotted; empty before there is one, and with TLS. To be replaced for a peer that
    /// speaks for another.
    std::string RemoteHostIP;

    /// A connection waits to be accepted; `requestId` is its descriptor. One that no element accepts in the handler is
    /// closed.
    std::function<void(int requestId)> OnConnectionRequest;
    std::function<void()> OnConnect;
    /// Bytes have arrived; GetData fetches them. Comes again only for further bytes.
    std::function<void(std::size_t bytesTotal)> OnDataArrival;
    /// The send buffer has emptied into the network. Once for each emptying, always from the loop and never from inside
    /// SendData, also while another handler of this element waits in DoEvents.
    std::function<void()> OnSendComplete;
    /// The peer has ended its sending. Held back while a handler of this element is on the stack or bytes wait to be
    /// sent, so that a half-closed client still gets its answer.
    std::function<void()> OnClose;
    /// The peer has ended its sending. Comes at once, also while handlers of this element are on the stack.
    std::function<void()> OnPeerEnd;
    /// A failed connect, read or write. The element is in state Error. @param number errno; @param description its text
    std::function<void(int number, const std::string &description)> OnError;

    SocketState State() const;

    /// How many accepted connections may be open at once, 0 for any number. The next ones stay in the system's queue
    /// until one closes. Takes effect at once, but closes none.
    int ConnectionLimit() const;
    void SetConnectionLimit(int limit);
    /// Accepting pauses while the process has no descriptors left and goes on when one is closed.
    /// @throws RunTimeError AddressInUse when another program holds the port, AddressNotAvailable for a local address
    /// that isn't this machine's, PermissionDenied, InvalidProcedureCall for a port out of range or, as with Accept and
    /// Connect, when the element isn't closed
    void Listen();
    /// Takes a pending connection. @param requestId from OnConnectionRequest. On failure the state stays Closed.
    void Accept(int requestId);

    /// Name resolution and connecting run on the loop; OnConnect or OnError tells the outcome.
    void Connect();

    /// Appends to the send buffer and tries to write at once; never blocks. Bytes leave in the order of the calls.
    /// @throws RunTimeError ObjectNotSet when the element isn't connected
    void SendData(std::string_view bytes);
    /// The same, and behind the bytes those of a source, piece by piece. It is dropped when it has gone or the
    /// connection ends. A source that gives less than its length raises Error. @throws RunTimeError
    /// InvalidProcedureCall while another source waits
    void SendData(std::string_view bytes, ByteSource source);
    /// Bytes not yet taken by the network.
    std::size_t BytesWaiting() const;

    /// ms for which the connected peer has neither sent a byte nor taken one of those sent to it, although it is its
    /// turn: 0 while a handler is on the stack and nothing waits to be sent. What the peer does is only seen here, so
    /// the result is as fine as the calls are frequent.
    std::int32_t PeerIdleTime();

    /// While set, the element is as with a handler on the stack: for a request whose answer has been put off. On a
    /// closed element it does nothing.
    void SetAnswering(bool isAnswering);

    /// Everything that has arrived and was not fetched yet.
    std::string GetData();

    /// Closes; on a closed element it does nothing. What the network has taken is still delivered; what has not is
    /// dropped. No event comes after it.
    void Close();

protected:
    Winsock();

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace pixmora
