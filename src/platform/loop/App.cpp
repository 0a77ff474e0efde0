// The program's folder: where it is, what is shipped for it, and the one process that holds it.
#include "platform/loop/App.h"

#include <unistd.h>

#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "platform/files/FileLock.h"
#include "platform/files/Files.h"

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

/// On the program's folder.
FileLock &Lock() {
    static FileLock lock;
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

std::string ShippedPath(std::string_view name) {
    return ProgramPath((ExecutableFolder().parent_path() / "share" / "pixmora" / name).string());
}

bool PrevInstance() {
    return !Lock().Take(SystemPath(Path()) + "/pixmora.lock");
}

}  // namespace pixmora::App
