// How the toolkit's events reach the program's handlers.
#pragma once

#include <QAbstractButton>
#include <functional>
#include <utility>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

/// Runs the handler under the event guard at each click, by pointer, key or assistive technology.
inline void OnClick(QAbstractButton *button, std::function<void()> handler) {
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [handler = std::move(handler)] { RunEventHandler(handler); });
}

}  // namespace pixmora
