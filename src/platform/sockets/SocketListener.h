// The listening end of a Winsock element: which connections it offers and when, and the places that they take.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/sockets/SocketAddress.h"
#include "platform/sockets/SocketLoop.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// The places that the accepted connections of a listening element take, also of those from before it listened anew.
class Places : public std::enable_shared_from_this<Places> {
public:
    int Limit() const { return limit_; }
    /// @param limit 0 or less: none
    void SetLimit(int limit);
    bool AreTaken() const { return limit_ > 0 && taken_ >= limit_; }
    /// One place, limit or not, until the last copy of the result has gone.
    std::shared_ptr<void> Take();

    std::function<void()> OnFree;  ///< places are free that were not

private:
    int limit_ = 0;
    int taken_ = 0;
};

/// What an accepted connection holds of the listening element.
struct Admission {
    std::shared_ptr<void> Place;      ///< until the connection's end
    std::shared_ptr<void> Unsettled;  ///< at most until its first answer has left: the next connection waits for that
};

/// A connection in the hands of a ConnectionRequest handler.
struct OfferedConnection {
    std::string PeerAddress;
    Admission Admitted;
};

/// Takes the connection over from the handler. @param requestId its descriptor @return nothing when it is not on offer
std::optional<OfferedConnection> TakeOffered(int requestId);

/// A listening element's descriptor. Offers one connection at a time: the next stays in the system's queue until this
/// one is settled, that is, has had its first answer, is closed, or has been silent for some milliseconds. So quick
/// requests follow each other however many come at once, and each finds the places of those before it free again.
/// While all places are taken, everybody stays in the queue.
class Listener : public SocketDescriptor {
public:
    /// @param address as Winsock::LocalAddress has it @throws RunTimeError as Winsock::Listen does
    static std::shared_ptr<Listener> Make(std::weak_ptr<Winsock> element, std::shared_ptr<Places> places,
                                          const std::string &address, int port);

    Listener(int number, std::weak_ptr<Winsock> element, std::shared_ptr<Places> places);

    /// The port in use.
    int Port() const;

    void OnReady(std::uint32_t events) override;

private:
    void Begin(const SocketAddress &own);
    bool MayOffer() const { return !isOffering_ && unsettled_.expired() && !places_->AreTaken(); }
    void Offer(const Winsock &element, int number, std::string address);
    std::shared_ptr<void> MakeUnsettled();
    void WatchSettling(std::chrono::milliseconds time);
    void LookAtUnsettled();
    void Resume();
    void Pause();
    std::function<void()> Resumer();

    const std::weak_ptr<Winsock> element_;
    const std::shared_ptr<Places> places_;
    bool isOffering_ = false;
    std::weak_ptr<void> unsettled_;
    std::chrono::steady_clock::time_point unsettledSince_;
    bool isSettlingWatched_ = false;
};

}  // namespace pixmora
