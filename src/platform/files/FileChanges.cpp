// Files.h: writing, copying and deleting files and directories.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "platform/files/AtomicFile.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

/// @param entered the directories that the walk stands in, and the target: none is entered again, so that neither a
/// link to a directory above nor a target inside the source makes the copy endless
void CopyTree(const std::string &from, const std::string &to, std::vector<FileFacts> &entered) {
    const Directory directory(from);
    if (!directory.IsReadable()) throw RunTimeError(ErrorNumber::PathFileAccessError);
    MakeDirectory(to);
    for (const DirectoryEntry &entry : directory.Entries()) {
        if (entry.Name == "." || entry.Name == "..") continue;
        const std::string source = from + "\\" + entry.Name;
        const std::string target = to + "\\" + entry.Name;
        if (!entry.IsDirectory) {
            if (!FileExists(target)) CopyFile(source, target);
            continue;
        }
        const FileFacts facts = GetFileFacts(source);
        if (std::any_of(entered.begin(), entered.end(), [&](const FileFacts &one) { return one.IsSame(facts); }))
            continue;
        entered.push_back(facts);
        CopyTree(source, target, entered);
        entered.pop_back();
    }
}

}  // namespace

void WriteFileAtomically(std::string_view path, std::string_view bytes, Readers readers) {
    AtomicFile file(path, readers);
    file.Write(bytes);
    file.Commit();
}

void HideFromOthers(std::string_view path) {
    // A file system without owners refuses, and has nothing to hide from.
    chmod(SystemPath(path).c_str(), S_IRUSR | S_IWUSR);
}

void DeleteFile(std::string_view path) {
    const bool isName = !path.empty() && path.find('\0') == std::string_view::npos;
    if (isName && unlink(SystemPath(path).c_str()) == 0) return;
    const bool isMissing = !isName || errno == ENOENT || errno == ENOTDIR;
    throw RunTimeError(isMissing ? ErrorNumber::FileNotFound : ErrorNumber::PathFileAccessError);
}

void MakeDirectory(std::string_view path) {
    const bool isName = !path.empty() && path.find('\0') == std::string_view::npos;
    std::error_code error;
    if (isName) std::filesystem::create_directories(SystemPath(path), error);
    if (!isName || !IsDirectory(path)) throw RunTimeError(ErrorNumber::PathFileAccessError);
}

void CopyFile(std::string_view from, std::string_view to) {
    constexpr std::size_t piece = 256 * 1024;
    const std::unique_ptr<BinaryFile> source = BinaryFile::OpenForRead(from);
    AtomicFile target(to);
    for (std::string bytes = source->Read(piece); !bytes.empty(); bytes = source->Read(piece)) target.Write(bytes);
    target.Commit();
}

void CopyDirectory(std::string_view from, std::string_view to) {
    const FileFacts source = GetFileFacts(from);
    MakeDirectory(to);
    std::vector<FileFacts> entered = {source, GetFileFacts(to)};
    CopyTree(std::string(from), std::string(to), entered);
}

}  // namespace pixmora
