// The window of a popup menu.
#include "console/frmXPMenu.h"

#include <QAccessible>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "console/Events.h"
#include "console/SkinWindow.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"

namespace pixmora {

namespace {

constexpr int activeMs = 100;
constexpr int hoverMs = 50;
constexpr int bandHeight = 14;
constexpr int scrollStep = 12;  // pixels each time the hover timer ticks

/// An item as assistive technology finds it: it has a name and can be clicked. The menu paints it.
class MenuRow : public QPushButton {
public:
    MenuRow(const QString &text, QWidget *parent) : QPushButton(text, parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        setObjectName(text);
    }

protected:
    void paintEvent(QPaintEvent *) override {}
};

void GoToLetter(clsXPMenu &menu, const QString &typed) {
    if (typed.size() != 1 || !typed[0].isPrint()) return;
    if (const int number = menu.NextItem(typed[0])) menu.setHilightedItem(number);
}

}  // namespace

frmXPMenu::frmXPMenu() : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint) {
    setObjectName(QStringLiteral("frmXPMenu"));
    setMouseTracking(true);
    tmrActive.SetInterval(activeMs);
    tmrActive.OnTimer = [this] {
        const std::shared_ptr<clsXPMenu> menu = XPMenuClass;
        if (!menu || !menu->HasLostFocus()) return;
        menu->UnloadMenu();
    };
    tmrHover.SetInterval(hoverMs);
    tmrHover.OnTimer = [this] {
        if (!XPMenuClass || hasFocusByKeys_) return;
        ScrollByBand(QCursor::pos());
        if (!XPMenuClass->PopupShown() && !geometry().contains(QCursor::pos())) XPMenuClass->setHilightedItem(0);
    };
}

void frmXPMenu::Show(std::shared_ptr<clsXPMenu> menu, const QPoint &corner, QWindow *owner) {
    XPMenuClass = std::move(menu);
    setProperty("Tag", QStringLiteral("XPMenu"));
    setAccessibleName(ToQt(XPMenuClass->GetMenuName()));
    const QRect room = ScreenAt(corner).availableGeometry();
    setFixedSize(XPMenuClass->GetWidth(), std::min(XPMenuClass->GetHeight(), room.height()));
    scroll_ = 0;
    MakeRows();
    move(std::max(room.left(), std::min(corner.x(), room.right() + 1 - width())),
         std::max(room.top(), std::min(corner.y(), room.bottom() + 1 - height())));
    // Some desktops place a popup only beside the window that it belongs to.
    winId();
    windowHandle()->setTransientParent(owner);
    show();
    tmrActive.SetEnabled(true);
    tmrHover.SetEnabled(true);
}

void frmXPMenu::MakeRows() {
    qDeleteAll(findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly));
    for (int number = 1; number <= XPMenuClass->Count(); ++number) {
        if (XPMenuClass->GetItemText(number).empty()) continue;
        auto *row = new MenuRow(ToQt(XPMenuClass->GetItemText(number)), this);
        row->setGeometry(XPMenuClass->ItemRect(number));
        OnClick(row, [this, number] {
            if (!XPMenuClass) return;
            XPMenuClass->setHilightedItem(number);
            XPMenuClass->ClickItem(number);
        });
    }
}

void frmXPMenu::Unload() {
    tmrActive.SetEnabled(false);
    tmrHover.SetEnabled(false);
    setProperty("Tag", QVariant());
    const std::shared_ptr<clsXPMenu> menu = std::exchange(XPMenuClass, nullptr);
    hide();
}

