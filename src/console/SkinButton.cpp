// A painted button with its three states.
#include "console/SkinButton.h"

#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <utility>

#include "console/Skin.h"

namespace pixmora {

namespace {

constexpr int buttonHeight = 30;
constexpr int glyphSide = 15;
constexpr int gap = 6;
constexpr int sideSpace = 13;
constexpr double corner = 5;
constexpr int textPixels = 12;

struct Colours {
    QColor Fill;
    QColor Ink;
};

Colours ColoursOf(SkinButton::Tone tone) {
    switch (tone) {
        case SkinButton::Tone::Go:
            return {Skin::Green, Qt::white};
        case SkinButton::Tone::Halt:
            return {Skin::Red, Qt::white};
        case SkinButton::Tone::Lead:
            return {Skin::Blue, Qt::white};
        case SkinButton::Tone::Plain:
            break;
    }
    return {QColor(250, 251, 253), Skin::Ink};
}

QColor InState(const QColor &fill, bool isPressed, bool isOver) {
    const bool isLight = fill.lightness() > 200;
    if (isPressed) return isLight ? QColor(205, 218, 240) : fill.darker(125);
    if (isOver) return isLight ? QColor(226, 236, 252) : fill.lighter(112);
    return fill;
}

int ContentWidth(const SkinButton::Face &face, const QFontMetrics &metrics) {
    const int picture = face.Picture == Glyph::None ? 0 : Skin::Scaled(glyphSide) + gap;
    return picture + metrics.horizontalAdvance(face.Text);
}

}  // namespace

bool IsEnter(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

PaintedButton::PaintedButton(const char *name, const QString &text) : QPushButton(text) {
    setObjectName(QLatin1String(name));
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

void PaintedButton::keyPressEvent(QKeyEvent *event) {
    if (IsEnter(*event)) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}

SkinButton::SkinButton(const char *name, Face face) : PaintedButton(name, face.Text) {
    Skin::SetFont(*this, textPixels, face.Colour != Tone::Plain);
    SetFace(std::move(face));
}

void SkinButton::SetFace(Face face) {
    face_ = std::move(face);
    setText(face_.Text);
    setAccessibleName(face_.Text);
    updateGeometry();
    update();
}

void SkinButton::PaintFace(QPainter &painter, const Face &face) const {
    auto [fill, ink] = ColoursOf(face.Colour);
    fill = InState(fill, isDown(), underMouse() && isEnabled());
    if (!isEnabled()) {
        fill = Skin::Body;
        ink = QColor(150, 158, 170);
    }
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QLinearGradient gradient(frame.topLeft(), frame.bottomLeft());
    gradient.setColorAt(isDown() ? 1 : 0, fill.lighter(106));
    gradient.setColorAt(isDown() ? 0 : 1, fill.darker(106));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(fill.lightness() > 200 ? QColor(176, 188, 206) : fill.darker(135), 1));
    painter.setBrush(gradient);
    painter.drawRoundedRect(frame, corner, corner);

    const int side = Skin::Scaled(glyphSide);
    QRectF content(0, 0, ContentWidth(face, fontMetrics()), side);
    content.moveCenter(QRectF(rect()).center());
    if (isDown()) content.translate(0, 1);
    if (face.Picture != Glyph::None) {
        PaintGlyph(painter, face.Picture, QRectF(content.topLeft(), QSizeF(side, side)), ink);
        content.setLeft(content.left() + side + gap);
    }
    painter.setPen(ink);
    painter.setFont(font());
    painter.drawText(content.adjusted(0, -8, 2, 8), Qt::AlignVCenter | Qt::AlignLeft, face.Text);
    if (hasFocus()) Skin::PaintFocus(painter, QRectF(rect()).adjusted(3, 3, -3, -3), ink);
}

QSize SkinButton::sizeHint() const {
    return {ContentWidth(face_, fontMetrics()) + 2 * sideSpace, Skin::Scaled(buttonHeight)};
}

void SkinButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    PaintFace(painter, face_);
}

TitleButton::TitleButton(const char *name, Glyph glyph, const QString &purpose)
    : PaintedButton(name, {}), glyph_(glyph) {
    setAccessibleName(purpose);
    setToolTip(purpose);
    setFixedSize(sizeHint());
}

void TitleButton::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) setFixedSize(sizeHint());
    PaintedButton::changeEvent(event);
}

QSize TitleButton::sizeHint() const {
    return QSize(28, 24) * Skin::TextScale();
}

void TitleButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown() || underMouse()) {
        painter.setPen(QPen(QColor(255, 255, 255, 170), 1));
        painter.setBrush(isDown() ? QColor(0, 0, 0, 60) : QColor(255, 255, 255, 45));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    }
    const double side = 14 * Skin::TextScale();
    QRectF square(0, 0, side, side);
    square.moveCenter(QRectF(rect()).center());
    PaintGlyph(painter, glyph_, square, Skin::HeaderInk);
    if (hasFocus()) Skin::PaintFocus(painter, QRectF(rect()).adjusted(2, 2, -2, -2), Skin::HeaderInk);
}

}  // namespace pixmora
