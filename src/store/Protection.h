// Who may see which directory.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "store/clsAlbum.h"

namespace pixmora {

/// In a stored directory an apostrophe stands as "%34". The mark belongs to statements alone: no directory on the disk
/// has it and no decoding may see it.
std::string ProtectionKey(std::string_view directory);

/// Where the owner may write the patterns of restricted names, in the program's folder.
inline constexpr std::string_view RestrictedWordsFile = "restrictwords.txt";

/// Whether a pattern of gRestrictedWords matches; case counts. An empty name never does.
/// @throws RunTimeError InvalidPattern, naming the pattern's line
bool IsRestrictedName(std::string_view name);

/// Whether the directory or one above it has a row in PrivateDirs, or else the name is a restricted one.
/// @param name plain, as on the disk @param directory plain, "\" or "\a\b"
bool IsProtectedDir(const clsAlbum &album, std::string_view name, std::string_view directory);

/// The albums that are protected as a whole, asked for at once: some pages list them all.
class ProtectedAlbums {
public:
    ProtectedAlbums();
    /// As IsProtectedDir for the root, with the name of the album's folder.
    bool Contains(const clsAlbum &album) const;

private:
    std::unordered_set<std::string> names_;  ///< folded, of those whose root has a row
};

struct ViewRight {
    bool IsGiven = false;
    std::string_view Refusal;  ///< why not, for the visitor; empty when nobody is logged in
};

/// Whether the user may see a protected directory: administrators all, others those that have a row of their own,
/// exactly.
/// @param directory plain @throws RunTimeError SyntaxError when a text holds an apostrophe
ViewRight CanViewDir(std::string_view user, const clsAlbum &album, std::string_view directory);

}  // namespace pixmora
