// What the setup dialog decides: the wizard's steps, Finish and Cancel, its lists.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/rules/SetupFields.h"

namespace pixmora {

/// The tabs in their order.
enum class SetupTab {
    Introduction,
    General,
    Albums,
    FirewallCheck,
    Layout,
    OnlineIdentity,
    AccessControl,
    PortSetup,
};
inline constexpr int SetupTabs = 8;

/// How the wizard's buttons stand on a tab.
struct WizardButtons {
    bool Previous;
    bool Next;
};
constexpr WizardButtons ButtonsOn(SetupTab tab) {
    return {tab != SetupTab::Introduction, tab != SetupTab::PortSetup};
}

/// "Step 5 of 8 (may be skipped)"
std::string StepText(SetupTab tab);

/// Whether setup was never finished; then it is the wizard.
bool IsFirstRun();

/// What Finish needs of the form. All must be set.
struct SetupHands {
    std::function<int()> CountAlbums;
    std::function<bool()> IsRunOnStartTicked;
    std::function<void()> TickRunOnStart;
    /// Goes to the tab and runs the check. @return false when the dialog was closed meanwhile
    std::function<bool()> RunFirewallCheck;
    std::function<void()> CreateAlbum;  ///< goes to the tab and opens the album editor
    std::function<SetupFields()> Fields;
};

/// Asks the reminders and saves everything, in its fixed order. @param program what starts with the session, full path
/// @return false when the dialog stays open with nothing saved, or is closed already
bool FinishSetup(const SetupHands &hands, const std::string &program);

/// Whether Cancel may close the dialog.
bool MayCancelSetup(bool settingsChanged);

/// The album's path for the list, at most 40 characters of it.
std::string AbbreviatedDir(std::string_view path);

/// The choices for the page box, ending in AllFiles, and the one that is taken at first. @param filesPerRow 1 or more
std::vector<std::string> FilesPerPageChoices(int filesPerRow);
std::string FilesPerPageAtFirst(int filesPerRow);
/// The number that a row box's or port box's text comes to; no sign, no junk.
std::string NumericText(std::string_view text);

/// Names of the style sheets in htdocs. Without any the owner is told.
std::vector<std::string> StyleNames();
/// Tells the owner when the stored style is not among the names. @return its index, or -1
int StyleIndex(const std::vector<std::string> &names, const std::string &style);

/// "150x150", or "50%": what a slider's position comes to.
std::string SizeText(int position, int pixelsEach);
std::string QualityText(int position, int added);
inline constexpr int ThumbPixels = 50;
inline constexpr int PreviewPixels = 125;
inline constexpr int SlideshowPixels = 100;
inline constexpr int ThumbQualitySteps = 2;
inline constexpr int SlideshowQualitySteps = 3;
inline constexpr int PreviewQualitySteps = 4;

/// Whether the owner's order of directories has any row.
bool HasDirectoryOrder();

/// Asked when a dialog needs an album and there is none. @param purpose what can't be done, ends the first sentence
bool WantsAlbumFirst(std::string_view purpose);

}  // namespace pixmora
