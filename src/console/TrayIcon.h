// The icon in the desktop's tray.
#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/runtime/Clock.h"

namespace pixmora {

/// The icon of a balloon; every other number shows none.
inline constexpr int BalloonInformation = 1;

/// Where the tray's menu goes: left of the pointer where it would run past the right edge, and clear of the task bar.
/// @param available the screen less its task bars
QPoint TrayMenuPlace(const QPoint &pointer, const QSize &menu, const QRect &screen, const QRect &available);

/// Where it goes on a desktop without a tray: under the button that opens it, above it where there is no room.
QPoint MenuPlaceAt(const QRect &button, const QSize &menu, const QRect &available);

/// At most one icon, of this process. On a desktop without a tray it shows as soon as there is one. It takes its events
/// also while a modal dialog is open.
class TrayIcon {
public:
    std::function<void()> OnDoubleClick;  ///< runs under the event guard
    std::function<void()> OnRightButton;  ///< likewise
    bool IgnoreTrayEvents = false;        ///< turns all of them off

    void TrayAdd(const std::string &tip, const QIcon &icon);
    void TrayModify(const std::string &tip, const QIcon &icon);
    void TrayDelete();
    /// A balloon at the icon. @param title up to 64 characters, text up to 256; what is longer is cut
    void TrayBalloon(const std::string &title, const std::string &text, int iconFlag) const;
    /// What the desktop tells of the pointer on the icon.
    void HandleActivation(QSystemTrayIcon::ActivationReason reason);

private:
    bool IsDoubleClick(QSystemTrayIcon::ActivationReason reason);

    std::unique_ptr<QSystemTrayIcon> icon_;
    std::unique_ptr<QObject> unblocker_;
    std::optional<Tick> lastClick_;
};

}  // namespace pixmora
