#include "platform/sockets/SocketConnection.h"

#include <linux/tcp.h>  // netinet's lacks the counts of bytes
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

/// @return ECONNRESET where the kernel has told the reason before
int ErrorOf(int number) {
    int error = 0;
    socklen_t length = sizeof error;
    getsockopt(number, SOL_SOCKET, SO_ERROR, &error, &length);
    return error != 0 ? error : ECONNRESET;
}

/// Bytes that the peer has sent and has taken in, as the kernel knows it; 0 where it doesn't tell.
std::uint64_t BytesExchanged(int number) {
    tcp_info info{};
    socklen_t length = sizeof info;
    if (getsockopt(number, IPPROTO_TCP, TCP_INFO, &info, &length) != 0) return 0;
    return info.tcpi_bytes_received + info.tcpi_bytes_acked;
}

bool IsTransient(int error) {
    return error == EAGAIN || error == EINTR;
}

}  // namespace

SocketConnection::SocketConnection(std::weak_ptr<Winsock> element, int number, SocketState state)
    : SocketDescriptor(number), element_(std::move(element)), state_(state) {}

std::shared_ptr<SocketConnection> SocketConnection::Accepted(std::weak_ptr<Winsock> element, int number,
                                                             Admission admission) {
    auto connection = std::make_shared<SocketConnection>(std::move(element), number, SocketState::Connected);
    connection->admission_ = std::move(admission);
    if (!connection->Watch(EPOLLIN | EPOLLRDHUP)) connection->FailFromLoop(errno);
    return connection;
}

std::shared_ptr<SocketConnection> SocketConnection::Connecting(std::weak_ptr<Winsock> element,
                                                               const SocketAddress &peer) {
    const int number = socket(peer.Family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    auto connection = std::make_shared<SocketConnection>(std::move(element), number, SocketState::Connecting);
    if (number < 0) {
        connection->FailFromLoop(errno);
        return connection;
    }
    connection->SetUpSending();
    const bool hasBegun = connect(number, &peer.General, peer.Length) == 0 || errno == EINPROGRESS;
    if (!hasBegun || !connection->Watch(EPOLLOUT)) connection->FailFromLoop(errno);
    return connection;
}

void SocketConnection::Send(std::string_view bytes) {
    if (failure_ != 0) return;
    hasSent_ = true;
    if (SourceLeft() > 0) {
        behindSource_.append(bytes);
        return;
    }
    if (BytesWaiting() == 0) bytes.remove_prefix(WriteNow(bytes));
    if (failure_ == 0 && !bytes.empty()) {
        if (unsentStart_ > unsent_.size() / 2) unsent_.erase(0, std::exchange(unsentStart_, 0));
        unsent_.append(bytes);
    }
    Watch(Watched() | Wanted());
}

bool SocketConnection::SendSource(std::string_view bytes, ByteSource source) {
    if (SourceLeft() > 0) return false;
    Send(bytes);
    if (source.Length > 0) source_ = std::move(source);
    Watch(Watched() | Wanted());
    return true;
}

std::string SocketConnection::Fetch() {
    auto bytes = std::exchange(received_, {});
    if (Number() >= 0) Watch(Watched() | Wanted());
    return bytes;
}

std::int32_t SocketConnection::PeerIdleTime() {
    const std::uint64_t exchanged = BytesExchanged(Number());
    const bool isAnswerBeingMade = running_ != 0 && BytesWaiting() == 0;
    if (isAnswerBeingMade || exchanged != exchanged_) {
        exchanged_ = exchanged;
        peerIdleSince_ = GetTickCount();
    }
    return TicksBetween(peerIdleSince_, GetTickCount());
}

void SocketConnection::SetAnswering(bool isAnswering) {
    running_ = isAnswering ? running_ | PutOffAnswer : running_ & ~PutOffAnswer;
    if (Number() >= 0) Watch(Watched() | Wanted());
}

void SocketConnection::Finish() {
    const bool hasNothingToWaitFor =
        state_ != SocketState::Connected || failure_ != 0 || isInputEnded_ || BytesWaiting() > 0;
    state_ = SocketState::Closed;
    received_.clear();
    DropUnsent();
    admission_ = {};
    if (Number() < 0) return;
    if (hasNothingToWaitFor) {
        Discard();
        Close();
    } else {
        CloseLingering();
    }
}

void SocketConnection::FailFromLoop(int number) {
    failure_ = number;
    const auto fail = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->OnReady(0);
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), fail, Qt::QueuedConnection);
}

void SocketConnection::Fail(int number, const std::string &description) {
    state_ = SocketState::Error;
    failure_ = number;
    DropUnsent();
    admission_ = {};
    Close();
    Raise(ErrorHandler, &Winsock::OnError, number, description);
}

