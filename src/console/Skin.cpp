// The look that all windows of the program share: colours, fonts, surfaces.
#include "console/Skin.h"

#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QStringList>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace pixmora::Skin {

namespace {

constexpr double amberEdge = 3;
constexpr double cardCorner = 6;
constexpr const char *pixelsTag = "TextPixels";

/// A frame of one unit lies sharp when its middle does between two pixels.
QRectF FrameOf(const QRectF &outer) {
    return outer.adjusted(0.5, 0.5, -0.5, -0.5);
}

}  // namespace

double TextScale() {
    constexpr double usualPoints = 9;
    return std::clamp(QFontInfo(QApplication::font()).pointSizeF() / usualPoints, 0.8, 3.0);
}

int Scaled(int length) {
    return static_cast<int>(std::lround(length * TextScale()));
}

QFont Font(int pixels, bool bold) {
    return PictureFont(Scaled(pixels), bold);
}

QFont PictureFont(int pixels, bool bold) {
    QFont font;
    font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("Segoe UI"), QStringLiteral("Noto Sans"),
                      QStringLiteral("DejaVu Sans")});
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

void SetFont(QWidget &widget, int pixels, bool bold) {
    widget.setProperty(pixelsTag, pixels);
    widget.setFont(Font(pixels, bold));
}

void FitFonts() {
    for (QWidget *widget : QApplication::allWidgets()) {
        const QVariant pixels = widget->property(pixelsTag);
        if (!pixels.isValid()) continue;
        QFont fitted = widget->font();  // bold or underlined as it is now
        fitted.setPixelSize(Scaled(pixels.toInt()));
        widget->setFont(fitted);
    }
}

QLabel *Label(const QString &text, int pixels, const QColor &colour, bool bold) {
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    SetFont(*label, pixels, bold);
    QPalette colours = label->palette();
    colours.setColor(QPalette::WindowText, colour);
    label->setPalette(colours);
    return label;
}

void PaintWindow(QPainter &painter, const QRectF &window) {
    painter.fillRect(window, Body);
    painter.setPen(QPen(Frame, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(FrameOf(window));
}

void PaintHeader(QPainter &painter, const QRectF &header) {
    QLinearGradient gradient(header.topLeft(), header.bottomLeft());
    gradient.setColorAt(0, HeaderTop);
    gradient.setColorAt(1, HeaderBottom);
    painter.fillRect(header, gradient);
    painter.fillRect(QRectF(header.left(), header.bottom() - amberEdge, header.width(), amberEdge), Amber);
}

void PaintCard(QPainter &painter, const QRectF &card) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Line, 1));
    painter.setBrush(Card);
    painter.drawRoundedRect(FrameOf(card), cardCorner, cardCorner);
}

void PaintFocus(QPainter &painter, const QRectF &control, const QColor &colour) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(FrameOf(control), 3, 3);
}

}  // namespace pixmora::Skin
