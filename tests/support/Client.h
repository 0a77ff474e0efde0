// A test's end of a connection to a server in the same process: it never blocks, and turns the message loop while it
// waits.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Text.h"

namespace pixmora::test {

inline constexpr std::chrono::milliseconds patience{20000};

/// Turns the loop until the condition holds, asleep between turns that have nothing to do. A set clock stays where it
/// is.
/// @param descriptor wakes the wait early when it can be read, -1: none. @return whether the condition came to hold in
/// time
template <class Condition>
bool TurnUntil(Condition condition, std::chrono::milliseconds limit = patience, int descriptor = -1) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        DoEvents();
        if (condition()) return true;
        pollfd readable{descriptor, POLLIN, 0};
        poll(&readable, 1, 1);
    }
    return true;
}

/// One connection. Every function that waits throws std::runtime_error when the time limit passes.
class Client {
public:
    /// Connects to 127.0.0.1. @param from the address that the server sees; any of 127.0.0.0/8
    /// @param receiveBuffer SO_RCVBUF in bytes, small for a reader who stalls; 0: the system's
    explicit Client(int port, const std::string &from = "127.0.0.1", int receiveBuffer = 0)
        : socket_(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        if (receiveBuffer > 0) setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
        const sockaddr_in own = Address(from, 0);
        const sockaddr_in server = Address("127.0.0.1", port);
        if (bind(socket_, reinterpret_cast<const sockaddr *>(&own), sizeof own) != 0) Throw("bind");
        if (connect(socket_, reinterpret_cast<const sockaddr *>(&server), sizeof server) != 0 && errno != EINPROGRESS)
            Throw("connect");
    }
    ~Client() { Close(); }
    Client(Client &&other) noexcept
        : socket_(std::exchange(other.socket_, -1)),
          received_(std::move(other.received_)),
          hasEnded_(other.hasEnded_) {}

    void Send(std::string_view bytes) {
        Wait("send", [&] {
            bytes.remove_prefix(SendSome(bytes));
            return bytes.empty();
        });
    }
    /// Sends what the network takes without waiting. @return how many bytes
    std::size_t SendSome(std::string_view bytes) {
        const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN && errno != EINPROGRESS) Throw("send");
        return count < 0 ? 0 : static_cast<std::size_t>(count);
    }

    /// Ends the sending side; receiving goes on.
    void HalfClose() { shutdown(socket_, SHUT_WR); }

    /// Takes what has arrived, without waiting. @return everything received so far
    const std::string &Receive() {
        std::array<char, 16384> buffer{};
        ssize_t count = 0;
        while (!hasEnded_ && (count = recv(socket_, buffer.data(), buffer.size(), 0)) > 0)
            received_.append(buffer.data(), static_cast<std::size_t>(count));
        wasReset_ |= count < 0 && errno != EAGAIN && errno != EINPROGRESS && errno != ENOTCONN;
        hasEnded_ |= count == 0 || wasReset_;
        return received_;
    }
    /// Everything up to the server's close. @throws std::runtime_error also when the server resets the connection
    std::string ReceiveAll() {
        Wait("receive", [&] { return HasEnded(); });
        if (wasReset_) throw std::runtime_error(Concat("Client: reset after ", received_.size(), " bytes"));
        return received_;
    }
    void WaitForBytes(std::size_t count) {
        Wait("receive", [&] { return Receive().size() >= count || hasEnded_; });
    }

    /// Whether the server has closed or reset the connection.
    bool HasEnded() {
        Receive();
        return hasEnded_;
    }

    void Close() {
        if (socket_ >= 0) close(std::exchange(socket_, -1));
    }
    /// Vanishes: the server sees a reset.
    void Reset() {
        const linger atOnce{1, 0};
        setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        Close();
    }

private:
    static sockaddr_in Address(const std::string &dotted, int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        inet_pton(AF_INET, dotted.c_str(), &address.sin_addr);
        return address;
    }

    template <class Condition>
    void Wait(const char *what, Condition condition) const {
        if (!TurnUntil(condition, patience, socket_)) throw std::runtime_error(Concat("Client: too long: ", what));
    }

    [[noreturn]] static void Throw(const char *what) {
        throw std::runtime_error(Concat("Client: ", what, ": ", std::strerror(errno)));
    }

    int socket_;
    std::string received_;
    bool hasEnded_ = false;
    bool wasReset_ = false;
};

/// One request and everything that the server answers until it closes. @throws std::runtime_error as Client does
inline std::string Fetch(int port, std::string_view request, const std::string &from = "127.0.0.1") {
    Client client(port, from);
    client.Send(request);
    return client.ReceiveAll();
}

}  // namespace pixmora::test
