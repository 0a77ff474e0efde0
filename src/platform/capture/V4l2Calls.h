// The system calls behind the capture devices, as a seam: tests play the kernel's answers.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pixmora {

/// Video4Linux2's calls, through the library that turns what formats a device has into common ones; each answers as the
/// system call of its name, with errno set.
class V4l2Calls {
public:
    virtual ~V4l2Calls() = default;
    /// The paths of the video devices, in the order of their numbers.
    virtual std::vector<std::string> Devices() = 0;
    /// For reading and writing, without blocking.
    virtual int Open(const std::string &path) = 0;
    virtual int Ioctl(int descriptor, unsigned long request, void *argument) = 0;
    /// Shared, for reading.
    virtual void *Map(int descriptor, std::size_t length, off_t offset) = 0;
    virtual void Unmap(void *start, std::size_t length) = 0;
    /// Calls back once, from the message loop: with true when a call would find input or an error, with false when the
    /// time is over. Not any more once the result is gone.
    virtual std::shared_ptr<void> AwaitInput(int descriptor, int ms, std::function<void(bool hasInput)> done) = 0;
    virtual ssize_t Read(int descriptor, void *buffer, std::size_t count) = 0;
    virtual void Close(int descriptor) = 0;
};

/// The library's own.
V4l2Calls &SystemV4l2Calls();

/// The paths of a folder's video devices ("video0"), by their numbers. @param folder in the system's form, "/dev"
std::vector<std::string> FindVideoNodes(const std::string &folder);

}  // namespace pixmora
