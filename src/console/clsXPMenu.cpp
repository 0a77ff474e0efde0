// A flat popup menu, painted by the program.
#include "console/clsXPMenu.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "console/Glyphs.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "console/frmXPMenu.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int textPixels = 12;
constexpr int rowSpace = 8;
constexpr int separatorHeight = 9;
constexpr int edge = 2;          // above the first row and under the last
constexpr int columnRight = 24;  // of the icons
constexpr int textLeft = 32;
constexpr int textSpace = 43;
constexpr int arrowSpace = 8;
constexpr int arrowSide = 9;
constexpr int iconLeft = 6;
constexpr int iconSide = 16;
constexpr int longestText = 400;  // what is longer ends in "..."

constexpr QColor paper(249, 248, 247);
constexpr QColor column(216, 216, 209);
constexpr QColor hilightFill(182, 189, 210);
constexpr QColor hilightFrame(10, 36, 106);
constexpr QColor border(102, 102, 102);

struct ItemGlyph {
    const char *Text;
    Glyph Picture;
};
constexpr ItemGlyph itemGlyphs[] = {
    {"Start Website", Glyph::Start},
    {"Stop Website", Glyph::Stop},
    {"Setup", Glyph::Setup},
    {"Minimize Window", Glyph::Window},
    {"Restore Window", Glyph::Window},
    {"Exit", Glyph::Exit},
    {"View My Website", Glyph::Browser},
    {"Copy Link to Clipboard", Glyph::Copy},
    {"Email Link to Someone", Glyph::Mail},
    {"IM Link to Someone", Glyph::Talk},
    {"Put Link in AIM Away Message", Glyph::Talk},
    {"Add New Album", Glyph::Add},
    {"Edit Album", Glyph::Edit},
};

Glyph GlyphOf(const std::string &menuName, const std::string &text, bool hasSubMenu) {
    for (const ItemGlyph &item : itemGlyphs) {
        if (text == item.Text) return item.Picture;
    }
    if (menuName == AlbumMenu) return Glyph::Folder;
    return hasSubMenu || text.starts_with("Active Visitors: ") ? Glyph::People : Glyph::None;
}

QFontMetrics Metrics() {
    return QFontMetrics(Skin::Font(textPixels));
}

/// @param along from the arrow's foot to its tip @param across from the middle of the foot to an end
void DrawArrow(QPainter &painter, const QPointF &tip, const QPointF &along, const QPointF &across) {
    QPainterPath arrow(tip);
    arrow.lineTo(tip - along - across);
    arrow.lineTo(tip - along + across);
    arrow.closeSubpath();
    painter.fillPath(arrow, Qt::black);
}

}  // namespace

clsXPMenu::clsXPMenu(std::string name, ClickHandler onClick, const std::shared_ptr<clsXPMenu> &parent)
    : name_(std::move(name)), onClick_(std::move(onClick)), parent_(parent), itemHeight_(Metrics().height()) {}

std::shared_ptr<clsXPMenu> clsXPMenu::Create(const std::string &name, const MenuItems &items,
                                             const ClickHandler &onClick, const std::shared_ptr<clsXPMenu> &parent) {
    std::shared_ptr<clsXPMenu> menu(new clsXPMenu(name, onClick, parent));
    for (const MenuItem &item : items) {
        menu->AddItem(item.Text,
                      item.SubItems.empty() ? nullptr : Create(item.SubMenuName, item.SubItems, onClick, menu));
    }
    return menu;
}

clsXPMenu::~clsXPMenu() {
    // The window may be in the middle of an event.
    if (window_) window_->deleteLater();
}

void clsXPMenu::AddItem(const std::string &text, std::shared_ptr<clsXPMenu> subMenu) {
    const int width = std::min(Metrics().horizontalAdvance(ToQt(text)), Skin::Scaled(longestText)) + textSpace +
                      (subMenu ? arrowSpace + arrowSide : 0);
    itemWidth_ = std::max(itemWidth_, width);
    items_.push_back({text, std::move(subMenu)});
}

int clsXPMenu::RowHeight(const Item &item) const {
    return item.IsSeparator() ? separatorHeight : itemHeight_ + rowSpace;
}

