// One connection of a visitor, with all that belongs to it alone.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/files/Files.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/sockets/Winsock.h"

namespace pixmora {

/// The record of one movie transfer.
///
///     idle (FileSize 0) -- genShowMovie --> running
///     running -- last chunk, sweep after 20 s without a chunk, StopWebsite --> idle
struct SendState {
    std::shared_ptr<BinaryFile> FileNumber;  ///< the open file; kept also by an empty movie, which nothing closes
    std::string FilePath;                    ///< full path
    std::int64_t FirstByte = 0;              ///< offset in the file, above 0 where a player asked for a part
    std::int64_t FileSize = 0;               ///< bytes to go in all; above 0 means that a transfer is running
    std::int64_t BytesSent = 0;              ///< bytes read and handed to the socket so far
    Tick LastSendTick = 0;                   ///< of the last chunk, or of the head before there is one
};

/// An element of wnskConnect. It serves one connection and goes with it, so the next visitor can't come upon anything
/// of this one's.
class VisitorSocket : public Winsock {
public:
    static std::shared_ptr<VisitorSocket> Create() { return std::shared_ptr<VisitorSocket>(new VisitorSocket); }
    std::shared_ptr<VisitorSocket> Self() { return std::static_pointer_cast<VisitorSocket>(shared_from_this()); }

    std::string Request;          ///< that has come last, as it was sent
    Tick RequestTick = 0;         ///< when it has come
    bool IsAwaitingTurn = false;  ///< its picture waits for the conversions before it
    SendState Transfer;
    std::unique_ptr<Timer> tmrBody;  ///< runs while a login's body may still come behind its head

private:
    VisitorSocket() = default;
};

/// Page operations hold it by shared ownership, as it can be unloaded while they wait.
using Connection = std::shared_ptr<VisitorSocket>;

}  // namespace pixmora
