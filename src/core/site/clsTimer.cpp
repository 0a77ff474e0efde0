// Elapsed time.
#include "core/site/clsTimer.h"

#include <cmath>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"

namespace pixmora {

namespace {

/// ":nn:ss", the minutes and seconds of the date that lies so many seconds after date zero.
std::string MinutesAndSeconds(std::int64_t seconds) {
    return ":" + FormatPadded(seconds / 60 % 60, 2) + ":" + FormatPadded(seconds % 60, 2);
}

}  // namespace

void clsTimer::StopTimer() {
    stop_ = Uptime();
}

void clsTimer::StartTimer() {
    start_ = Uptime();
    stop_ = 0;
}

std::int64_t clsTimer::Elapsed() const {
    return (stop_ == 0 ? Uptime() : stop_) - start_;
}

std::string clsTimer::TimeFromSecs(double value, bool isMilliseconds, bool isShort) const {
    const auto whole = static_cast<std::int64_t>(std::floor(value));
    if (isShort) return std::to_string(whole / 3600) + ":" + FormatPadded(whole / 60 % 60, 2);
    if (isMilliseconds) return MinutesAndSeconds(whole / 1000).substr(1) + "." + FormatPadded(whole / 10 % 100, 2);
    return FormatPadded(whole / 3600, 2) + MinutesAndSeconds(whole);
}

void clsTimer::Pause(double seconds) const {
    SleepBlocking(static_cast<int>(seconds * 1000));
}

}  // namespace pixmora
