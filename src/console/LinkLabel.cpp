// A label that can be clicked as a link.
#include "console/LinkLabel.h"

#include <QPainter>

#include "console/Skin.h"

namespace pixmora {

namespace {

constexpr int sideSpace = 3;  // what stands for the blank between a link and the words around it
constexpr int heightSpace = 6;

/// Brighter than the link itself, whatever that is.
QColor UnderPointer(const QColor &colour) {
    return colour.red() > colour.blue() ? QColor(190, 0, 0) : QColor(40, 100, 230);
}

}  // namespace

LinkLabel::LinkLabel(const char *name, const QString &text, const QString &purpose) : PaintedButton(name, text) {
    setAccessibleDescription(purpose);
    Skin::SetFont(*this, 12);
    SetLook({QColor(0, 0, 128), false, false, false, true});
}

void LinkLabel::SetLook(const LinkLook &look) {
    look_ = look;
    QFont changed = font();
    changed.setUnderline(look.Underlined);
    changed.setItalic(look.Italic);
    changed.setBold(look.Bold);
    setFont(changed);
    setEnabled(look.HasHandPointer);
    setCursor(look.HasHandPointer ? Qt::PointingHandCursor : Qt::ArrowCursor);
    update();
}

QSize LinkLabel::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(text()) + 2 * Skin::Scaled(sideSpace) + 2, metrics.height() + heightSpace};
}

QSize LinkLabel::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance(QStringLiteral("...")), sizeHint().height()};
}

void LinkLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(underMouse() && isEnabled() ? UnderPointer(look_.Colour) : look_.Colour);
    const int space = Skin::Scaled(sideSpace);
    const QRect room = rect().adjusted(space, 0, -space, 0);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
    if (hasFocus()) Skin::PaintFocus(painter, QRectF(rect()).adjusted(0, 1, 0, -1), look_.Colour);
}

}  // namespace pixmora