int clsXPMenu::GetHeight() const {
    int height = 2 * edge;
    for (const Item &item : items_) height += RowHeight(item);
    return height;
}

int clsXPMenu::GetWidth() const {
    return itemWidth_;
}

const clsXPMenu::Item *clsXPMenu::ItemAt(int number) const {
    return number < 1 || number > Count() ? nullptr : &items_[static_cast<std::size_t>(number - 1)];
}

QRect clsXPMenu::ItemRect(int number) const {
    int top = edge;
    for (int i = 1; i < number; ++i) top += RowHeight(*ItemAt(i));
    return {0, top, GetWidth(), RowHeight(*ItemAt(number))};
}

int clsXPMenu::GetHilightedItem(int y) const {
    for (int number = 1; number <= Count(); ++number) {
        const QRect row = ItemRect(number);
        if (y >= row.top() && y <= row.bottom()) return ItemAt(number)->IsSeparator() ? 0 : number;
    }
    return 0;
}

std::string clsXPMenu::GetItemText(int number) const {
    const Item *item = ItemAt(number);
    return item == nullptr ? std::string() : item->Text;
}

bool clsXPMenu::IsTextItem(int number) const {
    const Item *item = ItemAt(number);
    return item != nullptr && !item->IsSeparator() && !item->SubMenu;
}

int clsXPMenu::NextItem(int number, int step) const {
    for (int tries = 0; tries < Count(); ++tries) {
        number += step;
        if (number < 1) number = Count();
        if (number > Count()) number = 1;
        if (!ItemAt(number)->IsSeparator()) return number;
    }
    return 0;
}

int clsXPMenu::NextItem(QChar letter) const {
    for (int i = 1; i <= Count(); ++i) {
        const int number = (hilight_ + i - 1) % Count() + 1;
        if (ToQt(GetItemText(number)).startsWith(letter, Qt::CaseInsensitive)) return number;
    }
    return 0;
}

void clsXPMenu::DrawMenu(QPainter &painter) const {
    const QRect menu(0, 0, GetWidth(), GetHeight());
    painter.fillRect(menu, paper);
    painter.fillRect(QRect(1, 1, columnRight, menu.height() - 2), column);
    painter.setPen(QPen(border, 1));
    painter.drawRect(QRectF(menu).adjusted(0.5, 0.5, -0.5, -0.5));
    for (int number = 1; number <= Count(); ++number) DrawItem(painter, number);
}

void clsXPMenu::DrawItem(QPainter &painter, int number) const {
    const Item &item = *ItemAt(number);
    const QRect row = ItemRect(number);
    if (item.IsSeparator()) {
        painter.fillRect(QRect(columnRight, row.center().y(), GetWidth() - columnRight - 1, 1), column);
        return;
    }
    if (number == hilight_) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(hilightFrame, 1));
        painter.setBrush(hilightFill);
        painter.drawRect(QRectF(row).adjusted(3.5, 0.5, -3.5, -0.5));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF icon(iconLeft, row.top() + (row.height() - iconSide) / 2.0, iconSide, iconSide);
    PaintGlyph(painter, GlyphOf(name_, item.Text, item.SubMenu != nullptr), icon.adjusted(1, 1, -1, -1),
               Skin::HeaderBottom);
    painter.setFont(Skin::Font(textPixels));
    painter.setPen(Qt::black);
    painter.drawText(row.adjusted(textLeft, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     Metrics().elidedText(ToQt(item.Text), Qt::ElideRight, Skin::Scaled(longestText)));
    if (item.SubMenu) DrawArrow(painter, QPointF(row.right() - arrowSpace, icon.center().y()), {4, 0}, {0, 4});
}

