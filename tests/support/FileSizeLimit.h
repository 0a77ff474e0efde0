// A full disk, played.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace pixmora {

/// While it lives no file of this process grows beyond the limit, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : formerHandler_(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{bytes, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former_);
        signal(SIGXFSZ, formerHandler_);
    }

private:
    rlimit former_{};
    void (*formerHandler_)(int);
};

}  // namespace pixmora
