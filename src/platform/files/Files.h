// Files and directories. Paths of the program keep "\" between their parts; only these calls turn them into the
// system's.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/Clock.h"

namespace pixmora {

/// The system's form of a path: every "\" a "/".
std::string SystemPath(std::string_view path);
/// The program's form of a path of the system: every "/" a "\".
std::string ProgramPath(std::string_view path);

/// What follows the path's last separator, either of "\" and "/"; "\" for a path that is nothing else.
std::string LastPathPart(std::string_view path);
/// The path without its last part, with the separator at its end.
std::string ParentPath(std::string_view path);

/// Whether something stands at the path, file or directory. A path with a NUL, an empty one and one ending in a
/// separator have nothing.
bool FileExists(std::string_view path);
/// As FileExists, after doubled backslashes are made single, a trailing backslash is cut and double quotes are removed.
bool PathExists(std::string_view path);
bool IsDirectory(std::string_view path);
/// Whether a part of the path is ".." or the path holds a NUL: no visitor's path may.
bool HasForbiddenPart(std::string_view path);

/// Whether the name holds one of \/:*?"'<>| . Album and user names may not.
bool HasBadFileChars(std::string_view name);

struct DirectoryEntry {
    std::string Name;  ///< bytes as the system has them, no path
    bool IsDirectory = false;
};

/// A file's or directory's facts, links followed.
struct FileFacts {
    bool IsDirectory = false;
    std::int64_t Size = 0;     ///< bytes
    DateTime CreationTime;     ///< birth time where the file system has one, else as LastWriteTime; local
    DateTime LastWriteTime;    ///< local
    std::uint64_t Device = 0;  ///< with Inode the identity, so that a walk sees a loop of links
    std::uint64_t Inode = 0;

    /// Whether both are of the one file or directory.
    bool IsSame(const FileFacts &other) const { return Device == other.Device && Inode == other.Inode; }
};

/// One directory opened for a walk: its entries, "." and ".." among them, in byte-wise name order. Entries whose name
/// can't stand in a path of the program (it holds a "\") are left out, as are broken links.
class Directory {
public:
    /// A path that can't be read gives a walk with no entries and IsReadable false.
    explicit Directory(std::string_view path);
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    bool IsReadable() const { return isReadable_; }
    const std::vector<DirectoryEntry> &Entries() const { return entries_; }
    /// Facts of one of the entries, none when it has vanished meanwhile or can be listed and not looked at; the listing
    /// itself asks for none, which is what makes it cheap.
    std::optional<FileFacts> Facts(const DirectoryEntry &entry) const;

private:
    int descriptor_ = -1;
    bool isReadable_ = false;
    std::vector<DirectoryEntry> entries_;
};

/// @throws RunTimeError FileNotFound
FileFacts GetFileFacts(std::string_view path);
/// Bytes. @throws RunTimeError FileNotFound
std::int64_t FileLength(std::string_view path);
/// FormatByteSize of the length; empty on failure.
std::string FormatFileSize(std::string_view path);

/// An open file. Closed by its destructor.
class BinaryFile {
public:
    /// Opens for reading. @throws RunTimeError FileNotFound, PathFileAccessError, with the file's name; a directory is
    /// refused
    static std::unique_ptr<BinaryFile> OpenForRead(std::string_view path);
    /// The run time's binary open: as OpenForRead, but a missing file is created empty.
    static std::unique_ptr<BinaryFile> OpenBinary(std::string_view path);
    ~BinaryFile();
    BinaryFile(const BinaryFile &) = delete;
    BinaryFile &operator=(const BinaryFile &) = delete;

    std::int64_t Length() const;
    /// The next bytes from the current position; fewer only at the file's end. @throws RunTimeError DeviceIOError
    std::string Read(std::size_t count);
    std::string ReadAll();
    /// Reads at an offset and leaves the current position. @return how many bytes came; 0 at the end and on failure
    std::size_t ReadAt(std::int64_t offset, void *bytes, std::size_t count) const;
    /// For a library that reads by itself; stays ours to close.
    int Descriptor() const { return descriptor_; }

private:
    explicit BinaryFile(int descriptor) : descriptor_(descriptor) {}
    int descriptor_;
};

/// The whole file as bytes, missing ones created empty: the run time's binary open and read.
std::string ReadBinaryFile(std::string_view path);
/// Who may read a file that is written: whom the file that it replaces, or else the system, allows; or its owner alone.
enum class Readers { AsBefore, OwnerOnly };
/// Replaces the file whole or not at all. @throws RunTimeError PathFileAccessError, DiskFull
void WriteFileAtomically(std::string_view path, std::string_view bytes, Readers readers = Readers::AsBefore);
/// Leaves a file, where there is one that the system lets us change, to its owner's eyes alone.
void HideFromOthers(std::string_view path);
/// @throws RunTimeError FileNotFound, PathFileAccessError
void DeleteFile(std::string_view path);
/// Puts the file in the place of what stands at the other path of the same disk; on return the name is on the disk too.
/// @throws RunTimeError PathFileAccessError, DiskFull
void RenameFile(std::string_view from, std::string_view to);
/// Makes the directory, and those above it, where they aren't there. @throws RunTimeError PathFileAccessError
void MakeDirectory(std::string_view path);
/// Copies the bytes to a file that appears whole or not at all. @throws RunTimeError
void CopyFile(std::string_view from, std::string_view to);
/// With everything below it; existing files at the target stay, and no directory is entered from within itself.
/// @throws RunTimeError
void CopyDirectory(std::string_view from, std::string_view to);

}  // namespace pixmora
