// The tree of albums and their directories, as the dialogs for the order and the access show it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

struct TreeNode {
    std::string Key;  ///< album name, ":" and the path below its root: "Trips:\", "Trips:\a\b"
    std::string Text;
    bool HasChildren = false;
};

inline constexpr const char *TreeRootKey = "myalbums";
inline constexpr const char *TreeRootText = "My Albums";

/// A node for each album, by name.
std::vector<TreeNode> AlbumNodes();

/// The directories right below a node, in the disk's order; hidden ones left out. None for a node that can't be read.
std::vector<TreeNode> ChildDirectories(std::string_view key);

bool IsTreeRoot(std::string_view key);
/// The album of a node other than the root.
std::string AlbumOfKey(std::string_view key);
/// The path below the album's root: "\", or "\a\b".
std::string SubDirOfKey(std::string_view key);
/// The node's directory on the disk.
std::string DirectoryOfKey(std::string_view key);

/// Names of the directories right below a path, in the disk's order; hidden ones left out.
std::vector<std::string> SubDirectoryNames(const std::string &path);

}  // namespace pixmora
