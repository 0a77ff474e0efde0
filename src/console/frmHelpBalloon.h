// The help balloon beside the pointer.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/loop/MessageLoop.h"

class QLabel;
class QPushButton;

namespace pixmora {

/// How long a help text stays: 60 ms a character.
int BalloonTime(const QString &text);
/// Beside the pointer, on its left where there is no room on its right; never off the screen.
QPoint BalloonPlace(const QPoint &pointer, const QSize &balloon, const QRect &screen);

/// One instance; a new text takes the place of the old one. It goes with its time, at any key, by its exit image, with
/// the dialog that it was shown over, and under a dialog that opens on top.
class frmHelpBalloon : public QWidget {
public:
    /// @param openSupport what a click on the link to the online support does
    explicit frmHelpBalloon(const std::function<void()> &openSupport);

    /// Returns at once. @param hasSupport whether there is an online support to link to
    void Show(const std::string &title, const std::string &text, bool hasSupport);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QLabel *lblHelpBalloonTitle;
    QLabel *lblHelpBalloonDesc;
    QPushButton *lblOnlineSupport;
    QPointer<QWidget> dialog_;  ///< or window that it was shown over
    Timer tmrClose;
};

}  // namespace pixmora
