// How much of the processor a wait has cost.
#pragma once

#include <sys/resource.h>

namespace pixmora::test {

/// Seconds that this process has used so far, in itself and in the kernel.
inline double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace pixmora::test
