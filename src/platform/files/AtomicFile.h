// A file that appears whole or not at all. For the sources of this room only.
#pragma once

#include <string>
#include <string_view>

#include "platform/files/Files.h"

namespace pixmora {

/// Bytes go to a new file beside the target, which Commit puts in the target's place; without it nothing has happened.
/// A link at the target stays one: what it leads to is replaced. Every operation @throws RunTimeError
/// PathFileAccessError, DiskFull, both with the name of the file
class AtomicFile {
public:
    explicit AtomicFile(std::string_view path, Readers readers = Readers::AsBefore);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    void Write(std::string_view bytes);
    /// On return the bytes and the name are on the disk.
    void Commit();
    /// As Commit, but the disk may take it later: for what can be made again.
    void CommitUnflushed();

private:
    void CreateBeside();

    std::string target_;     ///< in the system's form, links resolved
    std::string temporary_;  ///< empty once it has taken the target's place
    int descriptor_ = -1;
};

}  // namespace pixmora
