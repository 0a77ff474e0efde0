// pixmoractl: the owner's settings and tables from a shell.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/LineDialogue.h"
#include "app/SiteReports.h"
#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/loop/Application.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "setup/rules/AlbumEditor.h"
#include "setup/rules/UserEditor.h"
#include "store/Catalogue.h"
#include "store/Schema.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

using Words = std::vector<std::string>;

constexpr int statusDone = 0;
constexpr int statusRefused = 1;

constexpr const char *usage =
    "usage: pixmoractl get SECTION KEY [DEFAULT] | set SECTION KEY VALUE | unset SECTION KEY\n"
    "       pixmoractl album list | album add NAME DIRECTORY [--description TEXT] [--no-pictures] [--no-movies]\n"
    "                  [--no-subdirs] [--featured none|random|FILE] | album remove NAME\n"
    "       pixmoractl user list | user add NAME PASSWORD [--admin] | user remove NAME\n"
    "       pixmoractl protect ALBUM SUBDIR USER | unprotect ALBUM SUBDIR USER     (SUBDIR is \"\\\" or \"\\a\\b\")\n"
    "       pixmoractl backup FILE | check | stats [--csv]\n";

int Refuse(const std::string &message) {
    ShowMessageBox(message, FlagCritical);
    return statusRefused;
}

int ShowUsage() {
    return RefuseWords(usage);
}

int RefuseUnknown(const char *what, const std::string &name) {
    return Refuse(Concat("There is no ", what, " named '", name, "'."));
}

bool Holds(const Words &names, const std::string &name) {
    return std::ranges::any_of(names, [&](const std::string &each) { return CompareTexts(each, name) == 0; });
}

bool HasAlbum(const std::string &name) {
    std::int32_t count = 0;
    return Holds(GetAlbumNames(count), name);
}

bool HasUser(const std::string &name) {
    return Holds(GetUserNames(), name);
}

