// The text that stands for a control's state, as the settings hold it.
#pragma once

#include <functional>
#include <string>

class QObject;

namespace pixmora {

/// Of a text box its text, lines ending in CR LF, of a check box "1" or "0", of a slider its position, of a list the
/// chosen text, of a group of options the index of the one that is on ("-1" for none).
std::string ControlText(const QObject &control);
/// A number that a slider or group can't take becomes the nearest it can; a text that a list doesn't hold is added.
void SetControlText(QObject &control, const std::string &text);
/// Calls back whenever the state changes, by the owner or by the program.
void OnControlChange(QObject &control, const std::function<void()> &changed);

}  // namespace pixmora
