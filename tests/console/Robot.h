// The owner's hands in tests of windows: what is done to a window when it shows.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QWidget>
#include <deque>
#include <functional>
#include <string>
#include <utility>

#include "platform/runtime/Text.h"
#include "support/ScriptedOwner.h"

namespace pixmora::test {

/// The visible window of that name, or null.
inline QWidget *ShownWindow(const char *name) {
    for (QWidget *form : QApplication::topLevelWidgets())
        if (form->isVisible() && form->objectName() == QLatin1String(name)) return form;
    return nullptr;
}

template <typename Control = QWidget>
Control &Find(const QWidget &form, const char *name) {
    auto *control = form.findChild<Control *>(QLatin1String(name));
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
}

/// Presses and releases the pointer in the middle of the control, which must be able to take it.
inline void Click(const QWidget &form, const char *name) {
    QWidget &control = Find(form, name);
    ASSERT_TRUE(control.isEnabled()) << name;
    // Boxes and options take a click on their mark and words only.
    const auto *button = qobject_cast<const QAbstractButton *>(&control);
    const bool hasMark = button != nullptr && button->isCheckable();
    QTest::mouseClick(&control, Qt::LeftButton, {}, hasMark ? QPoint(8, control.height() / 2) : QPoint());
}

/// The rows of a list with a "|" behind each column that shows.
inline std::string RowsOf(const QWidget &form, const char *name) {
    std::string rows;
    const auto &list = Find<QTreeWidget>(form, name);
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
        for (int column = 0; column < list.columnCount(); ++column)
            if (!list.isColumnHidden(column)) rows += list.topLevelItem(row)->text(column).toStdString() + "|";
        rows += "\n";
    }
    return rows;
}

/// What a label or button reads.
inline std::string TextOf(const QWidget &form, const char *name) {
    const QWidget &control = Find(form, name);
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control)) return button->text().toStdString();
    return dynamic_cast<const QLabel &>(control).text().toStdString();
}

/// A hand of the program that notes in the text what it is asked for, "|" behind each.
inline auto Noting(std::string &done, const std::string &what) {
    return [&done, what](const auto &...texts) {
        done += Concat(what, texts..., "|");
    };
}

/// Waits, from its making on, for one thing after the other and does then what is to be done. A step that has not come
/// at the robot's end fails the test.
class Robot {
public:
    Robot() {
        QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
        timer_.start(5);
    }
    ~Robot() {
        for (const Step &step : steps_) ADD_FAILURE() << "never came: " << step.Name;
    }

    void When(const std::string &name, std::function<bool()> isDue, std::function<void()> act) {
        steps_.push_back({name, std::move(isDue), std::move(act)});
    }
    void WhenShown(const char *name, const std::function<void(QWidget &form)> &act) {
        const auto isShown = [name] {
            return ShownWindow(name) != nullptr;
        };
        When(name, isShown, [name, act] { act(*ShownWindow(name)); });
    }
    /// A message box. @param text as IsForeseen takes it, with the line ends of a label @param button pressed then
    void WhenAsked(const std::string &text, const char *button) {
        WhenShown("frmMsgBox", [text, button](QWidget &box) {
            EXPECT_TRUE(IsForeseen(TextOf(box, "lblMessage"), text)) << TextOf(box, "lblMessage");
            Click(box, button);
        });
    }
    /// The start window, when its sequence is over and nothing is left but to close it.
    void WhenStartEnds(const std::function<void(QWidget &form)> &act) {
        const auto isOver = [] {
            const QWidget *form = ShownWindow("frmStartStatus");
            return form != nullptr && TextOf(*form, "cmdCancel") == "Close";
        };
        When("end of the start", isOver, [act] { act(*ShownWindow("frmStartStatus")); });
    }
    bool IsDone() const { return steps_.empty(); }

private:
    struct Step {
        std::string Name;
        std::function<bool()> IsDue;
        std::function<void()> Act;
    };

    void Look() {
        if (steps_.empty() || !steps_.front().IsDue()) return;
        // The action may turn the loop, and the next step may come within it.
        const Step step = std::move(steps_.front());
        steps_.pop_front();
        step.Act();
    }

    std::deque<Step> steps_;
    QTimer timer_;
};

}  // namespace pixmora::test
