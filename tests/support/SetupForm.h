// What the tests of the setup dialogs' forms do to them.
#pragma once

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTreeWidget>

#include "console/Robot.h"
#include "console/Texts.h"
#include "setup/ControlText.h"

namespace pixmora {

using test::Find;
using test::Robot;

/// A click by the pointer, which the control must be able to take.
inline void Click(const QWidget &form, const char *name) {
    auto *button = &Find<QAbstractButton>(form, name);
    ASSERT_TRUE(button->isEnabled()) << name;
    // Boxes and options take a click on their mark and words only.
    const bool hasMark = button->isCheckable();
    QTest::mouseClick(button, Qt::LeftButton, {}, hasMark ? QPoint(8, button->height() / 2) : QPoint());
}

inline std::string TextOf(const QWidget &form, const char *name) {
    if (const auto *label = form.findChild<QLabel *>(QLatin1String(name))) return FromQt(label->text());
    return ControlText(Find<QObject>(form, name));
}

inline void Enter(const QWidget &form, const char *name, const std::string &text) {
    SetControlText(Find<QObject>(form, name), text);
}

inline std::string RowsOf(const QWidget &form, const char *name) {
    std::string rows;
    const auto *list = &Find<QTreeWidget>(form, name);
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        for (int column = 0; column < list->columnCount(); ++column) {
            if (!list->isColumnHidden(column)) rows += FromQt(list->topLevelItem(row)->text(column)) + "|";
        }
        rows += "\n";
    }
    return rows;
}

/// Does it twice, in small text and in large.
inline void InEachTextSize(const std::function<void()> &action) {
    const QFont before = QApplication::font();
    for (const int pixels : {12, 18}) {
        QFont font = before;
        font.setPixelSize(pixels);
        QApplication::setFont(font);
        action();
    }
    QApplication::setFont(before);
}

/// Fails for every control that shows less than its text, and every slider that shows less than its handle.
inline void ExpectNothingIsCut(const QWidget &form) {
    for (const QSlider *slider : form.findChildren<QSlider *>()) {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.tickPosition = slider->tickPosition();
        const QRect handle =
            slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
        EXPECT_TRUE(slider->rect().top() <= handle.top() && handle.bottom() <= slider->rect().bottom());
    }
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
