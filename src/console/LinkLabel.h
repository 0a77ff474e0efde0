// A label that can be clicked as a link.
#pragma once

#include "console/SkinButton.h"

namespace pixmora {

/// How a link looks while the pointer is elsewhere.
struct LinkLook {
    QColor Colour;
    bool Underlined = false;
    bool Italic = false;
    bool Bold = false;
    bool HasHandPointer = true;  ///< without it the link takes no click and no key
};

/// The text that is read and clicked is whole; what is painted ends in "..." where the room does.
class LinkLabel : public PaintedButton {
public:
    /// @param purpose what it is a link to, for those who can't see what it stands beside
    LinkLabel(const char *name, const QString &text, const QString &purpose);

    void SetLook(const LinkLook &look);
    const LinkLook &Look() const { return look_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    LinkLook look_;
};

}  // namespace pixmora
