// One epoll descriptor watches all sockets, and the message loop watches that one. So an idle connection costs a turn
// of the loop nothing, and there is one notifier, which no handler can destroy while it is on the stack.
#include "platform/sockets/SocketLoop.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <list>
#include <utility>
#include <vector>

namespace pixmora {

namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr std::size_t pieceSize = 65536;
constexpr auto lingerTime = std::chrono::seconds(1);
constexpr std::size_t lingerBytes = 65536;
constexpr std::size_t lingerCount = 128;  // descriptors that peers who never end their side can hold for lingerTime
constexpr int eventsPerTurn = 16;         // what sockets may do before timers and posted events get their turn,
constexpr auto turnTime = std::chrono::milliseconds(1);  // and how long
constexpr rlim_t reservedDescriptors = 16;
constexpr rlim_t wantedDescriptors = 4096;
/// How much the network may hold that it has not yet sent. Without it the kernel takes megabytes for a slow reader and
/// then, for minutes, nothing; a movie's chunks would stop although they move.
constexpr int unsentLimit = 131072;

}  // namespace

/// A descriptor that only waits for the peer to end its side.
class SocketDescriptor::Lingering : public SocketDescriptor {
public:
    explicit Lingering(int number);
    void OnReady(std::uint32_t events) override;
    void GiveUp();

    const Moment Deadline = std::chrono::steady_clock::now() + lingerTime;
    std::list<std::shared_ptr<Lingering>>::iterator Place;

private:
    void End();

    std::size_t bytesLeft_ = lingerBytes;
};

/// The sockets' side of the message loop. Made at the first use, ends with the application object.
class SocketDescriptor::Loop : public QObject {
public:
    /// Null when there is no application object (any more).
    static Loop *Instance() {
        if (!instance && QCoreApplication::instance()) instance = new Loop;
        return instance;
    }

    ~Loop() override {
        while (!Lingerers.empty()) Lingerers.front()->GiveUp();
        close(Epoll);
        instance = nullptr;
    }
    Loop(const Loop &) = delete;
    Loop &operator=(const Loop &) = delete;

    void KeepLingering(int number) {
        if (Lingerers.size() >= lingerCount) Lingerers.front()->GiveUp();
        const auto place = Lingerers.insert(Lingerers.end(), std::make_shared<Lingering>(number));
        (*place)->Place = place;
        StartHousekeeping();
    }

    void KeepCallback(std::function<void()> callback) {
        callbacks_.push_back(std::move(callback));
        StartHousekeeping();
    }

    void OnDescriptorClosed() {
        for (const auto &callback : std::exchange(callbacks_, {})) callback();
    }

    const int Epoll = epoll_create1(EPOLL_CLOEXEC);
    std::list<std::shared_ptr<Lingering>> Lingerers;  // oldest first
    std::array<char, pieceSize> Buffer{};

private:
    Loop() : QObject(QCoreApplication::instance()), notifier_(Epoll, QSocketNotifier::Read) {
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { Dispatch(); });
        housekeeping_.setSingleShot(true);
        connect(&housekeeping_, &QTimer::timeout, this, [this] { KeepHouse(); });
    }

    /// One at a time, so that no event is for a descriptor which the handler of the one before has closed; the kernel
    /// goes round among the ready ones. Not for long: a handler may have waited, and waits further out be over.
    void Dispatch() const {
        const auto end = std::chrono::steady_clock::now() + turnTime;
        int count = 0;
        do {
            epoll_event event{};
            if (epoll_wait(Epoll, &event, 1, 0) != 1) return;
            const auto descriptor = static_cast<SocketDescriptor *>(event.data.ptr)->shared_from_this();
            descriptor->OnReady(event.events);
        } while (++count < eventsPerTurn && std::chrono::steady_clock::now() < end);
    }

    void StartHousekeeping() {
        if (!housekeeping_.isActive()) housekeeping_.start(lingerTime);
    }

    void KeepHouse() {
        const auto now = std::chrono::steady_clock::now();
        while (!Lingerers.empty() && Lingerers.front()->Deadline <= now) Lingerers.front()->GiveUp();
        OnDescriptorClosed();
        if (!Lingerers.empty()) {
            housekeeping_.start(std::chrono::ceil<std::chrono::milliseconds>(Lingerers.front()->Deadline - now));
        }
    }

    static inline Loop *instance = nullptr;

    QSocketNotifier notifier_;
    QTimer housekeeping_;
    std::vector<std::function<void()>> callbacks_;
};

