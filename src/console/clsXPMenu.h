// A flat popup menu, painted by the program.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "console/MenuItems.h"

class QChar;
class QPainter;
class QPoint;
class QRect;
class QRectF;
class QWindow;

namespace pixmora {

class frmXPMenu;

/// A snapshot of items in a window of their own. It blocks nothing: a click on an item closes all menus and then
/// reaches the handler. While it shows it lives by itself, whatever becomes of the caller's pointer.
class clsXPMenu : public std::enable_shared_from_this<clsXPMenu> {
public:
    using ClickHandler = std::function<void(const std::string &menuName, const std::string &itemText)>;

    /// @param onClick runs under the event guard
    static std::shared_ptr<clsXPMenu> Create(const std::string &name, const MenuItems &items,
                                             const ClickHandler &onClick,
                                             const std::shared_ptr<clsXPMenu> &parent = nullptr);
    ~clsXPMenu();

    /// An empty text is a separator. @param subMenu opened by the item, or none
    void AddItem(const std::string &text, std::shared_ptr<clsXPMenu> subMenu = nullptr);

    /// Shows the menu with its corner there, or as near as the screen lets it. Every other menu closes, but for the
    /// parents.
    void ShowMenu(const QPoint &corner);
    void MoveMenu(const QPoint &corner);  ///< part of every menu, although none of ours moves
    int GetHeight() const;
    int GetWidth() const;
    void DrawMenu(QPainter &painter) const;
    /// An end of the window behind which the menu goes on.
    static void DrawBand(QPainter &painter, const QRectF &band, bool isUpper);

    /// The number, from 1, of the item at that height; 0 on a separator or outside.
    int GetHilightedItem(int y) const;
    /// Brings the item in sight, closes an open submenu of another item and opens this one's. @param number 0: no item
    void setHilightedItem(int number);
    int GetHilightNum() const { return hilight_; }
    /// The next item behind the number that isn't a separator, round the ends. @param step 1 or -1
    int NextItem(int number, int step) const;
    /// The next item that begins with the letter, in either case, round the end; 0: none.
    int NextItem(QChar letter) const;
    /// Into the submenu of the item at hand, if it has one.
    void GoInto();

    int Count() const { return static_cast<int>(items_.size()); }
    /// Empty for a number beyond the count.
    std::string GetItemText(int number) const;
    const std::string &GetMenuName() const { return name_; }
    /// Whether a click on it is a command: no separator, no item with a submenu, not beyond the count.
    bool IsTextItem(int number) const;
    bool IsVisible() const { return isVisible_; }
    /// Whether a submenu is open.
    bool PopupShown() const { return popup_ != nullptr; }
    clsXPMenu *OpenSubMenu() const { return popup_.get(); }
    std::shared_ptr<clsXPMenu> Parent() const { return parent_.lock(); }

    /// What a click on the item does; nothing for a separator and an item with a submenu.
    void ClickItem(int number);

    void KillPopupMenus();
    static void KillAllMenus();
    /// With the submenus that are open.
    void UnloadMenu();

    /// The menu of this chain, from the top one to the last submenu, whose window is at that place on the screen.
    clsXPMenu *MenuAt(const QPoint &place);
    /// The number of its item at that place on the screen; 0 where there is none.
    int ItemUnder(const QPoint &place) const;
    /// In the whole menu, of which the window may show a part.
    QRect ItemRect(int number) const;
    /// Whether the keys go to something else than when the menu opened.
    bool HasLostFocus() const;

private:
    struct Item {
        std::string Text;
        std::shared_ptr<clsXPMenu> SubMenu;
        bool IsSeparator() const { return Text.empty(); }
    };

    clsXPMenu(std::string name, ClickHandler onClick, const std::shared_ptr<clsXPMenu> &parent);
    const Item *ItemAt(int number) const;
    int RowHeight(const Item &item) const;
    void DrawItem(QPainter &painter, int number) const;
    void OpenSubMenuOf(int number);

    std::string name_;
    ClickHandler onClick_;
    std::weak_ptr<clsXPMenu> parent_;
    std::vector<Item> items_;
    int itemHeight_ = 0;  ///< of the text alone
    int itemWidth_ = 0;   ///< of the widest item
    int hilight_ = 0;
    bool isVisible_ = false;
    std::shared_ptr<clsXPMenu> popup_;
    QPointer<frmXPMenu> window_;
    QPointer<QWindow> focusAtOpening_;
};

}  // namespace pixmora
