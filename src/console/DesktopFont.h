// The desktop's font, which its user may change while the program runs.
#pragma once

#include <QObject>
#include <functional>

namespace pixmora {

class DesktopFont : public QObject {
public:
    /// @param changed the desktop's size of text is another one
    explicit DesktopFont(std::function<void()> changed);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> changed_;
    double scale_;
};

}  // namespace pixmora