SocketDescriptor::Lingering::Lingering(int number) : SocketDescriptor(number) {
    isRegistered_ = true;
    Watch(EPOLLIN);
}

void SocketDescriptor::Lingering::OnReady(std::uint32_t) {
    const ssize_t count = Discard();
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    bytesLeft_ -= std::min(bytesLeft_, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count <= 0 || bytesLeft_ == 0) End();
}

void SocketDescriptor::Lingering::GiveUp() {
    Discard();
    End();
}

void SocketDescriptor::Lingering::End() {
    const auto self = *Place;
    Loop::Instance()->Lingerers.erase(Place);
    Close();
}

SocketDescriptor::~SocketDescriptor() {
    Close();
}

bool SocketDescriptor::Watch(std::uint32_t events) {
    if (isRegistered_ && events == watched_) return true;
    const auto *loop = Loop::Instance();
    epoll_event event{};
    event.events = events;
    event.data.ptr = this;
    if (!loop || epoll_ctl(loop->Epoll, isRegistered_ ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, number_, &event) != 0)
        return false;
    isRegistered_ = true;
    watched_ = events;
    return true;
}

void SocketDescriptor::Close() {
    if (number_ < 0) return;
    auto *loop = Loop::Instance();
    // A forked child may hold the descriptor for a moment longer, and with it the registration.
    if (loop && isRegistered_) epoll_ctl(loop->Epoll, EPOLL_CTL_DEL, number_, nullptr);
    close(number_);
    number_ = -1;
    if (loop) loop->OnDescriptorClosed();
}

void SocketDescriptor::CloseLingering() {
    auto *loop = Loop::Instance();
    if (loop && isRegistered_ && shutdown(number_, SHUT_WR) == 0) {
        loop->KeepLingering(std::exchange(number_, -1));
    } else {
        Close();
    }
}

void SocketDescriptor::SetUpSending() const {
    const int on = 1;
    setsockopt(number_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(number_, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &unsentLimit, sizeof unsentLimit);
}

ssize_t SocketDescriptor::Receive(std::string &bytes) {
    auto &buffer = Loop::Instance()->Buffer;
    const ssize_t count = recv(number_, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count > 0) bytes.assign(buffer.data(), static_cast<std::size_t>(count));
    return count;
}

std::span<char> SocketDescriptor::PieceBuffer() {
    return Loop::Instance()->Buffer;
}

ssize_t SocketDescriptor::Discard() {
    auto *loop = Loop::Instance();
    return loop ? recv(number_, loop->Buffer.data(), loop->Buffer.size(), MSG_DONTWAIT) : 0;
}

void SocketDescriptor::CallWhenFreed(std::function<void()> callback) {
    if (auto *loop = Loop::Instance()) loop->KeepCallback(std::move(callback));
}

bool SocketDescriptor::HasSpareNumbers() const {
    // The kernel gives the lowest free number, so a copy shows which one the next connection would get.
    const int lowest = fcntl(number_, F_DUPFD_CLOEXEC, 0);
    if (lowest < 0) return false;
    close(lowest);
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return static_cast<rlim_t>(lowest) + reservedDescriptors < limit.rlim_cur;
}

void RaiseDescriptorLimit() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t wanted = std::min(limit.rlim_max, wantedDescriptors);
    if (limit.rlim_cur >= wanted) return;
    limit.rlim_cur = wanted;
    setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace pixmora
