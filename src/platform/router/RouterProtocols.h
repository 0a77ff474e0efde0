// What a home's router understands: NAT-PMP (RFC 6886) and UPnP's gateway device.
#pragma once

#include <memory>
#include <string>

namespace pixmora {

enum class RouterOutcome {
    NoRouter,  ///< none has answered
    Refused,
    Opened,
};

struct RouterReply {
    RouterOutcome Outcome = RouterOutcome::NoRouter;
    std::string OuterAddress;  ///< the router's own, dotted; empty when it doesn't tell
    int OuterPort = 0;         ///< of an opened port; a router may choose another one than was asked for
    std::string Reason;        ///< of a refusal, in the router's words or ours
};

/// For how long a router keeps a port open unless it is asked again, in seconds: so a program that was killed leaves
/// none open for ever.
inline constexpr int RouterLease = 3600;

/// The router's side. Each call blocks, up to some seconds where nobody answers, and comes from one thread after the
/// other, not the program's own.
class RouterProtocols {
public:
    virtual ~RouterProtocols() = default;
    /// Asks the router to lead its port to this machine's, for RouterLease; again: for as long anew.
    virtual RouterReply Open(int port) = 0;
    /// Takes back what Open has got.
    virtual void Close() = 0;
};

std::unique_ptr<RouterProtocols> SystemRouterProtocols();

}  // namespace pixmora
