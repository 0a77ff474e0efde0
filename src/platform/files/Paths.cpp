// Files.h: paths between the program's form and the system's, and what stands at them.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/files/FileFacts.h"
#include "platform/files/Files.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

bool HasNul(std::string_view path) {
    return path.find('\0') != std::string_view::npos;
}

/// The mode bits of what stands at the path, links followed; 0 when nothing does.
mode_t ModeAt(std::string_view path) {
    struct stat facts {};
    if (HasNul(path) || stat(SystemPath(path).c_str(), &facts) != 0) return 0;
    return facts.st_mode;
}

DateTime LocalTimeOf(const struct statx_timestamp &time) {
    return LocalTime(time.tv_sec);
}

}  // namespace

std::string SystemPath(std::string_view path) {
    std::string result(path);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

std::string ProgramPath(std::string_view path) {
    std::string result(path);
    std::replace(result.begin(), result.end(), '/', '\\');
    return result;
}

std::string LastPathPart(std::string_view path) {
    std::string text = ProgramPath(path);
    if (text == "\\") return text;
    const std::size_t separator = text.rfind('\\');
    return separator == std::string::npos ? text : text.substr(separator + 1);
}

std::string ParentPath(std::string_view path) {
    return std::string(path.substr(0, path.size() - LastPathPart(path).size()));
}

bool FileExists(std::string_view path) {
    return !path.empty() && !IsSeparator(path.back()) && ModeAt(path) != 0;
}

bool PathExists(std::string_view path) {
    std::string plain = Replace(ProgramPath(path), "\\\\", "\\");
    if (plain.ends_with('\\')) plain.pop_back();
    return FileExists(Replace(std::move(plain), "\"", ""));
}

bool IsDirectory(std::string_view path) {
    return S_ISDIR(ModeAt(path));
}

bool HasForbiddenPart(std::string_view path) {
    if (HasNul(path)) return true;
    const std::vector<std::string> parts = Split(SystemPath(path), "/");
    return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

bool HasBadFileChars(std::string_view name) {
    return name.find_first_of("\\/:*?\"'<>|") != std::string_view::npos;
}

std::optional<FileFacts> FactsAt(int directory, const std::string &name) {
    struct statx facts {};
    if (statx(directory, name.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0) return std::nullopt;
    FileFacts result;
    result.IsDirectory = S_ISDIR(facts.stx_mode);
    result.Size = static_cast<std::int64_t>(facts.stx_size);
    result.LastWriteTime = LocalTimeOf(facts.stx_mtime);
    const bool hasBirthTime = (facts.stx_mask & STATX_BTIME) != 0;
    result.CreationTime = hasBirthTime ? LocalTimeOf(facts.stx_btime) : result.LastWriteTime;
    result.Device = (std::uint64_t{facts.stx_dev_major} << 32) | facts.stx_dev_minor;
    result.Inode = facts.stx_ino;
    return result;
}

FileFacts GetFileFacts(std::string_view path) {
    const auto facts = HasNul(path) ? std::nullopt : FactsAt(AT_FDCWD, SystemPath(path));
    if (!facts) throw RunTimeError(ErrorNumber::FileNotFound);
    return *facts;
}

std::int64_t FileLength(std::string_view path) {
    const FileFacts facts = GetFileFacts(path);
    if (facts.IsDirectory) throw RunTimeError(ErrorNumber::FileNotFound);
    return facts.Size;
}

std::string FormatFileSize(std::string_view path) {
    return Try([&] { return FormatByteSize(static_cast<double>(FileLength(path))); }).value_or("");
}

}  // namespace pixmora
