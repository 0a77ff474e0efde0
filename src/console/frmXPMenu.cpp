// The window of a popup menu.
#include "console/frmXPMenu.h"

#include <QAccessible>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QWindow>
#include <utility>

#include "console/Events.h"
#include "console/Texts.h"
#include "console/clsXPMenu.h"

namespace pixmora {

namespace {

constexpr int activeMs = 100;
constexpr int hoverMs = 50;

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

}  // namespace

frmXPMenu::frmXPMenu() : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint) {
    setObjectName(QStringLiteral("frmXPMenu"));
    setMouseTracking(true);
    tmrActive.SetInterval(activeMs);
    tmrActive.OnTimer = [this] {
        const std::shared_ptr<clsXPMenu> menu = XPMenuClass;
        if (!menu || !menu->HasLostFocus()) return;
        menu->KillPopupMenus();
        menu->UnloadMenu();
    };
    tmrHover.SetInterval(hoverMs);
    tmrHover.OnTimer = [this] {
        if (!XPMenuClass || XPMenuClass->PopupShown() || hasFocusByKeys_) return;
        if (!geometry().contains(QCursor::pos())) XPMenuClass->setHilightedItem(0);
    };
}

void frmXPMenu::Show(std::shared_ptr<clsXPMenu> menu, const QPoint &corner, QWindow *owner) {
    XPMenuClass = std::move(menu);
    setProperty("Tag", QStringLiteral("XPMenu"));
    setAccessibleName(ToQt(XPMenuClass->GetMenuName()));
    setFixedSize(XPMenuClass->GetWidth(), XPMenuClass->GetHeight());
    MakeRows();
    move(corner);
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

void frmXPMenu::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (XPMenuClass) XPMenuClass->DrawMenu(painter);
}

void frmXPMenu::Point(const QPoint &place) {
    if (clsXPMenu *menu = XPMenuClass ? XPMenuClass->MenuAt(place) : nullptr) {
        const int item = menu->GetHilightedItem(menu->MapFromScreen(place).y());
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
        menu->ClickItem(menu->GetHilightedItem(menu->MapFromScreen(place).y()));
    }
}

void frmXPMenu::keyPressEvent(QKeyEvent *event) {
    const std::shared_ptr<clsXPMenu> menu = MenuOfKeys();
    if (!menu) return;
    hasFocusByKeys_ = true;
    switch (event->key()) {
        case Qt::Key_Down:
            menu->setHilightedItem(menu->NextItem(1));
            break;
        case Qt::Key_Up:
            menu->setHilightedItem(menu->NextItem(-1));
            break;
        case Qt::Key_Right:
            GoInto(*menu);
            break;
        case Qt::Key_Left:
            if (menu->Parent() != nullptr) menu->setHilightedItem(0);
            break;
        case Qt::Key_Escape:
            menu->UnloadMenu();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            GoInto(*menu);
            menu->ClickItem(menu->GetHilightNum());
            break;
        case Qt::Key_Tab:
            clsXPMenu::KillAllMenus();
            break;
        default:
            QWidget::keyPressEvent(event);
    }
}

/// A submenu that has only come up beside its item leaves the keys to its parent until they go into it.
std::shared_ptr<clsXPMenu> frmXPMenu::MenuOfKeys() const {
    clsXPMenu *menu = XPMenuClass.get();
    while (menu != nullptr && menu->Parent() != nullptr && menu->GetHilightNum() == 0) menu = menu->Parent();
    return menu == nullptr ? nullptr : menu->shared_from_this();
}

void frmXPMenu::GoInto(const clsXPMenu &menu) {
    if (clsXPMenu *subMenu = menu.OpenSubMenu()) subMenu->setHilightedItem(subMenu->NextItem(1));
}

void frmXPMenu::hideEvent(QHideEvent *) {
    // The desktop closes popups by itself too, on a press elsewhere.
    if (const std::shared_ptr<clsXPMenu> menu = XPMenuClass) {
        menu->KillPopupMenus();
        menu->UnloadMenu();
    }
}

}  // namespace pixmora
