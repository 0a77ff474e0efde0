// The picture that shows while the program starts.
#pragma once

#include <QWidget>
#include <functional>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

/// Goes by its timer, at a click or at a key.
class frmSplash : public QWidget {
public:
    /// @param onUnload run once, when it goes
    explicit frmSplash(std::function<void()> onUnload);
    /// Returns at once.
    void Show();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void Unload();

    std::function<void()> onUnload_;
    Timer tmrClose;
};

}  // namespace pixmora
