// The program's folder: where it is, what is shipped for it, and the one process that holds it.
#include "platform/loop/App.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora::App {

namespace {

namespace fs = std::filesystem;

/// Of the running program, links resolved.
fs::path ExecutableFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

fs::path ChooseFolder() {
    if (const char *home = std::getenv("PIXMORA_HOME"); home != nullptr && *home != '\0') return home;
    fs::path beside = ExecutableFolder();
    if (!beside.empty() && access(beside.c_str(), W_OK) == 0) return beside;
    return fs::path(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString()) / "pixmora";
}

std::string MakeChosenFolder() {
    std::string folder = ProgramPath(fs::absolute(ChooseFolder()).lexically_normal().string());
    if (folder.ends_with('\\')) folder.pop_back();
    MakeDirectory(folder);
    return folder;
}

/// Empty until the folder has been asked for.
std::string &KeptPath() {
    static std::string path;
    return path;
}

/// The lock on the program's folder, as long as the descriptor is open.
class FolderLock {
public:
    ~FolderLock() { Release(); }

    /// Whether somebody else has the folder. A folder that can't hold a lock is nobody's.
    bool IsElsewhere(const std::string &folder) {
        if (descriptor_ >= 0) return false;
        const std::string file = SystemPath(folder) + "/pixmora.lock";
        descriptor_ = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (descriptor_ < 0 || flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return false;
        Release();
        return true;
    }

    void Release() {
        if (descriptor_ >= 0) close(descriptor_);
        descriptor_ = -1;
    }

private:
    int descriptor_ = -1;
};

FolderLock &Lock() {
    static FolderLock lock;
    return lock;
}

}  // namespace

const std::string &Path() {
    if (KeptPath().empty()) KeptPath() = MakeChosenFolder();
    return KeptPath();
}

void SetPath(std::string path) {
    Lock().Release();
    KeptPath() = std::move(path);
}

std::string HtdocsPath(std::string_view name) {
    const std::string folder = Path() + "\\htdocs";
    return name.empty() ? folder : folder + "\\" + std::string(name);
}

void InstallHtdocs() {
    const std::string installed = HtdocsPath();
    if (FileExists(installed)) return;
    const fs::path shipped = ExecutableFolder().parent_path() / "share" / "pixmora";
    const std::string source = ProgramPath((shipped / "htdocs").string());
    if (!IsDirectory(source))
        throw RunTimeError(ErrorNumber::FileNotFound, "The program's htdocs folder is missing: " + SystemPath(source));
    const std::string words = Path() + "\\exif.ini";
    if (!FileExists(words)) CopyFile(ProgramPath((shipped / "exif.ini").string()), words);

    // The folder gets its name when it is whole; what an earlier, interrupted copy left is made anew.
    const std::string partial = Path() + "\\htdocs.part";
    std::error_code error;
    fs::remove_all(SystemPath(partial), error);
    CopyDirectory(source, partial);
    fs::rename(SystemPath(partial), SystemPath(installed), error);
    if (error) throw RunTimeError(ErrorNumber::PathFileAccessError);
}

bool PrevInstance() {
    return Lock().IsElsewhere(Path());
}

}  // namespace pixmora::App
