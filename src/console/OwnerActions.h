// What the owner's buttons and menu items do; no widget.
#pragma once

#include <functional>
#include <string>

namespace pixmora {

/// The setup dialog as the main window opens it.
struct SetupOpening {
    bool ShowAlbumsTab = false;
    bool AddAlbumOnOpen = false;
};

/// What the actions need done for them by the desktop program. All must be set.
struct ActionHands {
    std::function<void()> StartWebsite;                       ///< with its window; returns when that is closed
    std::function<void()> ShowFigures;                        ///< draws the running figures at once
    std::function<void()> ToggleMainWindow;                   ///< shows it or sends it to the tray
    std::function<void(const SetupOpening &)> ShowSetupForm;  ///< modal
    std::function<void(const std::string &)> CopyText;        ///< to the clipboard
    std::function<void(const std::string &)> ShowQrCode;      ///< of a text; modal
    std::function<void(const std::string &)> OpenFolder;      ///< a path of the program, in the file manager
    std::function<void()> EndProgram;                         ///< doesn't return in the program itself
};

/// The handlers behind the main window's buttons and all menus. Questions go through the owner's dialogue.
class OwnerActions {
public:
    explicit OwnerActions(ActionHands hands) : hands_(std::move(hands)) {}

    /// Stops the running website, or starts it.
    void StartStop() const;
    /// Opens the setup dialog; a running website is to be stopped for it, and may be started again behind it.
    void ShowSetup(bool showAlbumsTab, bool addAlbumOnOpen) const;
    void Setup() const { ShowSetup(false, false); }
    /// The statistics page in the browser; only a running website has one.
    void Statistics() const;
    void About() const;
    /// Ends the program, unless the owner thinks better of it.
    void Exit() const;

    /// The one dispatcher of all menus: the item's text is its command.
    void HandleClick(const std::string &menuName, const std::string &itemText) const;

private:
    void OpenAlbum(const std::string &albumName) const;

    ActionHands hands_;
};

/// The online help page of the central service; nothing without a service.
std::string SupportAddress();

}  // namespace pixmora
