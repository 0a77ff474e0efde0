// The four ways to start the program.
#include "console/RunMode.h"

#include <filesystem>

namespace pixmora {

RunMode RunModeOf(const std::string &commandLine) {
    if (commandLine.empty()) return RunMode::Normal;
    if (commandLine == "start") return RunMode::Start;
    if (commandLine == "startopensite") return RunMode::StartOpenSite;
    return RunMode::NewAlbum;
}

std::string NewAlbumDirectory(const std::string &commandLine) {
    std::error_code error;
    const std::filesystem::path path(commandLine);
    if (path.is_absolute() || !std::filesystem::is_directory(path, error)) return commandLine;
    std::string absolute = std::filesystem::absolute(path, error).lexically_normal().string();
    if (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
    return absolute;
}

}  // namespace pixmora
