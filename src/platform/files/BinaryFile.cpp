// Files.h: reading files byte for byte.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

int OpenRegularFile(std::string_view path, int flags) {
    if (path.find('\0') != std::string_view::npos) throw RunTimeError(ErrorNumber::FileNotFound);
    // Opening a pipe would otherwise wait for its other end.
    const int descriptor = open(SystemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags, 0666);
    if (descriptor < 0) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG || errno == ELOOP;
        throw RunTimeError(isMissing ? ErrorNumber::FileNotFound : ErrorNumber::PathFileAccessError)
            .About(LastPathPart(path));
    }
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(descriptor);
        throw RunTimeError(ErrorNumber::PathFileAccessError).About(LastPathPart(path));
    }
    return descriptor;
}

}  // namespace

std::unique_ptr<BinaryFile> BinaryFile::OpenForRead(std::string_view path) {
    return std::unique_ptr<BinaryFile>(new BinaryFile(OpenRegularFile(path, 0)));
}

std::unique_ptr<BinaryFile> BinaryFile::OpenBinary(std::string_view path) {
    return std::unique_ptr<BinaryFile>(new BinaryFile(OpenRegularFile(path, O_CREAT)));
}

BinaryFile::~BinaryFile() {
    close(descriptor_);
}

std::int64_t BinaryFile::Length() const {
    struct stat facts {};
    return fstat(descriptor_, &facts) == 0 ? facts.st_size : 0;
}

std::string BinaryFile::Read(std::size_t count) {
    // The count may be far beyond what the file holds, and the length far beyond memory.
    constexpr std::size_t smallPiece = 4096;
    constexpr std::size_t largePiece = 1024 * 1024;
    const std::size_t piece =
        count <= smallPiece ? count : std::clamp(static_cast<std::size_t>(Length()) + 1, smallPiece, largePiece);
    std::string bytes;
    std::size_t filled = 0;
    while (filled < count) {
        if (filled == bytes.size()) bytes.resize(filled + std::min(count - filled, piece));
        const ssize_t got = read(descriptor_, bytes.data() + filled, bytes.size() - filled);
        if (got == 0) break;
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            throw RunTimeError(ErrorNumber::DeviceIOError);
        }
    }
    bytes.resize(filled);
    if (filled < bytes.capacity() / 2) bytes.shrink_to_fit();
    return bytes;
}

std::string BinaryFile::ReadAll() {
    return Read(std::string().max_size());
}

std::size_t BinaryFile::ReadAt(std::int64_t offset, void *bytes, std::size_t count) const {
    ssize_t got = 0;
    do {
        got = pread(descriptor_, bytes, count, offset);
    } while (got < 0 && errno == EINTR);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

std::string ReadBinaryFile(std::string_view path) {
    return BinaryFile::OpenBinary(path)->ReadAll();
}

}  // namespace pixmora