void frmXPMenu::AnnounceItem(int number) {
    if (auto *row = findChild<QPushButton *>(ToQt(XPMenuClass->GetItemText(number)))) {
        QAccessibleEvent event(row, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

int frmXPMenu::LowestScroll() const {
    return XPMenuClass ? XPMenuClass->GetHeight() - height() : 0;
}

void frmXPMenu::ScrollTo(int pixels) {
    const int former = std::exchange(scroll_, std::clamp(pixels, 0, LowestScroll()));
    scroll(0, former - scroll_);  // the rows go with it
    update();
}

void frmXPMenu::Reveal(const QRect &row) {
    const int highest = row.top() - bandHeight;
    const int lowest = row.bottom() + 1 + bandHeight - height();
    ScrollTo(std::min(std::max(scroll_, lowest), highest));
}

void frmXPMenu::ScrollByBand(const QPoint &place) {
    if (!geometry().contains(place) || HeightInMenu(place) >= 0) return;
    XPMenuClass->setHilightedItem(0);
    ScrollTo(scroll_ + (place.y() < geometry().center().y() ? -scrollStep : scrollStep));
}

QPoint frmXPMenu::PlaceOfRow(const QRect &row) const {
    return geometry().topLeft() + row.topLeft() - QPoint(0, scroll_);
}

int frmXPMenu::HeightInMenu(const QPoint &place) const {
    const int y = place.y() - geometry().top();
    const bool isOnBand = (scroll_ > 0 && y < bandHeight) || (scroll_ < LowestScroll() && y >= height() - bandHeight);
    return isOnBand ? -1 : y + scroll_;
}

void frmXPMenu::paintEvent(QPaintEvent *) {
    if (!XPMenuClass) return;
    QPainter painter(this);
    painter.translate(0, -scroll_);
    XPMenuClass->DrawMenu(painter);
    painter.resetTransform();
    const QRectF band(0, 0, width(), bandHeight);
    if (scroll_ > 0) clsXPMenu::DrawBand(painter, band, true);
    if (scroll_ < LowestScroll()) clsXPMenu::DrawBand(painter, band.translated(0, height() - bandHeight), false);
}

void frmXPMenu::Point(const QPoint &place) {
    if (clsXPMenu *menu = XPMenuClass ? XPMenuClass->MenuAt(place) : nullptr) {
        const int item = menu->ItemUnder(place);
        if (item != menu->GetHilightNum()) menu->setHilightedItem(item);
    }
}

void frmXPMenu::mouseMoveEvent(QMouseEvent *event) {
    hasFocusByKeys_ = false;
    Point(event->globalPosition().toPoint());
}

void frmXPMenu::mousePressEvent(QMouseEvent *event) {
    const QPoint place = event->globalPosition().toPoint();
    wasPressed_ = true;
    if (!XPMenuClass || XPMenuClass->MenuAt(place) == nullptr) {
        clsXPMenu::KillAllMenus();
    } else {
        Point(place);
    }
}

void frmXPMenu::mouseReleaseEvent(QMouseEvent *event) {
    // The release of the press that opened the menu is no click in it.
    if (!std::exchange(wasPressed_, false) || !XPMenuClass) return;
    const QPoint place = event->globalPosition().toPoint();
    if (clsXPMenu *menu = XPMenuClass->MenuAt(place)) {
        menu->ClickItem(menu->ItemUnder(place));
    }
}

void frmXPMenu::wheelEvent(QWheelEvent *event) {
    if (!XPMenuClass) return;
    XPMenuClass->setHilightedItem(0);
    ScrollTo(scroll_ - event->angleDelta().y() / 2);
    Point(event->globalPosition().toPoint());
}

void frmXPMenu::keyPressEvent(QKeyEvent *event) {
    const std::shared_ptr<clsXPMenu> menu = MenuOfKeys();
    if (!menu) return;
    hasFocusByKeys_ = true;
    switch (event->key()) {
        case Qt::Key_Down:
            menu->setHilightedItem(menu->NextItem(menu->GetHilightNum(), 1));
            break;
        case Qt::Key_Up:
            menu->setHilightedItem(menu->NextItem(menu->GetHilightNum(), -1));
            break;
        case Qt::Key_Home:
            menu->setHilightedItem(menu->NextItem(0, 1));
            break;
        case Qt::Key_End:
            menu->setHilightedItem(menu->NextItem(menu->Count() + 1, -1));
            break;
        case Qt::Key_Right:
            menu->GoInto();
            break;
        case Qt::Key_Left:
            if (menu->Parent()) menu->setHilightedItem(0);
            break;
        case Qt::Key_Escape:
            menu->UnloadMenu();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (menu->IsTextItem(menu->GetHilightNum())) {
                menu->ClickItem(menu->GetHilightNum());
            } else {
                menu->GoInto();
            }
            break;
        case Qt::Key_Tab:
            clsXPMenu::KillAllMenus();
            break;
        default:
            GoToLetter(*menu, event->text());
    }
}

/// A submenu that has only come up beside its item leaves the keys to its parent until they go into it.
std::shared_ptr<clsXPMenu> frmXPMenu::MenuOfKeys() const {
    std::shared_ptr<clsXPMenu> menu = XPMenuClass;
    while (menu && menu->Parent() && menu->GetHilightNum() == 0) menu = menu->Parent();
    return menu;
}

void frmXPMenu::hideEvent(QHideEvent *) {
    // The desktop closes popups by itself too, on a press elsewhere.
    if (const std::shared_ptr<clsXPMenu> menu = XPMenuClass) menu->UnloadMenu();
}

}  // namespace pixmora
