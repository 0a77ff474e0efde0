// A lock between processes.
#pragma once

#include <string>

namespace pixmora {

/// A lock on a file, which is made when it isn't there. However a process ends, its locks go with it.
class FileLock {
public:
    FileLock() = default;
    ~FileLock() { Release(); }
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// Takes the lock, or finds that it has it. @param file in the system's form @return false when somebody else has
    /// it; a file that can hold no lock is nobody's
    bool Take(const std::string &file);
    void Release();

private:
    int descriptor_ = -1;
};

}  // namespace pixmora
