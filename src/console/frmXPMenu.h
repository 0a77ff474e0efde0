// The window of a popup menu.
#pragma once

#include <QWidget>
#include <memory>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

class clsXPMenu;

/// As high as the menu, or as the screen: then it scrolls, by the wheel, the keys and the bands at its ends. Takes
/// pointer and keys while it is the last menu open, for the whole chain of menus.
class frmXPMenu : public QWidget {
public:
    frmXPMenu();

    /// @param corner where the screen lets it be @param owner the window that the menu belongs to, or null
    void Show(std::shared_ptr<clsXPMenu> menu, const QPoint &corner, QWindow *owner);
    void Unload();
    /// Scrolls as far as it takes to show the row of the menu.
    void Reveal(const QRect &row);
    /// Where the row of the menu is on the screen.
    QPoint PlaceOfRow(const QRect &row) const;
    /// How far down the menu a place on the screen is; -1 on a band.
    int HeightInMenu(const QPoint &place) const;
    /// Tells assistive technology that the item is the one at hand.
    void AnnounceItem(int number);

    std::shared_ptr<clsXPMenu> XPMenuClass;  ///< keeps the menu alive while it shows; null when it doesn't

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void MakeRows();
    std::shared_ptr<clsXPMenu> MenuOfKeys() const;
    void Point(const QPoint &place);
    int LowestScroll() const;
    void ScrollTo(int pixels);
    /// Away from the band under the pointer, if there is one.
    void ScrollByBand(const QPoint &place);

    Timer tmrActive;  ///< 100 ms: closes the menu when the focus has gone
    Timer tmrHover;   ///< 50 ms: takes the hilight back when the pointer has gone, scrolls when it is on a band
    int scroll_ = 0;  ///< pixels of the menu above the window's upper edge
    bool wasPressed_ = false;
    bool hasFocusByKeys_ = false;  ///< the hilight was moved by a key since the pointer last moved
};

}  // namespace pixmora
