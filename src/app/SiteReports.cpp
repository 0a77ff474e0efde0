// What pixmoractl tells the owner of the site: its statistics, and what is wrong with it.
#include "app/SiteReports.h"

#include <algorithm>
#include <array>

#include "core/SiteSettings.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/registry/Registry.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Catalogue.h"
#include "store/Globals.h"
#include "store/Protection.h"
#include "store/Schema.h"
#include "store/Settings.h"
#include "store/StatsTables.h"

namespace pixmora {

namespace {

constexpr std::array numbersOfSetup = {
    "RunSetup",       "ListenPort",   "FilesPerRow",     "FilesPerPage",
    "ImageSize",      "ImageQuality", "SortMethod",      "SortOrder",
    "ListOnline",     "Webcam",       "WebcamSource",    "WebCamDevice",
    "NextAlbumID",    "MoreTypes",    "CaptureInterval", "ConversionSpacing",
    "MaxConnections", "IdleTimeout",  "BrowserCache",    "ShowPlaces",
    "IPv6",           "PortMapping",
};

std::string Padded(const std::string &text, std::size_t width, bool isToTheRight) {
    const std::string blanks(width - std::min(width, text.size()), ' ');
    return isToTheRight ? blanks + text : text + blanks;
}

std::string ColumnsText(const StatsTable &table) {
    std::vector<std::vector<std::string>> lines = {{table.Span}};
    lines.front().insert(lines.front().end(), std::begin(StatsColumns), std::end(StatsColumns));
    for (const StatsRow &row : table.Rows) {
        lines.push_back(FigureTexts(row.Counts));
        lines.back().insert(lines.back().begin(), row.Label);
    }
    std::vector<std::size_t> widths(lines.front().size());
    for (const auto &line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
    }
    std::string text = table.Title + "\n";
    for (const auto &line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) text += "  " + Padded(line[i], widths[i], i > 0);
        text += "\n";
    }
    return text;
}

template <typename Call>
void NoteError(std::vector<std::string> &faults, const Call &call) {
    try {
        call();
    } catch (const RunTimeError &error) {
        faults.push_back(error.Message());
    }
}

void CheckSettings(std::vector<std::string> &faults) {
    for (const char *key : numbersOfSetup) NoteError(faults, [key] { GetSettingNumber("Setup", key, 0); });
    NoteError(faults, [] { GetSettingNumber("Records", "CreatedAlbum", 0); });
    const std::string albumIDs = Concat(SettingsKey, "\\", App::Title, "\\AlbumIDs");
    for (const auto &[album, number] : Registry::EnumValues(Registry::Root::CurrentUser, albumIDs)) {
        NoteError(faults, [&name = album] { GetSettingNumber("AlbumIDs", name, 0); });
    }
}

void CheckPatterns(std::vector<std::string> &faults) {
    NoteError(faults, LoadRestrictedWords);
    for (const std::string &pattern : std::vector<std::string>(gRestrictedWords)) {
        gRestrictedWords = {pattern};
        NoteError(faults, [] { IsRestrictedName("name"); });
    }
}

bool CanBeRead(const std::string &folder) {
    const Directory directory(folder);
    return directory.IsReadable() && directory.Facts({".", true});
}

void CheckAlbums(std::vector<std::string> &faults) {
    std::int32_t count = 0;
    for (const std::string &name : GetAlbumNames(count)) {
        const std::string folder = GetAlbumDirectory(name);
        if (CanBeRead(folder)) continue;
        const char *what = PathExists(folder) ? " can't be read" : " is missing";
        faults.push_back("The folder '" + SystemPath(folder) + "' of the album '" + name + "'" + what);
    }
}

void CheckDatabase(std::vector<std::string> &faults) {
    if (!FileExists(DatabasePath(CurrentSchemaVersion))) return;
    if (!OpenOrCreateDatabase()) {
        faults.push_back(Replace(DatabaseMessage(), "\r\n\r\n", " "));
        return;
    }
    for (const std::string &fault : gDatabase->Faults()) faults.push_back("Database: " + Replace(fault, "\n", " "));
    CheckAlbums(faults);
}

}  // namespace

std::string StatsText(bool isCsv) {
    std::string text = isCsv ? "Table,Span,Visitors,Thumbnails,File Clicks,Bandwidth (KB)\n" : "";
    for (const StatsTable &table : ReadStatsTables()) {
        if (!isCsv) text += (text.empty() ? "" : "\n") + ColumnsText(table);
        if (!isCsv) continue;
        for (const auto &[label, counts] : table.Rows) {
            text += Join({table.Title, label, NumberText(counts.Visitors), NumberText(counts.Thumbs),
                          NumberText(counts.Downloads), NumberText(counts.Bandwidth)},
                         ",") +
                    "\n";
        }
    }
    return text;
}

std::vector<std::string> SiteFaults() {
    std::vector<std::string> faults;
    CheckSettings(faults);
    CheckPatterns(faults);
    NoteError(faults, [&faults] { CheckDatabase(faults); });
    return faults;
}

}  // namespace pixmora