/// A path from the shell, which may be relative to the present folder.
std::string AbsolutePath(const std::string &path) {
    return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

int Get(const Words &words) {
    std::printf("%s\n", GetSetting(words[0], words[1], words.size() > 2 ? words[2] : "").c_str());
    return statusDone;
}

int Set(const Words &words) {
    SaveSetting(words[0], words[1], words[2]);
    return statusDone;
}

int Unset(const Words &words) {
    DeleteSetting(words[0], words[1]);
    return statusDone;
}

int ListAlbums(const Words &) {
    std::int32_t count = 0;
    for (const std::string &name : GetAlbumNames(count)) {
        std::printf("%s\t%s\n", name.c_str(), GetAlbumDirectory(name).c_str());
    }
    return statusDone;
}

void SetFeatured(AlbumFields &fields, const std::string &featured) {
    if (featured == "none" || featured == "random") {
        fields.FeaturedImage = featured == "none" ? 0 : 1;
        return;
    }
    fields.FeaturedImage = 2;
    fields.FeaturedImagePath = AbsolutePath(featured);
}

/// The options behind "album add NAME DIRECTORY"; nothing when one isn't known or lacks its value.
std::optional<AlbumFields> ReadAlbumFields(const Words &words) {
    AlbumFields fields;
    fields.Name = words[0];
    fields.Directory = AbsolutePath(words[1]);
    const std::map<std::string, bool AlbumFields::*> switches = {{"--no-pictures", &AlbumFields::Pictures},
                                                                 {"--no-movies", &AlbumFields::Movies},
                                                                 {"--no-subdirs", &AlbumFields::SubDirs}};
    for (std::size_t i = 2; i < words.size(); ++i) {
        if (const auto found = switches.find(words[i]); found != switches.end()) {
            fields.*found->second = false;
        } else if (words[i] == "--description" && i + 1 < words.size()) {
            fields.Description = words[++i];
        } else if (words[i] == "--featured" && i + 1 < words.size()) {
            SetFeatured(fields, words[++i]);
        } else {
            return std::nullopt;
        }
    }
    return fields;
}

int AddAlbum(const Words &words) {
    std::optional<AlbumFields> fields = ReadAlbumFields(words);
    if (!fields) return ShowUsage();
    if (IsDriveRoot(fields->Directory)) return Refuse(DriveRootQuestion);
    if (const auto refusal = AlbumEditor::Validate(*fields)) return Refuse(refusal->Message);
    if (!fields->FeaturedImagePath.empty()) {
        if (!FileExists(fields->FeaturedImagePath))
            return Refuse("There is no file '" + fields->FeaturedImagePath + "'.");
        gPictureEngine = std::make_unique<PictureEngine>();
        fields->FeaturedImagePath = OfferSmallCopy(fields->FeaturedImagePath);
    }
    AlbumEditor().Save(*fields);
    return statusDone;
}

int RemoveAlbum(const Words &words) {
    if (!HasAlbum(words[0])) return RefuseUnknown("album", words[0]);
    AlbumEditor(words[0]).Delete();
    return statusDone;
}

int ListUsers(const Words &) {
    for (const std::string &name : GetUserNames()) {
        std::printf("%s\t%s\n", name.c_str(), LoadUser(name).Admin ? "admin" : "user");
    }
    return statusDone;
}

int AddUser(const Words &words) {
    const bool isAdmin = words.size() > 2;
    if (isAdmin && words[2] != "--admin") return ShowUsage();
    const UserFields fields{words[0], words[1], words[1], isAdmin};
    if (const auto refusal = ValidateUser(fields, "")) return Refuse(refusal->Message);
    SaveUser(fields, "");
    return statusDone;
}

int RemoveUser(const Words &words) {
    if (!HasUser(words[0])) return RefuseUnknown("user", words[0]);
    DeleteUser(words[0]);
    return statusDone;
}

/// A directory of an album as the tables have it, from either kind of separator.
std::string SubDirOf(const std::string &word) {
    std::string subDir = ProgramPath(word);
    if (!subDir.starts_with('\\')) subDir.insert(0, "\\");
    while (subDir.size() > 1 && subDir.ends_with('\\')) subDir.pop_back();
    return subDir;
}

int Protect(const Words &words) {
    const std::string subDir = SubDirOf(words[1]);
    if (!HasAlbum(words[0])) return RefuseUnknown("album", words[0]);
    if (!HasUser(words[2])) return RefuseUnknown("user", words[2]);
    if (!PathExists(GetAlbumDirectory(words[0]) + subDir)) {
        return Refuse("There is no directory '" + subDir + "' in the album '" + words[0] + "'.");
    }
    if (!HasRight(words[0], subDir, words[2])) AddRight(words[0], subDir, words[2]);
    return statusDone;
}

int Unprotect(const Words &words) {
    const std::string subDir = SubDirOf(words[1]);
    if (!HasRight(words[0], subDir, words[2])) {
        return Refuse("'" + words[2] + "' has no right to '" + subDir + "' in the album '" + words[0] + "'.");
    }
    RemoveRight(words[0], subDir, words[2]);
    return statusDone;
}

int BackUp(const Words &words) {
    const std::string database = DatabasePath(CurrentSchemaVersion);
    const std::string target = ProgramPath(AbsolutePath(words[0]));
    if (IsDirectory(target)) return Refuse("'" + words[0] + "' is a directory.");
    if (FileExists(target)) {
        if (GetFileFacts(target).IsSame(GetFileFacts(database)))
            return Refuse("'" + words[0] + "' is the database itself.");
    }
    const std::string unfinished = target + ".part";
    if (FileExists(unfinished)) DeleteFile(unfinished);
    try {
        gDatabase->BackUp(unfinished);
        RenameFile(unfinished, target);
    } catch (const RunTimeError &error) {
        if (FileExists(unfinished)) DeleteFile(unfinished);
        throw error.About(words[0]);
    }
    return statusDone;
}

int Check(const Words &) {
    const std::vector<std::string> faults = SiteFaults();
    for (const std::string &fault : faults) std::printf("%s\n", fault.c_str());
    return faults.empty() ? statusDone : statusRefused;
}

int ShowStats(const Words &words) {
    if (!words.empty() && words[0] != "--csv") return ShowUsage();
    std::fputs(StatsText(!words.empty()).c_str(), stdout);
    return statusDone;
}

enum class Needs { Settings, Tables, TablesToChange };

struct Command {
    Words Name;              ///< its leading words
    std::size_t LeastWords;  ///< behind the name
    std::size_t MostWords;
    Needs What;
    int (*Run)(const Words &);
};

constexpr std::size_t anyNumber = 100;

const std::vector<Command> commands = {
    {{"get"}, 2, 3, Needs::Settings, Get},
    {{"set"}, 3, 3, Needs::Settings, Set},
    {{"unset"}, 2, 2, Needs::Settings, Unset},
    {{"album", "list"}, 0, 0, Needs::Tables, ListAlbums},
    {{"album", "add"}, 2, anyNumber, Needs::TablesToChange, AddAlbum},
    {{"album", "remove"}, 1, 1, Needs::TablesToChange, RemoveAlbum},
    {{"user", "list"}, 0, 0, Needs::Tables, ListUsers},
    {{"user", "add"}, 2, 3, Needs::TablesToChange, AddUser},
    {{"user", "remove"}, 1, 1, Needs::TablesToChange, RemoveUser},
    {{"protect"}, 3, 3, Needs::TablesToChange, Protect},
    {{"unprotect"}, 3, 3, Needs::TablesToChange, Unprotect},
    {{"backup"}, 1, 1, Needs::Tables, BackUp},
    {{"check"}, 0, 0, Needs::Settings, Check},
    {{"stats"}, 0, 1, Needs::Tables, ShowStats},
};

int RunCommand(const Command &command, const Words &words) {
    MigrateSettings();
    if (command.What == Needs::TablesToChange && IsProgramElsewhere()) {
        return Refuse(App::Title + " is already running! Stop it before you change its albums or users.");
    }
    if (command.What != Needs::Settings && !OpenOrCreateDatabase()) {
        return Refuse(DatabaseMessage());
    }
    const int status = command.Run(words);
    gDatabase.reset();
    return status;
}

int RunWords(const Words &words) {
    for (const Command &command : commands) {
        const std::size_t length = command.Name.size();
        if (words.size() < length || !std::equal(command.Name.begin(), command.Name.end(), words.begin())) continue;
        const Words rest(words.begin() + static_cast<std::ptrdiff_t>(length), words.end());
        if (rest.size() < command.LeastWords || rest.size() > command.MostWords) return ShowUsage();
        return RunCommand(command, rest);
    }
    return ShowUsage();
}

}  // namespace

}  // namespace pixmora

int main(int argc, char **argv) {
    const pixmora::Application application(argc, argv);
    pixmora::LineDialogue dialogue;
    pixmora::SetOwnerDialogue(&dialogue);
    try {
        return pixmora::RunWords(pixmora::Words(argv + 1, argv + argc));
    } catch (const pixmora::RunTimeError &error) {
        dialogue.ShowError(error);
        return pixmora::statusRefused;
    }
}
