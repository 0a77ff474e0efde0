// Names resolved and connections encrypted, a module of its own: its library brings a dozen others, and a site that
// asks nobody for anything never loads it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

/// What a TLS connection tells, always from the loop.
struct TlsEvents {
    std::function<void()> Encrypted;
    std::function<void(std::size_t bytesWaiting)> Arrived;
    std::function<void()> ClosedByPeer;
    std::function<void(const std::string &description)> Failed;  ///< any other end
};

/// A connection to a server whose certificate the machine trusts for its name.
class TlsSocket {
public:
    virtual ~TlsSocket() = default;
    virtual void Connect(const std::string &host, int port) = 0;
    virtual void Write(std::string_view bytes) = 0;
    virtual std::string ReadAll() = 0;
    /// Bytes that were not handed to the system yet.
    virtual std::size_t BytesToWrite() const = 0;
    /// No event comes after it.
    virtual void Close() = 0;
};

struct NetworkLibrary {
    /// Resolves a name off the loop. @param done called back once from the loop, with the addresses, those of IPv4
    /// first
    void (*Lookup)(const std::string &name, std::function<void(const std::vector<std::string> &addresses)> done);
    /// @return owned by the caller
    TlsSocket *(*NewTlsSocket)(TlsEvents events);
};

/// The module's one symbol.
extern "C" __attribute__((visibility("default"))) const NetworkLibrary PixmoraNetworkLibrary;

}  // namespace pixmora
