// What the tests of the setup dialogs' forms read from controls and put into them.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "console/Robot.h"
#include "console/Texts.h"
#include "setup/ControlText.h"
#include "setup/rules/WebcamEditor.h"
#include "support/Pictures.h"
#include "support/SetupFixture.h"

namespace pixmora {

using test::Click;
using test::Find;
using test::Robot;
using test::RowsOf;

inline std::string TextOf(const QWidget &form, const char *name) {
    if (const auto *label = form.findChild<QLabel *>(QLatin1String(name))) return FromQt(label->text());
    return ControlText(Find<QObject>(form, name));
}

/// The texts of these controls, "|" behind each.
inline std::string TextsOf(const QWidget &form, std::initializer_list<const char *> names) {
    std::string texts;
    for (const char *name : names) texts += TextOf(form, name) + "|";
    return texts;
}

inline void Enter(const QWidget &form, const char *name, const std::string &text) {
    SetControlText(Find<QObject>(form, name), text);
}

inline bool IsEnabled(const QWidget &form, const char *name) {
    return Find<QAbstractButton>(form, name).isEnabled();
}

/// Cameras that are played. The first gives pictures, the second has a dialog for its source, the third tells nothing.
struct PlayedCameras {
    int Count = 0;
    int Opened = -1;
    bool Delivers = false;

    WebcamHands Hands() {
        WebcamHands hands;
        hands.GetDriverDescription = [this](int device) -> std::optional<CaptureDescription> {
            return device < Count ? std::optional(CaptureDescription{"Camera", std::to_string(device)}) : std::nullopt;
        };
        hands.OpenWebcam = [this](int device) {
            Opened = device;
            return true;
        };
        hands.CloseWebcam = [this] {
            Opened = -1;
        };
        hands.GetDriverDialogs = [this]() -> std::optional<WebcamHands::Dialogs> {
            return Opened == 2 ? std::nullopt : std::optional(WebcamHands::Dialogs{Opened == 1, false});
        };
        hands.TestCapture = Give(Delivers);
        hands.TakePreview = [this](const std::function<void(const std::string &)> &show) {
            show(Opened == 0 ? test::BitmapFile(4, 2) : "");
        };
        return hands;
    }
};

}  // namespace pixmora
