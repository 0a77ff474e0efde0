// The desktop's font, which its user may change while the program runs.
#include "console/DesktopFont.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

#include "console/Skin.h"

namespace pixmora {

DesktopFont::DesktopFont(std::function<void()> changed) : changed_(std::move(changed)), scale_(Skin::TextScale()) {
    qApp->installEventFilter(this);
}

bool DesktopFont::eventFilter(QObject *, QEvent *event) {
    // Each widget hears of it; the first to do so is enough.
    const bool mayBeNew = event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::ThemeChange;
    if (mayBeNew && std::exchange(scale_, Skin::TextScale()) != scale_) changed_();
    return false;
}

}  // namespace pixmora
