// A folder of a test's own.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pixmora {

/// A new folder in the system's place for temporary files, removed with everything in it at the end of the scope.
class TempFolder {
public:
    TempFolder() : path_((std::filesystem::temp_directory_path() / "pixmora-test-XXXXXX").string()) {
        if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
    }
    ~TempFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TempFolder(const TempFolder &) = delete;
    TempFolder &operator=(const TempFolder &) = delete;

    /// In the system's form, no "/" at the end.
    const std::string &Path() const { return path_; }
    /// Of something in the folder. @param name in the system's form, may hold "/"
    std::string Path(std::string_view name) const { return path_ + "/" + std::string(name); }

    /// Writes a file, making the folders above it; gives its path.
    std::string Write(std::string_view name, std::string_view bytes = "") const {
        const std::string path = Path(name);
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    /// The whole file; empty when there is none.
    std::string Read(std::string_view name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// Makes a folder with those above it; gives its path.
    std::string MakeFolder(std::string_view name) const {
        std::filesystem::create_directories(Path(name));
        return Path(name);
    }

private:
    std::string path_;
};

}  // namespace pixmora
