// Who may see which directory.
#include "store/Protection.h"

#include <algorithm>
#include <span>
#include <vector>

#include "platform/files/Files.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

/// Bytes. The system opens no longer path, so nothing further down is there to protect; a visitor's path of 64 KB has
/// prefixes of a gigabyte.
constexpr std::size_t longestDirectory = 4096;
/// The engine bounds the terms of one condition.
constexpr std::size_t levelsAskedAtOnce = 100;

bool HasRows(const std::string &statement) {
    return !gDatabase->OpenRecordset(statement, RecordsetType::Snapshot)->Eof();
}

/// The album's root and each level down to the directory itself: "\a\b" gives "\", "\a", "\a\b".
std::vector<std::string> DirectoryPrefixes(std::string_view directory) {
    const std::vector<std::string> parts = Split(directory, "\\");
    std::vector<std::string> prefixes = {"\\"};
    std::string prefix;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (parts[i].empty()) continue;
        prefix += "\\" + parts[i];
        if (prefix.size() > longestDirectory) break;
        prefixes.push_back(prefix);
    }
    return prefixes;
}

/// The rows of any of the directories, asked for at once: listings ask about each of their entries.
std::string RightsStatement(const std::string &albumName, std::span<const std::string> directories) {
    std::vector<std::string> tests;
    tests.reserve(directories.size());
    for (const std::string &directory : directories) tests.push_back("SubDir=" + QuotedText(ProtectionKey(directory)));
    return "SELECT * FROM PrivateDirs WHERE AlbumName=" + QuotedText(albumName) + " and (" + Join(tests, " or ") + ")";
}

/// The line of the owner's file that a pattern stands in, from 1; 0 for none.
std::size_t LineOfPattern(const std::string &pattern) {
    const std::vector<std::string> lines = Split(ReadProgramFile(RestrictedWordsFile).value_or(""), "\n");
    const auto line = std::ranges::find_if(lines, [&](const std::string &text) { return Contains(text, pattern); });
    return line == lines.end() ? 0 : static_cast<std::size_t>(line - lines.begin()) + 1;
}

bool MatchesPattern(std::string_view name, const std::string &pattern) {
    try {
        return Like(name, pattern);
    } catch (const RunTimeError &error) {
        throw error.About(Concat(RestrictedWordsFile, ", line ", LineOfPattern(pattern)));  // looked for only now
    }
}

}  // namespace

std::string ProtectionKey(std::string_view directory) {
    return Replace(std::string(directory), "'", "%34");
}

bool IsRestrictedName(std::string_view name) {
    if (name.empty()) return false;
    for (const std::string &pattern : gRestrictedWords) {
        if (MatchesPattern(name, pattern)) return true;
    }
    return false;
}

bool IsProtectedDir(const clsAlbum &album, std::string_view name, std::string_view directory) {
    const std::vector<std::string> levels = DirectoryPrefixes(directory);
    for (std::span<const std::string> rest = levels; !rest.empty();) {
        const std::size_t count = std::min(rest.size(), levelsAskedAtOnce);
        if (HasRows(RightsStatement(album.Name, rest.first(count)))) return true;
        rest = rest.subspan(count);
    }
    return IsRestrictedName(name);
}

ProtectedAlbums::ProtectedAlbums() {
    const auto rows =
        gDatabase->OpenRecordset("SELECT AlbumName FROM PrivateDirs WHERE SubDir='\\'", RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        const FieldValue name = rows->Value("AlbumName");
        if (!IsNull(name)) names_.insert(FoldedText(AsText(name)));
    }
}

bool ProtectedAlbums::Contains(const clsAlbum &album) const {
    return names_.contains(FoldedText(album.Name)) || IsRestrictedName(LastPathPart(album.Directory));
}

ViewRight CanViewDir(std::string_view user, const clsAlbum &album, std::string_view directory) {
    if (user.empty()) return {};
    const auto account =
        gDatabase->OpenRecordset("SELECT Admin FROM Users WHERE Username=" + QuotedText(user), RecordsetType::Snapshot);
    if (account->Eof()) return {false, "You are logged in as an invalid user!"};
    const FieldValue isAdministrator = account->Value("Admin");
    if (!IsNull(isAdministrator) && AsBoolean(isAdministrator)) return {true, ""};
    // Deliberate: a right reaches exactly the directory that it was given for, nothing below it.
    const std::string exact(directory);
    const std::string rights = RightsStatement(album.Name, {&exact, 1});
    if (HasRows(rights + " and Username=" + QuotedText(user))) return {true, ""};
    return {false, "Login is correct but you do not have permission to view this directory!"};
}

}  // namespace pixmora
