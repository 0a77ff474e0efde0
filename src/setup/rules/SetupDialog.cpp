// What the setup dialog decides: the wizard's steps, Finish and Cancel, its lists.
#include "setup/rules/SetupDialog.h"

#include <algorithm>

#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"
#include "store/Globals.h"
#include "store/Settings.h"

namespace pixmora {

namespace {

constexpr std::size_t longestPath = 40;
constexpr std::string_view cut = "...";
constexpr int pageChoices = 20;
constexpr int rowsAtFirst = 4;

void RecommendRunOnStart(const SetupHands &hands) {
    if (!IsFirstRun() || hands.IsRunOnStartTicked()) return;
    if (Asks("You have decided not to run Pixmora! when Windows starts!\r\n\r\nThis is not recommended because it "
             "means you will have to manually load Pixmora! to share your pictures and movies.\r\n\r\nWould you like "
             "to follow our recommendation and have Pixmora! run automatically?")) {
        hands.TickRunOnStart();
    }
}

/// Once in a lifetime. @return false when the dialog was closed meanwhile
bool RemindOfFirewallCheck(const SetupHands &hands) {
    if (!GetSetting("Records", "FirewallCheckWarning").empty()) return true;
    if (!GetSetting("Setup", "RunFirewallCheck").empty()) return true;
    // Without a service there is nobody to ask whether visitors get through.
    if (CleanServiceBase(hands.Fields().ServiceBase).empty()) return true;
    SaveSetting("Records", "FirewallCheckWarning", "1");
    if (!Asks("You haven't run the Firewall Check yet! Until you do so, we cannot guarantee your friends will be able "
              "to connect to your website. Do you want to run the firewall check now?\r\n\r\nIf you choose No, you "
              "can find the Firewall Check in Setup.")) {
        return true;
    }
    return hands.RunFirewallCheck();
}

bool WantsFirstAlbum() {
    return Asks(
        "You don't have any albums setup!\r\n\r\nYou won't be able to start your website until you create "
        "one.\r\n\r\nWould you like to create one now?");
}

void RemindOfAlbums(int albums) {
    if (albums == 0 || !IsFirstRun()) return;
    SaveSetting("Records", "CreatedAlbum", "1");
    ShowMessageBox("Just as a reminder, you can edit your album" + std::string(albums > 1 ? "s" : "") +
                       " or add more by returning to Setup.\r\n\r\nIf your website is open while you modify a "
                       "setting, make sure click Refresh in your browser to see the latest changes.",
                   FlagInformation);
}

/// Where each character of a UTF-8 text begins, and the text's end.
std::vector<std::size_t> CharacterStarts(std::string_view text) {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) starts.push_back(i);
    }
    starts.push_back(text.size());
    return starts;
}

}  // namespace

std::string StepText(SetupTab tab) {
    const bool isNeeded = tab == SetupTab::Introduction || tab == SetupTab::Albums;
    return "Step " + std::to_string(static_cast<int>(tab) + 1) + " of " + std::to_string(SetupTabs) +
           (isNeeded ? "" : " (may be skipped)");
}

bool IsFirstRun() {
    return GetSetting("Setup", "RunSetup").empty();
}

bool FinishSetup(const SetupHands &hands, const std::string &program) {
    RecommendRunOnStart(hands);
    if (!RemindOfFirewallCheck(hands)) return false;
    const int albums = hands.CountAlbums();
    if (albums == 0 && WantsFirstAlbum()) {
        hands.CreateAlbum();
        return false;
    }
    RemindOfAlbums(albums);
    SaveSetupFields(hands.Fields(), program);
    return true;
}

bool MayCancelSetup(bool settingsChanged) {
    if (IsFirstRun()) {
        return Asks(
            "You haven't configured your website yet!\r\n\r\nCancelling Setup is not recommended.\r\n\r\nAre you "
            "sure you want to cancel Setup?");
    }
    return !settingsChanged || Asks("Are you sure you wish to cancel and discard any changes?");
}

std::string AbbreviatedDir(std::string_view path) {
    const std::vector<std::size_t> starts = CharacterStarts(path);
    const std::size_t length = starts.size() - 1;
    if (length <= longestPath) return std::string(path);
    const std::size_t separator = path.find_last_of("\\/");
    const std::size_t last = separator == std::string_view::npos ? 0 : separator;
    const std::size_t lastLength = CharacterStarts(path.substr(last)).size() - 1;
    const std::size_t room = longestPath - cut.size();
    // A last part that fills the column by itself leaves nothing in front and loses its own beginning.
    if (lastLength >= room) return std::string(cut) + std::string(path.substr(starts[length - room]));
    return std::string(path.substr(0, starts[room - lastLength])) + std::string(cut) + std::string(path.substr(last));
}

std::vector<std::string> FilesPerPageChoices(int filesPerRow) {
    std::vector<std::string> choices;
    for (int rows = 1; rows <= pageChoices; ++rows) choices.push_back(std::to_string(filesPerRow * rows));
    choices.emplace_back(AllFiles);
    return choices;
}

std::string FilesPerPageAtFirst(int filesPerRow) {
    return std::to_string(filesPerRow * rowsAtFirst);
}

std::string NumericText(std::string_view text) {
    return NumberText(Val(text));
}

std::vector<std::string> StyleNames() {
    std::vector<std::string> names;
    const Directory htdocs(App::HtdocsPath());
    for (const DirectoryEntry &entry : htdocs.Entries()) {
        if (entry.IsDirectory || !PathMatchSpec(entry.Name, "StyleSheet_*.tpl")) continue;
        const std::size_t begin = entry.Name.find('_') + 1;
        names.push_back(entry.Name.substr(begin, entry.Name.find('.') - begin));
    }
    if (names.empty()) ShowMessageBox("We couldn't find any style sheets! Please reinstall!", FlagCritical);
    return names;
}

int StyleIndex(const std::vector<std::string> &names, const std::string &style) {
    const auto found = std::ranges::find(names, style);
    if (found != names.end()) return static_cast<int>(found - names.begin());
    ShowMessageBox("Your saved stylesheet cannot be found! Please pick a new one.", FlagCritical);
    return -1;
}

std::string SizeText(int position, int pixelsEach) {
    const std::string pixels = std::to_string(position * pixelsEach);
    return pixels + "x" + pixels;
}

std::string QualityText(int position, int added) {
    return std::to_string((position + added) * 10) + "%";
}

bool HasDirectoryOrder() {
    return !gDatabase->OpenRecordset("DBOrder", RecordsetType::Snapshot)->Eof();
}

bool WantsAlbumFirst(std::string_view purpose) {
    return Asks("You must create an album before you can " + std::string(purpose) +
                "!\r\n\r\nWould you like to create one now?");
}

}  // namespace pixmora
