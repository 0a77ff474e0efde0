// The icon in the desktop's tray.
#include "console/TrayIcon.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "console/Texts.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int tipLength = 128;
constexpr int titleLength = 64;
constexpr int textLength = 256;
constexpr int balloonMs = 10000;

/// The toolkit's icon in an embedding tray is a window of its own, which a modal dialog blocks as any other unless it
/// belongs to the dialog. So it is given to each dialog that would block it. The program's every event passes here,
/// because the window comes with the tray, maybe late.
class Unblocker : public QObject {
public:
    Unblocker() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::WindowBlocked || !IsTrayWindow(watched)) return false;
        if (const QWidget *dialog = QApplication::activeModalWidget()) {
            static_cast<QWindow *>(watched)->setTransientParent(dialog->windowHandle());
        }
        return false;
    }

private:
    static bool IsTrayWindow(const QObject *window) {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [window](const QWidget *form) {
            return form->windowHandle() == window && form->inherits("QSystemTrayIconSys");
        });
    }
};

}  // namespace

QPoint TrayMenuPlace(const QPoint &pointer, const QSize &menu, const QRect &screen, const QRect &available) {
    int x = pointer.x();
    if (x + menu.width() > screen.right() + 1) x -= menu.width();
    int y = pointer.y() - menu.height();
    if (pointer.y() > available.bottom()) y = available.bottom() + 1 - menu.height();
    if (pointer.y() < available.top()) y = available.top();
    if (y < available.top()) y = pointer.y();
    return {std::max(x, screen.left()), y};
}

QPoint MenuPlaceAt(const QRect &button, const QSize &menu, const QRect &available) {
    const bool hasRoomBelow = button.bottom() + menu.height() <= available.bottom();
    return {button.left(), hasRoomBelow ? button.bottom() + 1 : button.top() - menu.height()};
}

void TrayIcon::TrayAdd(const std::string &tip, const QIcon &icon) {
    icon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) { HandleActivation(reason); });
    TrayModify(tip, icon);
    unblocker_ = std::make_unique<Unblocker>();
    icon_->show();
}

void TrayIcon::TrayModify(const std::string &tip, const QIcon &icon) {
    if (!icon_) return;
    icon_->setIcon(icon);
    icon_->setToolTip(ToQt(tip).left(tipLength));
}

void TrayIcon::TrayDelete() {
    if (!icon_) return;
    icon_->hide();
    // Its own event may be under way.
    icon_.release()->deleteLater();
}

void TrayIcon::TrayBalloon(const std::string &title, const std::string &text, int iconFlag) const {
    if (!icon_ || !QSystemTrayIcon::isSystemTrayAvailable()) return;
    icon_->showMessage(ToQt(title).left(titleLength), MessageText(text).left(textLength),
                       iconFlag == BalloonInformation ? QSystemTrayIcon::Information : QSystemTrayIcon::NoIcon,
                       balloonMs);
}

/// Trays without double clicks report each click as an activation; the two of a double click are one. They are known by
/// keeping the icon's place to themselves.
bool TrayIcon::IsDoubleClick(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Trigger || !icon_ || !icon_->geometry().isEmpty()) {
        return reason == QSystemTrayIcon::DoubleClick;
    }
    const std::optional<Tick> former = std::exchange(lastClick_, GetTickCount());
    if (former && TicksBetween(*former, *lastClick_) < QApplication::doubleClickInterval()) {
        lastClick_.reset();
        return false;
    }
    return true;
}

void TrayIcon::HandleActivation(QSystemTrayIcon::ActivationReason reason) {
    if (IgnoreTrayEvents) return;
    if (IsDoubleClick(reason) && OnDoubleClick) RunEventHandler(OnDoubleClick);
    if (reason == QSystemTrayIcon::Context && OnRightButton) RunEventHandler(OnRightButton);
}

}  // namespace pixmora
