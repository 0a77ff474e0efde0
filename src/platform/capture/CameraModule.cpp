// The module of cameras, through libv4l2.
#include "platform/capture/CameraModule.h"

#include <fcntl.h>
#include <libv4l2.h>
#include <unistd.h>

#include <cstdio>

namespace pixmora {

namespace {

/// Keeps what is printed on standard output from those who read it, for its life.
class SilentOutput {
public:
    explicit SilentOutput(int nowhere) : former_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        dup2(nowhere, STDOUT_FILENO);
    }
    ~SilentOutput() {
        std::fflush(stdout);
        dup2(former_, STDOUT_FILENO);
        close(former_);
    }
    SilentOutput(const SilentOutput &) = delete;
    SilentOutput &operator=(const SilentOutput &) = delete;

private:
    const int former_;
};

int Open(const char *path) {
    // The library would tell its troubles on standard error, which is the owner's.
    if (v4l2_log_file == nullptr) v4l2_log_file = std::fopen("/dev/null", "we");
    const SilentOutput silent(fileno(v4l2_log_file));  // its plug-in for multi-planar devices says so each time
    return v4l2_open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC, 0);
}

}  // namespace

extern "C" const CameraLibrary PixmoraCameraLibrary{Open, v4l2_close, v4l2_ioctl, v4l2_read, v4l2_mmap, v4l2_munmap};

}  // namespace pixmora
