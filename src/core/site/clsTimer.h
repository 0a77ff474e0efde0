// Elapsed time.
#pragma once

#include <cstdint>
#include <string>

namespace pixmora {

/// A stop watch in ms.
class clsTimer {
public:
    void StopTimer();
    void StartTimer();
    /// ms from start to stop, or to now while it runs: months, if need be.
    std::int64_t Elapsed() const;
    /// A duration as text: "3:07" when `isShort`; "07:42.25" for ms; else "03:07:42". Part of the timer, though no
    /// window shows one today.
    std::string TimeFromSecs(double value, bool isMilliseconds, bool isShort) const;
    /// Sleeps without running any event.
    void Pause(double seconds) const;

private:
    std::int64_t start_ = 0;
    std::int64_t stop_ = 0;
};

}  // namespace pixmora
