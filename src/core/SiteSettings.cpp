// The settings and texts that a website start loads into the process-wide values.
#include "core/SiteSettings.h"

#include <optional>

#include "core/site/Globals.h"
#include "core/site/OwnerDialogue.h"
#include "platform/files/Files.h"
#include "platform/loop/App.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "platform/runtime/Text.h"
#include "store/Protection.h"
#include "store/Settings.h"
#include "store/Statistics.h"

namespace pixmora {

namespace {

std::string StyleSheetPath(const std::string &style) {
    return App::HtdocsPath("StyleSheet_" + style + ".tpl");
}

/// CR LF is the line end of the program's own files; one written by an editor of this system has LF alone.
std::string ReplaceLineEnds(const std::string &text, std::string_view with) {
    return Replace(Replace(text, "\r\n", with), "\n", with);
}

/// A percentage in the bits where the picture engine takes it.
constexpr std::int32_t QualityFlag(std::int32_t percent) {
    return percent * 4096;
}

}  // namespace

void LoadStyleSheet() {
    std::string path = StyleSheetPath(GetSetting("Setup", "Style", "Default"));
    if (!FileExists(path)) path = StyleSheetPath("Default");
    gStyleSheet.clear();
    if (FileExists(path)) {
        gStyleSheet = ReadBinaryFile(path);
    } else {
        ShowMessageBox("Warning: Style sheet not found!", FlagCritical);
    }
}

void LoadSiteTexts() {
    gServerTitle = GetSetting("Setup", "ServerTitle", "My Digital Media");
    gAuthor = GetSetting("Setup", "Author");
    // Deliberate: the text goes into gWelcomeText, which the next step overwrites; gSiteDescription stays empty.
    if (const std::optional<std::string> text = ReadProgramFile("sitedesc.txt")) {
        gWelcomeText = *text;
    } else {
        gSiteDescription.clear();
    }
    gWelcomeText = ReplaceLineEnds(ReadProgramFile("welcome.txt").value_or(""), "<br>");
}

void LoadDisplaySettings() {
    const std::int32_t size = GetSettingNumber("Setup", "ImageSize", 3);
    const auto times = [size](std::int32_t pixels) {
        return Naming("Setup, ImageSize", [&] { return MultiplyLong(size, pixels); });
    };
    gThumbSize = times(50);
    gSlideshowSize = times(100);
    gPreviewSize = times(125);
    const std::int32_t quality = GetSettingNumber("Setup", "ImageQuality", 3);
    if (quality >= 1 && quality <= 5) {
        gThumbQuality = QualityFlag(20 + quality * 10);
        gSlideshowQuality = QualityFlag(30 + quality * 10);
        gPreviewQuality = QualityFlag(40 + quality * 10);
    }
    gSortMethod = GetSettingNumber("Setup", "SortMethod", 0);
    gSortOrder = GetSettingNumber("Setup", "SortOrder", 0);
    gFilesPerRow = GetSettingNumber("Setup", "FilesPerRow", 3);
    gFilesPerPage = GetSettingNumber("Setup", "FilesPerPage", 12);
}

void LoadRestrictedWords() {
    std::string words = "Private*|Censored";
    if (const std::optional<std::string> text = ReadProgramFile(RestrictedWordsFile)) {
        words = Replace(ReplaceLineEnds(*text, "|"), "||", "|");
    }
    gRestrictedWords = Split(words, "|");
}

void ReadTotals() {
    gRunningTotal = ReadStatTotal(Stat::RunningTime);
    gConnectionsTotal = ReadStatTotal(Stat::Visitors);
    gThumbsTotal = ReadStatTotal(Stat::Thumbs);
    gDownloadsTotal = ReadStatTotal(Stat::Downloads);
    gBandwidthTotal = ReadStatTotal(Stat::Bandwidth);
}

}  // namespace pixmora
