// Files.h: walks through directories.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/files/FileFacts.h"
#include "platform/files/Files.h"

namespace pixmora {

namespace {

/// Whether the entry is a directory; none when it leads nowhere. Asks the file system only when the listing doesn't
/// tell.
std::optional<bool> IsDirectoryEntry(int directory, const dirent &entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
    struct stat facts {};
    if (fstatat(directory, entry.d_name, &facts, 0) != 0) return std::nullopt;
    return S_ISDIR(facts.st_mode);
}

/// @return whether the listing came to its end
bool ReadEntries(DIR *listing, std::vector<DirectoryEntry> &entries) {
    const int directory = dirfd(listing);
    for (;;) {
        errno = 0;
        const dirent *entry = readdir(listing);
        if (entry == nullptr) return errno == 0;
        const std::string_view name = entry->d_name;
        if (name.find('\\') != std::string_view::npos) continue;
        if (const std::optional<bool> isDirectory = IsDirectoryEntry(directory, *entry))
            entries.push_back({std::string(name), *isDirectory});
    }
}

}  // namespace

Directory::Directory(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) return;
    descriptor_ = open(SystemPath(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor_ < 0) return;
    // The stream takes its descriptor with it when it closes.
    const int ofStream = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
    DIR *listing = ofStream < 0 ? nullptr : fdopendir(ofStream);
    if (listing == nullptr) {
        if (ofStream >= 0) close(ofStream);
        return;
    }
    isReadable_ = ReadEntries(listing, entries_);
    closedir(listing);
    std::sort(entries_.begin(), entries_.end(),
              [](const DirectoryEntry &left, const DirectoryEntry &right) { return left.Name < right.Name; });
}

Directory::~Directory() {
    if (descriptor_ >= 0) close(descriptor_);
}

std::optional<FileFacts> Directory::Facts(const DirectoryEntry &entry) const {
    return FactsAt(descriptor_, entry.Name);
}

}  // namespace pixmora
