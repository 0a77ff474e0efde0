// The one message loop, its timers, and the guard around every event's handler.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"

class QTimer;

namespace pixmora {

/// Runs the pending events and comes back; sixteen turns deep on the stack it comes back at once, as the turns below
/// will run them.
void DoEvents();

/// Sleeps in the loop until something has happened or the moment has come, whichever is first; other handlers run
/// inside it, save some hundred turns deep on the stack. Never spins the processor. With a clock set by a test and
/// nothing pending, the clock moves to the moment at once.
void WaitUntilTick(Tick moment);

/// Runs the handler as an event of its own, at the loop's next turn.
void RunSoon(std::function<void()> handler);

/// Sleeps without running any event. @param ms milliseconds. Returns at once when a test has set the clock (and moves
/// it).
void SleepBlocking(int ms);

/// Runs the loop for the rest of the process. @return the exit status, when the desktop's session ends it
int RunMessageLoop();

/// The exit status of a process that an error has ended.
inline constexpr int UnhandledErrorStatus = 70;

/// Runs an event's handler. A RunTimeError that comes out of it goes to the handler set below; nothing else is caught.
void RunEventHandler(const std::function<void()> &handler);

/// What is done with an error that no handler caught. The program shows the message and ends the process with that
/// status, which is also what happens when none is set.
void SetUnhandledErrorHandler(std::function<void(const RunTimeError &)> handler);

/// A timer of the run time: repeats while enabled. Disabled when made.
class Timer {
public:
    Timer();
    ~Timer();
    Timer(const Timer &) = delete;
    Timer &operator=(const Timer &) = delete;

    std::string Tag;                ///< free text of the owner
    std::function<void()> OnTimer;  ///< runs under the event guard; may run inside another handler's DoEvents

    int Interval() const { return interval_; }  ///< ms
    /// With an interval of 0 it never ticks, enabled or not.
    void SetInterval(int ms);
    bool Enabled() const { return isEnabled_; }
    /// Enabling starts a whole interval anew.
    void SetEnabled(bool enabled);

private:
    void Restart();

    const std::unique_ptr<QTimer> timer_;
    int interval_ = 0;
    bool isEnabled_ = false;
};

}  // namespace pixmora
