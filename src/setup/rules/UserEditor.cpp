// What the user and access dialogs decide.
#include "setup/rules/UserEditor.h"

#include <algorithm>

#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/AlbumEditor.h"
#include "store/Globals.h"
#include "store/Protection.h"
#include "store/Rows.h"

namespace pixmora {

namespace {

std::string OfUser(std::string_view username) {
    return "Username=" + QuotedText(username);
}

std::string OfRight(std::string_view album, std::string_view subDir, std::string_view username) {
    return "AlbumName=" + QuotedText(album) + " and SubDir=" + QuotedText(ProtectionKey(subDir)) + " and " +
           OfUser(username);
}

}  // namespace

std::vector<std::string> GetUserNames() {
    const auto users = gDatabase->OpenRecordset("SELECT * FROM Users ORDER BY Username", RecordsetType::Snapshot);
    std::vector<std::string> names;
    for (; !users->Eof(); users->MoveNext()) names.push_back(AsText(users->Value("Username")));
    return names;
}

bool TellIfUserGone(const std::string &username) {
    if (username.empty()) return false;
    const auto users = gDatabase->OpenRecordset("Users", RecordsetType::Snapshot);
    users->FindFirst(OfUser(username));
    if (!users->NoMatch()) return false;
    ShowMessageBox("The user '" + username + "' is there no more! It has been deleted meanwhile.", FlagCritical);
    return true;
}

UserFields LoadUser(std::string_view username) {
    const auto users = gDatabase->OpenRecordset("Users", RecordsetType::Snapshot);
    users->FindFirst(OfUser(username));
    if (users->NoMatch()) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    const std::string password = AsText(users->Value("Password"));
    const FieldValue admin = users->Value("Admin");
    return {AsText(users->Value("Username")), password, password, !IsNull(admin) && AsBoolean(admin)};
}

std::optional<UserRefusal> ValidateUser(const UserFields &fields, std::string_view editUserName) {
    // Deliberate: a name changed in its case alone meets its own entry here and is refused.
    const bool isTaken =
        fields.Username != editUserName && std::ranges::any_of(GetUserNames(), [&fields](const std::string &name) {
            return CompareTexts(name, fields.Username) == 0;
        });
    using enum UserRefusal::Field;
    if (isTaken) return UserRefusal{"Username already exists!", Username};
    if (fields.Username.empty()) return UserRefusal{"You must enter a username!", Username};
    if (HasBadFileChars(fields.Username)) return UserRefusal{BadNameMessage("Username"), Username};
    if (fields.Password.empty()) return UserRefusal{"You must enter a password!", Password};
    if (fields.Password != fields.Confirm) return UserRefusal{"Passwords don't match!", Confirm};
    return std::nullopt;
}

std::string SaveUser(const UserFields &fields, std::string_view editUserName) {
    const auto users = gDatabase->OpenRecordset("Users", RecordsetType::Dynaset);
    const bool isNew = editUserName.empty();
    if (isNew) {
        users->AddNew();
    } else {
        users->FindFirst(OfUser(editUserName));
        if (users->NoMatch()) throw RunTimeError(ErrorNumber::NoCurrentRecord);
        users->Edit();
    }
    users->Set("Username", fields.Username);
    users->Set("Password", fields.Password);
    users->Set("Admin", fields.Admin);
    users->Update();
    return isNew ? "User Added!" : "User Information Saved!";
}

void DeleteUser(std::string_view username) {
    Transaction transaction(*gDatabase);
    DeleteRows("PrivateDirs", OfUser(username));
    DeleteRows("Users", OfUser(username));
    transaction.Commit();
}

bool HasRight(std::string_view album, std::string_view subDir, std::string_view username) {
    return !gDatabase
                ->OpenRecordset("SELECT * FROM PrivateDirs WHERE " + OfRight(album, subDir, username),
                                RecordsetType::Snapshot)
                ->Eof();
}

void AddRight(std::string_view album, std::string_view subDir, std::string_view username) {
    const auto rights = gDatabase->OpenRecordset("PrivateDirs", RecordsetType::Dynaset);
    rights->AddNew();
    rights->Set("AlbumName", std::string(album));
    rights->Set("SubDir", ProtectionKey(subDir));
    rights->Set("Username", std::string(username));
    rights->Update();
}

void RemoveRight(std::string_view album, std::string_view subDir, std::string_view username) {
    const auto rights = gDatabase->OpenRecordset("PrivateDirs", RecordsetType::Dynaset);
    rights->FindFirst(OfRight(album, subDir, username));
    if (!rights->NoMatch()) rights->Delete();
}

}  // namespace pixmora
