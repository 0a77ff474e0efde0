// The message loop on Qt's: waits, timers, and what becomes of an error that no handler caught.
#include "platform/loop/MessageLoop.h"

#include <unistd.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>
#include <cstdio>
#include <utility>

#include "platform/runtime/Sleep.h"

namespace pixmora {

namespace {

/// How many turns of the loop may run inside each other before DoEvents leaves the events to those below: a request
/// costs a stranger 30 bytes, and each one served inside another's DoEvents costs a kilobyte of stack.
constexpr int deepestDoEvents = 16;

/// And before a wait for a moment just sleeps: a waiting picture and what is nested in it cost some 2 KB of stack.
constexpr int deepestWait = 512;

std::function<void(const RunTimeError &)> unhandledErrorHandler;

/// One turn of the loop on the stack.
class Nesting {
public:
    Nesting() { ++depth_; }
    ~Nesting() { --depth_; }
    Nesting(const Nesting &) = delete;
    Nesting &operator=(const Nesting &) = delete;
    int Depth() const { return depth_; }

private:
    static inline int depth_ = 0;
};

/// Leaves at once: handlers may be running on the stack, and destroying what they use would only add a second failure.
[[noreturn]] void EndProcess(const RunTimeError &error) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", error.what());
    std::fflush(stderr);
    _exit(UnhandledErrorStatus);
}

}  // namespace

void DoEvents() {
    const Nesting nesting;
    if (nesting.Depth() <= deepestDoEvents) QCoreApplication::processEvents();
}

void WaitUntilTick(Tick moment) {
    const Nesting nesting;
    if (IsClockSet()) {
        const bool hasRunEvent = QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
        if (!hasRunEvent) MoveSetClockTo(moment);
        return;
    }
    const Tick ms = TicksBetween(GetTickCount(), moment);
    if (ms <= 0) {
        DoEvents();
        return;
    }
    if (nesting.Depth() > deepestWait) {
        SleepBlocking(ms);
        return;
    }
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.setTimerType(Qt::PreciseTimer);
    alarm.start(ms);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void RunSoon(std::function<void()> handler) {
    QTimer::singleShot(0, [handler = std::move(handler)] { RunEventHandler(handler); });
}

void SleepBlocking(int ms) {
    Sleep(ms);
}

int RunMessageLoop() {
    return QCoreApplication::exec();
}

void RunEventHandler(const std::function<void()> &handler) {
    try {
        handler();
    } catch (const RunTimeError &error) {
        if (!unhandledErrorHandler) EndProcess(error);
        unhandledErrorHandler(error);
    }
}

void SetUnhandledErrorHandler(std::function<void(const RunTimeError &)> handler) {
    unhandledErrorHandler = std::move(handler);
}

Timer::Timer() : timer_(std::make_unique<QTimer>()) {
    timer_->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer_.get(), &QTimer::timeout, [this] {
        const auto handler = OnTimer;  // a copy: the handler may destroy this timer
        if (handler) RunEventHandler(handler);
    });
}

Timer::~Timer() = default;

void Timer::SetInterval(int ms) {
    interval_ = ms;
    Restart();
}

void Timer::SetEnabled(bool enabled) {
    isEnabled_ = enabled;
    Restart();
}

void Timer::Restart() {
    if (isEnabled_ && interval_ > 0) {
        timer_->start(interval_);
    } else {
        timer_->stop();
    }
}

}  // namespace pixmora
