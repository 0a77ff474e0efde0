// The items of the program's menus, by the state of the site; no widget.
#pragma once

#include <string>
#include <vector>

namespace pixmora {

/// One item of a menu. Its text is its command.
struct MenuItem {
    std::string Text;                ///< empty: a separator
    std::vector<MenuItem> SubItems;  ///< of the submenu that it opens; empty: none
    std::string SubMenuName;
};
using MenuItems = std::vector<MenuItem>;

inline constexpr const char *SystrayMenu = "SystrayMenu";
inline constexpr const char *AddressOptsMenu = "AddressOptsMenu";
inline constexpr const char *AlbumMenu = "AlbumMenu";
inline constexpr const char *ActiveMenu = "ActiveMenu";

/// @param isWindowShown whether the main window is up
MenuItems SystrayMenuItems(bool isWindowShown);
MenuItems AddressOptsMenuItems();
/// The albums by name, behind what can be done to all.
MenuItems AlbumMenuItems();
/// Each visitor with a submenu about the visit.
MenuItems ActiveMenuItems();

}  // namespace pixmora
