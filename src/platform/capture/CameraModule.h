// The library that turns what formats a camera has into common ones, a module of its own: a site without a camera never
// loads it.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace pixmora {

/// Each answers as the system call of its name.
struct CameraLibrary {
    /// For reading and writing, without blocking.
    int (*Open)(const char *path);
    int (*Close)(int descriptor);
    int (*Ioctl)(int descriptor, unsigned long request, ...);
    ssize_t (*Read)(int descriptor, void *buffer, std::size_t count);
    void *(*Map)(void *start, std::size_t length, int protection, int flags, int descriptor, std::int64_t offset);
    int (*Unmap)(void *start, std::size_t length);
};

/// The module's one symbol.
extern "C" __attribute__((visibility("default"))) const CameraLibrary PixmoraCameraLibrary;

}  // namespace pixmora
