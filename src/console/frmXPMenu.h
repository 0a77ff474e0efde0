// The window of a popup menu.
#pragma once

#include <QWidget>
#include <memory>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

class clsXPMenu;

/// Takes pointer and keys while it is the last menu open, for the whole chain of menus.
class frmXPMenu : public QWidget {
public:
    frmXPMenu();

    /// @param owner the window that the menu belongs to, or null
    void Show(std::shared_ptr<clsXPMenu> menu, const QPoint &corner, QWindow *owner);
    void Unload();
    /// Tells assistive technology that the item is the one at hand.
    void AnnounceItem(int number);

    std::shared_ptr<clsXPMenu> XPMenuClass;  ///< keeps the menu alive while it shows; null when it doesn't

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void MakeRows();
    std::shared_ptr<clsXPMenu> MenuOfKeys() const;
    /// Into the submenu of the item at hand, if it has one.
    static void GoInto(const clsXPMenu &menu);
    void Point(const QPoint &place);

    Timer tmrActive;  ///< 100 ms: closes the menu when the focus has gone
    Timer tmrHover;   ///< 50 ms: takes the hilight back when the pointer has gone
    bool wasPressed_ = false;
    bool hasFocusByKeys_ = false;  ///< the hilight was moved by a key since the pointer last moved
};

}  // namespace pixmora