void clsXPMenu::DrawBand(QPainter &painter, const QRectF &band, bool isUpper) {
    painter.setPen(QPen(border, 1));
    painter.setBrush(paper);
    painter.drawRect(band.adjusted(0.5, 0.5, -0.5, -0.5));
    const double way = isUpper ? -4 : 4;
    painter.setRenderHint(QPainter::Antialiasing);
    DrawArrow(painter, band.center() + QPointF(0, way / 2), {0, way}, {4, 0});
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void clsXPMenu::ShowMenu(const QPoint &corner) {
    if (isVisible_) return;
    const std::shared_ptr<clsXPMenu> parent = Parent();
    if (!parent) KillAllMenus();
    isVisible_ = true;
    hilight_ = 0;
    focusAtOpening_ = QGuiApplication::focusWindow();
    if (!window_) window_ = new frmXPMenu;
    QWindow *owner = parent && parent->window_ ? parent->window_->windowHandle() : focusAtOpening_.data();
    window_->Show(shared_from_this(), corner, owner);
}

void clsXPMenu::MoveMenu(const QPoint &corner) {
    if (window_) window_->move(corner);
}

void clsXPMenu::setHilightedItem(int number) {
    if (number == hilight_) return;
    KillPopupMenus();
    hilight_ = number;
    if (!window_) return;
    window_->update();
    if (ItemAt(number) == nullptr) return;
    window_->Reveal(ItemRect(number));
    window_->AnnounceItem(number);
    if (ItemAt(number)->SubMenu) OpenSubMenuOf(number);
}

void clsXPMenu::GoInto() {
    const Item *item = ItemAt(hilight_);
    if (item == nullptr || !item->SubMenu) return;
    if (!popup_) OpenSubMenuOf(hilight_);  // it was closed by a key
    popup_->setHilightedItem(popup_->NextItem(0, 1));
}

void clsXPMenu::OpenSubMenuOf(int number) {
    popup_ = ItemAt(number)->SubMenu;
    const QRect own = window_->geometry();
    constexpr int overlap = 3;
    int x = own.right() - overlap;
    if (x + popup_->GetWidth() > window_->screen()->geometry().right()) x = own.left() - popup_->GetWidth() + overlap;
    popup_->ShowMenu({x, window_->PlaceOfRow(ItemRect(number)).y() - edge});
}

void clsXPMenu::ClickItem(int number) {
    if (!IsTextItem(number)) return;
    const ClickHandler handler = onClick_;
    const std::string menuName = name_;
    const std::string itemText = GetItemText(number);
    KillAllMenus();
    RunEventHandler([&] { handler(menuName, itemText); });
}

void clsXPMenu::KillPopupMenus() {
    if (!popup_) return;
    const std::shared_ptr<clsXPMenu> popup = std::exchange(popup_, nullptr);
    popup->UnloadMenu();
}

void clsXPMenu::KillAllMenus() {
    for (QWidget *form : QApplication::topLevelWidgets()) {
        auto *menuWindow = dynamic_cast<frmXPMenu *>(form);
        if (menuWindow == nullptr || !menuWindow->XPMenuClass) continue;
        const std::shared_ptr<clsXPMenu> menu = menuWindow->XPMenuClass;
        menu->UnloadMenu();
    }
}

void clsXPMenu::UnloadMenu() {
    if (!isVisible_) return;
    KillPopupMenus();
    isVisible_ = false;
    if (const std::shared_ptr<clsXPMenu> parent = Parent(); parent && parent->popup_.get() == this) {
        parent->popup_ = nullptr;
    }
    if (window_) window_->Unload();
}

clsXPMenu *clsXPMenu::MenuAt(const QPoint &place) {
    clsXPMenu *menu = this;
    while (const std::shared_ptr<clsXPMenu> parent = menu->Parent()) menu = parent.get();
    clsXPMenu *found = nullptr;
    for (; menu != nullptr; menu = menu->OpenSubMenu()) {
        if (menu->window_ && menu->window_->geometry().contains(place)) found = menu;
    }
    return found;
}

int clsXPMenu::ItemUnder(const QPoint &place) const {
    return window_ ? GetHilightedItem(window_->HeightInMenu(place)) : 0;
}

bool clsXPMenu::HasLostFocus() const {
    const QWindow *now = QGuiApplication::focusWindow();
    if (now == focusAtOpening_.data()) return false;
    for (const QWidget *form : QApplication::topLevelWidgets()) {
        if (now != nullptr && form->windowHandle() == now && dynamic_cast<const frmXPMenu *>(form) != nullptr) {
            return false;
        }
    }
    return true;
}

}  // namespace pixmora
