// The icon in the desktop's tray.
#include "console/TrayIcon.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "console/Texts.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int tipLength = 128;
constexpr int titleLength = 64;
constexpr int textLength = 256;
constexpr int balloonMs = 10000;

/// The toolkit's icon in an embedding tray is a window of its own, which a modal dialog blocks as any other unless it
/// belongs to the dialog. So it is given to each dialog that would block it.
class Unblocker : public QObject {
protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        const QWidget *dialog = QApplication::activeModalWidget();
        if (event->type() == QEvent::WindowBlocked && dialog != nullptr) {
            static_cast<QWindow *>(watched)->setTransientParent(dialog->windowHandle());
        }
        return false;
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

void TrayIcon::TrayAdd(const std::string &tip, const QIcon &icon) {
    icon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) { HandleActivation(reason); });
    TrayModify(tip, icon);
    icon_->show();
    KeepFromBlocking();
}

void TrayIcon::KeepFromBlocking() {
    unblocker_ = std::make_unique<Unblocker>();
    for (const QWidget *form : QApplication::topLevelWidgets()) {
        if (!form->inherits("QSystemTrayIconSys") || form->windowHandle() == nullptr) continue;
        form->windowHandle()->installEventFilter(unblocker_.get());
    }
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

void TrayIcon::HandleActivation(QSystemTrayIcon::ActivationReason reason) const {
    if (IgnoreTrayEvents) return;
    // Trays without double clicks report an activation only. They are known by keeping the icon's place to themselves.
    const bool isDoubleClick = reason == QSystemTrayIcon::DoubleClick ||
                               (reason == QSystemTrayIcon::Trigger && icon_ && icon_->geometry().isEmpty());
    if (isDoubleClick && OnDoubleClick) RunEventHandler(OnDoubleClick);
    if (reason == QSystemTrayIcon::Context && OnRightButton) RunEventHandler(OnRightButton);
}

}  // namespace pixmora
