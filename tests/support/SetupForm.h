// What the tests of the setup dialogs' forms do to them.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <string>

#include "console/Texts.h"
#include "setup/ControlText.h"

namespace pixmora {

template <typename Control = QWidget>
Control *Find(const QObject &form, const char *name) {
    auto *control = form.findChild<Control *>(QLatin1String(name));
    EXPECT_NE(control, nullptr) << name;
    return control;
}

/// A click by the pointer, which the control must be able to take.
inline void Click(const QWidget &form, const char *name) {
    auto *button = Find<QAbstractButton>(form, name);
    ASSERT_TRUE(button->isEnabled()) << name;
    // Boxes and options take a click on their mark and words only.
    const bool hasMark = button->isCheckable();
    QTest::mouseClick(button, Qt::LeftButton, {}, hasMark ? QPoint(8, button->height() / 2) : QPoint());
}

inline std::string TextOf(const QWidget &form, const char *name) {
    if (const auto *label = form.findChild<QLabel *>(QLatin1String(name))) return FromQt(label->text());
    return ControlText(*Find<QObject>(form, name));
}

inline void Enter(const QWidget &form, const char *name, const std::string &text) {
    SetControlText(*Find<QObject>(form, name), text);
}

inline std::string RowsOf(const QWidget &form, const char *name) {
    std::string rows;
    const auto *list = Find<QTreeWidget>(form, name);
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        for (int column = 0; column < list->columnCount(); ++column) {
            if (!list->isColumnHidden(column)) rows += FromQt(list->topLevelItem(row)->text(column)) + "|";
        }
        rows += "\n";
    }
    return rows;
}

/// Acts on the dialog of that name as soon as it is open above all others. To be made before what opens it; fails at
/// the end of its scope when the dialog never came.
class WhenOpen {
public:
    WhenOpen(const char *name, std::function<void(QWidget &)> action) : name_(name), action_(std::move(action)) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || dialog->objectName() != QLatin1String(name_)) return;
            timer_.stop();
            hasCome_ = true;
            action_(*dialog);
        });
        timer_.start(1);
    }
    ~WhenOpen() { EXPECT_TRUE(hasCome_) << name_ << " never opened"; }
    WhenOpen(const WhenOpen &) = delete;
    WhenOpen &operator=(const WhenOpen &) = delete;

private:
    const char *name_;
    std::function<void(QWidget &)> action_;
    QTimer timer_;
    bool hasCome_ = false;
};

/// Fails for every control that shows less than its text.
inline void ExpectNothingIsCut(const QWidget &form) {
    for (const QWidget *control : form.findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(control);
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        if ((label == nullptr || label->text().isEmpty()) && (button == nullptr || button->text().isEmpty())) continue;
        if (!control->isVisible()) continue;
        const std::string words = FromQt(label != nullptr ? label->text() : button->text());
        if (label != nullptr && label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << words;
        } else if (control->sizePolicy().horizontalPolicy() != QSizePolicy::Ignored) {
            EXPECT_GE(control->width(), control->sizeHint().width()) << words;
        }
        EXPECT_GE(control->height(), control->fontMetrics().height()) << words;
    }
}

}  // namespace pixmora
