// A lock between processes.
#include "platform/files/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace pixmora {

bool FileLock::Take(const std::string &file) {
    if (descriptor_ >= 0) return true;
    descriptor_ = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (descriptor_ < 0 || flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return true;
    Release();
    return false;
}

void FileLock::Release() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
}

}  // namespace pixmora
