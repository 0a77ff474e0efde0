// What the access dialog and the list of protected directories decide.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

/// One user's right to one directory, as the list in the setup dialog shows it.
struct RestrictedRow {
    std::string Share;   ///< the album
    std::string SubDir;  ///< "\" or "\a\b", plain apostrophes
    std::string Username;

    /// "Root Folder", or the path without its first separator.
    std::string DirectoryText() const;
};

/// All rights, in the table's order.
std::vector<RestrictedRow> GetRestrictedRows();

/// Asks, with a warning when nobody else has a right to the directory, and takes the right away.
/// @return whether it is gone
bool OfferToRemoveRight(const std::vector<RestrictedRow> &rows, const RestrictedRow &row);

/// Asks, and deletes the user with all rights. @return whether it is gone
bool OfferToDeleteUser(std::string_view username);

/// Asked when there are no users at all.
bool WantsFirstUser();

/// The patterns of names that are protected by themselves, one a line ending in CR LF.
std::string LoadRestrictWords();
/// Replaces the file by the text as it is.
void SaveRestrictWords(std::string_view words);

}  // namespace pixmora
