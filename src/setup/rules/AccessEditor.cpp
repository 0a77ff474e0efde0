// What the access dialog and the list of protected directories decide.
#include "setup/rules/AccessEditor.h"

#include <algorithm>

#include "core/site/OwnerDialogue.h"
#include "platform/database/Database.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Text.h"
#include "setup/rules/UserEditor.h"
#include "store/Globals.h"
#include "store/Protection.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr const char *restrictWordsAtStart = "Private*\r\nCensored\r\n";

}  // namespace

std::string RestrictedRow::DirectoryText() const {
    return SubDir == "\\" || SubDir.empty() ? "Root Folder" : SubDir.substr(1);
}

std::vector<RestrictedRow> GetRestrictedRows() {
    std::vector<RestrictedRow> rows;
    const auto rights = gDatabase->OpenRecordset("PrivateDirs", RecordsetType::Snapshot);
    for (; !rights->Eof(); rights->MoveNext()) {
        rows.push_back({TextOrEmpty(rights->Value("AlbumName")),
                        Replace(TextOrEmpty(rights->Value("SubDir")), "%34", "'"),
                        TextOrEmpty(rights->Value("Username"))});
    }
    return rows;
}

bool OfferToRemoveRight(const std::vector<RestrictedRow> &rows, const RestrictedRow &row) {
    const auto others = std::ranges::count_if(
        rows, [&row](const RestrictedRow &other) { return other.Share == row.Share && other.SubDir == row.SubDir; });
    const std::string warning =
        others == 1 ? "Important Note: By doing this you will make this directory public!\r\n\r\n" : "";
    if (!Asks(warning + "Would you like to take away access from '" + row.Username + "' to '" + row.Share + " > " +
              row.DirectoryText() + "' ?")) {
        return false;
    }
    RemoveRight(row.Share, row.SubDir, row.Username);
    return true;
}

bool OfferToDeleteUser(std::string_view username) {
    if (!Asks("Are you sure you want to delete '" + std::string(username) + "' ?")) return false;
    DeleteUser(username);
    return true;
}

bool WantsFirstUser() {
    return Asks(
        "You have not created any users! You will not be able to restrict any directories until you do so.\r\n\r\n"
        "Would you like to add a user now?\r\n\r\nIt is recommended that you create a user account for yourself and "
        "allow yourself to view all directories.");
}

std::string LoadRestrictWords() {
    return ReadProgramFile(RestrictedWordsFile).value_or(restrictWordsAtStart);
}

void SaveRestrictWords(std::string_view words) {
    WriteFileAtomically(Concat(App::Path(), "\\", RestrictedWordsFile), words);
}

}  // namespace pixmora
