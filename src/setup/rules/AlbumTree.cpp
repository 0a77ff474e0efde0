// The tree of albums and their directories.
#include "setup/rules/AlbumTree.h"

#include <algorithm>

#include "platform/files/Files.h"
#include "store/Catalogue.h"

namespace pixmora {

namespace {

bool IsShownDirectory(const DirectoryEntry &entry) {
    return entry.IsDirectory && !entry.Name.starts_with('.');
}

bool HasSubDirectory(const std::string &path) {
    const Directory walk(path);
    return std::ranges::any_of(walk.Entries(), IsShownDirectory);
}

}  // namespace

std::vector<std::string> SubDirectoryNames(const std::string &path) {
    std::vector<std::string> names;
    const Directory walk(path);
    for (const DirectoryEntry &entry : walk.Entries()) {
        if (IsShownDirectory(entry)) names.push_back(entry.Name);
    }
    return names;
}

std::vector<TreeNode> AlbumNodes() {
    std::vector<TreeNode> nodes;
    std::int32_t count = 0;
    for (const std::string &name : GetAlbumNames(count)) {
        nodes.push_back({name + ":\\", name + ":", HasSubDirectory(GetAlbumDirectory(name))});
    }
    return nodes;
}

std::vector<TreeNode> ChildDirectories(std::string_view key) {
    const std::string path = DirectoryOfKey(key) + "\\";
    const std::string stem = SubDirOfKey(key) == "\\" ? std::string(key) : std::string(key) + "\\";
    std::vector<TreeNode> nodes;
    for (const std::string &name : SubDirectoryNames(DirectoryOfKey(key))) {
        nodes.push_back({stem + name, name, HasSubDirectory(path + name)});
    }
    return nodes;
}

bool IsTreeRoot(std::string_view key) {
    return key == TreeRootKey;
}

std::string AlbumOfKey(std::string_view key) {
    return std::string(key.substr(0, key.find(':')));
}

std::string SubDirOfKey(std::string_view key) {
    return std::string(key.substr(key.find(':') + 1));
}

std::string DirectoryOfKey(std::string_view key) {
    const std::string root = GetAlbumDirectory(AlbumOfKey(key));
    const std::string subDir = SubDirOfKey(key);
    return subDir == "\\" ? root : root + subDir;
}

}  // namespace pixmora
