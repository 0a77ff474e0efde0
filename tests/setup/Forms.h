// What the tests of the setup dialogs' forms read from controls and put into them.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "console/Robot.h"
#include "console/Texts.h"
#include "setup/ControlText.h"
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

}  // namespace pixmora
