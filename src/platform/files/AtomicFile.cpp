// A file that appears whole or not at all. Names go to the system byte for byte, which QSaveFile can't do for names
// that are no valid UTF-8.
#include "platform/files/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

[[noreturn]] void ThrowSystemError(std::string_view path) {
    const bool isFull = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
    throw RunTimeError(isFull ? ErrorNumber::DiskFull : ErrorNumber::PathFileAccessError).About(LastPathPart(path));
}

std::string WithLinksResolved(const std::string &path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

/// With the "/" at its end; empty for a bare name.
std::string FolderOf(const std::string &path) {
    return path.substr(0, path.rfind('/') + 1);
}

void FlushFolder(const std::string &folder) {
    const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);  // a file system that can't is no reason to fail
    close(descriptor);
}

}  // namespace

AtomicFile::AtomicFile(std::string_view path, Readers readers) {
    const bool isName = !path.empty() && path.find('\0') == std::string_view::npos;
    if (!isName || IsDirectory(path)) throw RunTimeError(ErrorNumber::PathFileAccessError).About(LastPathPart(path));
    target_ = WithLinksResolved(SystemPath(path));
    CreateBeside();
    struct stat present {};
    if (readers == Readers::OwnerOnly) {
        fchmod(descriptor_, S_IRUSR | S_IWUSR);
    } else if (stat(target_.c_str(), &present) == 0) {
        fchmod(descriptor_, present.st_mode & 07777);
    }
}

AtomicFile::~AtomicFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void AtomicFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            ThrowSystemError(target_);
        }
    }
}

void AtomicFile::Commit() {
    if (fsync(descriptor_) != 0) ThrowSystemError(target_);
    CommitUnflushed();
    FlushFolder(FolderOf(target_));
}

void AtomicFile::CommitUnflushed() {
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) ThrowSystemError(target_);
    temporary_.clear();
}

void RenameFile(std::string_view from, std::string_view to) {
    const std::string target = SystemPath(to);
    if (std::rename(SystemPath(from).c_str(), target.c_str()) != 0) ThrowSystemError(target);
    FlushFolder(FolderOf(target));
}

void AtomicFile::CreateBeside() {
    const std::string start = FolderOf(target_) + ".pixmora-" + std::to_string(getpid()) + "-";
    for (int number = 0; descriptor_ < 0; ++number) {
        temporary_ = start + std::to_string(number) + ".tmp";
        descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor_ < 0 && errno != EEXIST) {
            temporary_.clear();
            ThrowSystemError(target_);
        }
    }
}

}  // namespace pixmora