void SocketConnection::OnReady(std::uint32_t events) {
    const auto element = element_.lock();  // held, so that its handlers may drop it
    if (!element || state_ == SocketState::Closed || state_ == SocketState::Error) return;
    if (failure_ == 0 && (events & (EPOLLERR | EPOLLHUP)) != 0) failure_ = ErrorOf(Number());
    if (failure_ == 0) {
        if (state_ == SocketState::Connecting && (events & EPOLLOUT) != 0) BecomeConnected();
        if ((events & EPOLLRDHUP) != 0 && !isPeerEndSeen_) NotePeerEnd();
        if ((events & EPOLLOUT) != 0 && WantsToWrite()) Write();
        if ((events & EPOLLIN) != 0 && WantsToRead()) Read();
        if (IsCloseDue()) {
            isCloseRaised_ = true;
            Raise(CloseHandler, &Winsock::OnClose);
        }
    }
    if (state_ == SocketState::Closed || state_ == SocketState::Error) return;
    if (failure_ != 0) {
        Fail(failure_, std::strerror(failure_));
    } else {
        Watch(Wanted());
    }
}

template <class... Parameters, class... Arguments>
void SocketConnection::Raise(Handler handler, std::function<void(Parameters...)> Winsock::*event,
                             const Arguments &...arguments) {
    const auto element = element_.lock();
    if (!element || !((*element).*event)) return;
    const auto run = (*element).*event;  // a copy: the handler may replace it
    running_ |= handler;
    RunEventHandler([&] { run(arguments...); });
    running_ &= ~handler;
}

bool SocketConnection::WantsToRead() const {
    return state_ == SocketState::Connected && !isInputEnded_ && received_.empty() &&
           (running_ & (DataArrivalHandler | PutOffAnswer)) == 0;
}

bool SocketConnection::WantsToWrite() const {
    if (state_ != SocketState::Connected) return state_ == SocketState::Connecting;
    return BytesWaiting() > 0 || IsSendCompleteDue();
}

bool SocketConnection::IsSendCompleteDue() const {
    return hasSent_ && BytesWaiting() == 0 && (running_ & SendCompleteHandler) == 0;
}

std::uint32_t SocketConnection::Wanted() const {
    return (WantsToRead() ? EPOLLIN : 0U) | (WantsToWrite() || failure_ != 0 ? EPOLLOUT : 0U) |
           (isPeerEndSeen_ ? 0U : EPOLLRDHUP);
}

bool SocketConnection::IsCloseDue() const {
    return state_ == SocketState::Connected && isInputEnded_ && !isCloseRaised_ && running_ == 0 && failure_ == 0 &&
           !WantsToWrite();
}

void SocketConnection::BecomeConnected() {
    state_ = SocketState::Connected;
    Raise(ConnectHandler, &Winsock::OnConnect);
}

void SocketConnection::Write() {
    if (unsentStart_ < unsent_.size()) {
        unsentStart_ += WriteNow(std::string_view(unsent_).substr(unsentStart_));
        if (unsentStart_ == unsent_.size()) DropBytes();
    } else if (SourceLeft() > 0) {
        WriteSource();
    }
    if (failure_ == 0 && IsSendCompleteDue()) {
        hasSent_ = false;
        Raise(SendCompleteHandler, &Winsock::OnSendComplete);
        admission_.Unsettled.reset();
    }
}

/// One piece for each turn, so that others have theirs. What the network has not taken of it is read anew next time: a
/// slow reader holds no memory.
void SocketConnection::WriteSource() {
    const std::span<char> buffer = PieceBuffer();
    const std::size_t wanted = std::min(buffer.size(), static_cast<std::size_t>(SourceLeft()));
    const std::size_t count = source_.Read(sourceSent_, buffer.data(), wanted);
    sourceSent_ += static_cast<std::int64_t>(WriteNow({buffer.data(), count}));
    if (failure_ == 0 && count < wanted) failure_ = EIO;  // the peer is not to take the rest for the whole
    if (SourceLeft() == 0) EndSource();
}

void SocketConnection::EndSource() {
    source_ = {};
    sourceSent_ = 0;
    unsent_ = std::exchange(behindSource_, {});
}

/// Gives the memory back too: the answer before may have been a big one.
void SocketConnection::DropBytes() {
    std::string().swap(unsent_);
    unsentStart_ = 0;
}

void SocketConnection::DropUnsent() {
    behindSource_.clear();
    EndSource();
    DropBytes();
}

/// @return how many bytes the network has taken; sets failure_
std::size_t SocketConnection::WriteNow(std::string_view bytes) {
    if (bytes.empty()) return 0;
    const ssize_t count = send(Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (!IsTransient(errno)) failure_ = errno;
    return 0;
}

void SocketConnection::NotePeerEnd() {
    isPeerEndSeen_ = true;
    Raise(PeerEndHandler, &Winsock::OnPeerEnd);
}

void SocketConnection::Read() {
    const ssize_t count = Receive(received_);
    if (count > 0) {
        Raise(DataArrivalHandler, &Winsock::OnDataArrival, static_cast<std::size_t>(count));
    } else if (count == 0) {
        isInputEnded_ = true;
        if (!isPeerEndSeen_) NotePeerEnd();
    } else if (!IsTransient(errno)) {
        failure_ = errno;
    }
}

}  // namespace pixmora
