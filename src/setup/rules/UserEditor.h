// What the user and access dialogs decide: who may see which directory.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixmora {

struct UserFields {
    std::string Username;
    std::string Password;
    std::string Confirm;  ///< the password typed again
    bool Admin = false;   ///< may enter all protected directories
};

/// The users by name.
std::vector<std::string> GetUserNames();

/// The stored fields, the password also as Confirm. @throws RunTimeError NoCurrentRecord
UserFields LoadUser(std::string_view username);

/// Tells the owner of an existing user who has been deleted meanwhile. @return whether it has been
bool TellIfUserGone(const std::string &username);

struct UserRefusal {
    enum class Field { Username, Password, Confirm };
    std::string Message;
    Field Where;  ///< the field that wants mending
};

/// The first rule that the fields break. @param editUserName the user being edited, empty to add one
std::optional<UserRefusal> ValidateUser(const UserFields &fields, std::string_view editUserName);

/// Writes valid fields. A new name does not reach the rights, which keep the old one. @return the words for the owner
std::string SaveUser(const UserFields &fields, std::string_view editUserName);

/// Deletes the user with all rights, without a question.
void DeleteUser(std::string_view username);

/// Rights. @param subDir "\" or "\a\b", plain apostrophes
bool HasRight(std::string_view album, std::string_view subDir, std::string_view username);
void AddRight(std::string_view album, std::string_view subDir, std::string_view username);
/// A right that isn't there is no error.
void RemoveRight(std::string_view album, std::string_view subDir, std::string_view username);

}  // namespace pixmora
