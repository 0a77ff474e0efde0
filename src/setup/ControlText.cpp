// The text that stands for a control's state, as the settings hold it.
#include "setup/ControlText.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSlider>
#include <algorithm>

#include "console/Texts.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/Text.h"

namespace pixmora {

namespace {

int NumberOf(const std::string &text) {
    return static_cast<int>(std::clamp(Val(text), -1e9, 1e9));
}

void ChooseText(QComboBox &list, const QString &text) {
    if (list.isEditable()) {
        list.setEditText(text);
        return;
    }
    if (list.findText(text) < 0) list.addItem(text);
    list.setCurrentText(text);
}

}  // namespace

std::string ControlText(const QObject &control) {
    if (const auto *box = qobject_cast<const QLineEdit *>(&control)) return FromQt(box->text());
    if (const auto *area = qobject_cast<const QPlainTextEdit *>(&control)) {
        return Replace(FromQt(area->toPlainText()), "\n", "\r\n");
    }
    if (const auto *box = qobject_cast<const QCheckBox *>(&control)) return box->isChecked() ? "1" : "0";
    if (const auto *slider = qobject_cast<const QSlider *>(&control)) return std::to_string(slider->value());
    if (const auto *list = qobject_cast<const QComboBox *>(&control)) return FromQt(list->currentText());
    if (const auto *group = qobject_cast<const QButtonGroup *>(&control)) return std::to_string(group->checkedId());
    return {};
}

void SetControlText(QObject &control, const std::string &text) {
    if (auto *box = qobject_cast<QLineEdit *>(&control)) box->setText(ToQt(text));
    if (auto *area = qobject_cast<QPlainTextEdit *>(&control)) area->setPlainText(MessageText(text));
    if (auto *box = qobject_cast<QCheckBox *>(&control)) box->setChecked(NumberOf(text) != 0);
    if (auto *slider = qobject_cast<QSlider *>(&control)) slider->setValue(NumberOf(text));
    if (auto *list = qobject_cast<QComboBox *>(&control)) ChooseText(*list, ToQt(text));
    if (auto *group = qobject_cast<QButtonGroup *>(&control)) {
        const int last = static_cast<int>(group->buttons().size()) - 1;
        group->button(std::clamp(NumberOf(text), 0, last))->setChecked(true);
    }
}

void OnControlChange(QObject &control, const std::function<void()> &changed) {
    if (auto *box = qobject_cast<QLineEdit *>(&control)) {
        QObject::connect(box, &QLineEdit::textChanged, box, changed);
    } else if (auto *area = qobject_cast<QPlainTextEdit *>(&control)) {
        QObject::connect(area, &QPlainTextEdit::textChanged, area, changed);
    } else if (auto *check = qobject_cast<QCheckBox *>(&control)) {
        QObject::connect(check, &QCheckBox::toggled, check, changed);
    } else if (auto *slider = qobject_cast<QSlider *>(&control)) {
        QObject::connect(slider, &QSlider::valueChanged, slider, changed);
    } else if (auto *list = qobject_cast<QComboBox *>(&control)) {
        QObject::connect(list, &QComboBox::currentTextChanged, list, changed);
    } else if (auto *group = qobject_cast<QButtonGroup *>(&control)) {
        QObject::connect(group, &QButtonGroup::idToggled, group, changed);
    }
}

}  // namespace pixmora
