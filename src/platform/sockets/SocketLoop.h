// The descriptors behind the Winsock elements: how the message loop watches them, and how they are closed and counted.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace pixmora {

/// A socket descriptor that the message loop watches. It lives until its event is over, whatever the event's handlers
/// drop.
class SocketDescriptor : public std::enable_shared_from_this<SocketDescriptor> {
public:
    virtual ~SocketDescriptor();
    SocketDescriptor(const SocketDescriptor &) = delete;
    SocketDescriptor &operator=(const SocketDescriptor &) = delete;

    /// Runs from the loop, also from a nested one while an earlier call for the same descriptor is on the stack.
    /// @param events epoll's: EPOLLIN and EPOLLOUT as watched for, EPOLLERR and EPOLLHUP always
    virtual void OnReady(std::uint32_t events) = 0;

    /// The descriptor's number, -1 when there is none (any more).
    int Number() const { return number_; }
    /// Gives the descriptor up at once. What was sent before is still delivered, unless unread input turns the end into
    /// a reset.
    void Close();

protected:
    /// Takes the descriptor over. -1: none.
    explicit SocketDescriptor(int number) : number_(number) {}

    /// Sets what is watched for: EPOLLIN, EPOLLOUT, both or nothing. Free when that is so already. @return whether it
    /// could
    bool Watch(std::uint32_t events);
    std::uint32_t Watched() const { return watched_; }

    /// Lets answers be written whole or in chunks without waiting for each other's acknowledgement, and bounds what the
    /// network holds unsent. What a listening descriptor accepts has this from it.
    void SetUpSending() const;
    /// recv of at most 64 KB. @return recv's result, errno set as by it
    ssize_t Receive(std::string &bytes);
    /// 64 KB for the moment, whose content the next call of any of these changes.
    static std::span<char> PieceBuffer();
    /// Throws away at most 64 KB of input. @return recv's result
    ssize_t Discard();
    /// Ends the sending side and gives the descriptor away: it is closed when the peer has ended its side too, or has
    /// sent another 64 KB, or after a second. So input that is still on its way can't turn the close into a reset,
    /// which would destroy what the peer has not read yet.
    void CloseLingering();

    /// Whether a new connection would leave the process descriptors for its files.
    bool HasSpareNumbers() const;
    /// Calls back once, when some socket's descriptor has been closed or a second has gone: another part of the process
    /// may have closed one of its own.
    static void CallWhenFreed(std::function<void()> callback);

private:
    class Lingering;
    class Loop;

    int number_;
    bool isRegistered_ = false;
    std::uint32_t watched_ = 0;
};

/// Raises the limit of the process's descriptors to what is allowed, at most 4096.
void RaiseDescriptorLimit();

}  // namespace pixmora
