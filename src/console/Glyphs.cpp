// The small drawings on buttons, in menus and in boxes, and the program's mark.
#include "console/Glyphs.h"

#include <QHash>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>

#include "console/Skin.h"

namespace pixmora {

namespace {

// Glyphs are drawn on a grid of 24 units, the mark on one of 64.
constexpr double glyphGrid = 24;
constexpr double markGrid = 64;
constexpr double fullCircle = 6.283185307179586;

QPainterPath Lines(const QList<QList<QPointF>> &lines) {
    QPainterPath path;
    for (const QList<QPointF> &line : lines) {
        path.moveTo(line.first());
        for (const QPointF &point : line.sliced(1)) path.lineTo(point);
    }
    return path;
}

QPainterPath Joined(QPainterPath path, const QPainterPath &other) {
    path.addPath(other);
    return path;
}

QPainterPath Gear() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 3.2, 3.2);
    path.addEllipse(QPointF(12, 12), 6.5, 6.5);
    constexpr int teeth = 8;
    for (int i = 0; i < teeth; ++i) {
        const double angle = fullCircle * i / teeth;
        path.moveTo(12 + 6.5 * std::cos(angle), 12 + 6.5 * std::sin(angle));
        path.lineTo(12 + 9.5 * std::cos(angle), 12 + 9.5 * std::sin(angle));
    }
    return path;
}

QPainterPath Globe() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9, 9);
    path.addEllipse(QPointF(12, 12), 4, 9);
    path.addPath(Lines({{{3, 12}, {21, 12}}}));
    return path;
}

QPainterPath Person() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 8), 4, 4);
    path.moveTo(4.5, 20.5);
    path.cubicTo(4.5, 12.5, 19.5, 12.5, 19.5, 20.5);
    return path;
}

QPainterPath Speech() {
    QPainterPath path;
    path.addRoundedRect(3, 4, 18, 12, 3, 3);
    path.addPath(Lines({{{8, 16}, {8, 20.5}, {13, 16}}}));
    return path;
}

QPainterPath Rectangles(const QList<QRectF> &rectangles) {
    QPainterPath path;
    for (const QRectF &rectangle : rectangles) path.addRoundedRect(rectangle, 1.5, 1.5);
    return path;
}

QPainterPath Information() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9, 9);
    path.addPath(Lines({{{12, 11}, {12, 17}}, {{12, 7.3}, {12, 7.6}}}));
    return path;
}

/// Of those that aren't only filled.
QPainterPath StrokesOf(Glyph glyph) {
    static const QHash<Glyph, QPainterPath> strokes = {
        {Glyph::Setup, Gear()},
        {Glyph::Statistics, Lines({{{5, 20}, {5, 12}}, {{12, 20}, {12, 4}}, {{19, 20}, {19, 9}}})},
        {Glyph::About, Information()},
        {Glyph::Exit,
         Lines({{{13, 4}, {4, 4}, {4, 20}, {13, 20}}, {{9, 12}, {21, 12}}, {{17, 7.5}, {21, 12}, {17, 16.5}}})},
        {Glyph::Window, Joined(Rectangles({{3, 5, 18, 14}}), Lines({{{3, 9.5}, {21, 9.5}}}))},
        {Glyph::Minimise, Lines({{{4, 18}, {20, 18}}})},
        {Glyph::Menu, Lines({{{4, 6}, {20, 6}}, {{4, 12}, {20, 12}}, {{4, 18}, {20, 18}}})},
        {Glyph::Close, Lines({{{6, 6}, {18, 18}}, {{18, 6}, {6, 18}}})},
        {Glyph::Browser, Globe()},
        {Glyph::Copy, Rectangles({{8, 8, 12, 12}, {4, 4, 12, 12}})},
        {Glyph::Mail, Joined(Rectangles({{3, 5, 18, 14}}), Lines({{{3, 6.5}, {12, 13}, {21, 6.5}}}))},
        {Glyph::Talk, Speech()},
        {Glyph::Add, Lines({{{12, 4}, {12, 20}}, {{4, 12}, {20, 12}}})},
        {Glyph::Edit, Lines({{{5, 19}, {6, 15}, {16, 5}, {19, 8}, {9, 18}, {5, 19}}})},
        {Glyph::Folder, Lines({{{3, 19}, {3, 6}, {9, 6}, {11.5, 9}, {21, 9}, {21, 19}, {3, 19}}})},
        {Glyph::People, Person()},
    };
    return strokes.value(glyph);
}

QPainterPath FillOf(Glyph glyph) {
    if (glyph == Glyph::Start) return Lines({{{7, 4}, {20, 12}, {7, 20}, {7, 4}}});
    if (glyph == Glyph::Stop) return Rectangles({{5, 5, 14, 14}});
    return {};
}

void PaintBody(QPainter &painter) {
    QLinearGradient blue(0, 13, 0, 57);
    blue.setColorAt(0, QColor(74, 138, 236));
    blue.setColorAt(1, QColor(28, 70, 144));
    painter.setBrush(QColor(28, 70, 144));
    painter.drawPath(Lines({{{22, 8}, {42, 8}, {47, 16}, {17, 16}, {22, 8}}}));
    painter.setBrush(blue);
    painter.drawRoundedRect(QRectF(2, 13, 60, 44), 11, 11);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Skin::Amber);
    painter.drawEllipse(QPointF(52, 22), 4, 4);
}

void PaintLens(QPainter &painter) {
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(32, 36), 18, 18);
    QLinearGradient sky(0, 22, 0, 50);
    sky.setColorAt(0, QColor(158, 208, 255));
    sky.setColorAt(1, QColor(255, 212, 138));
    QPainterPath lens;
    lens.addEllipse(QPointF(32, 36), 14, 14);
    painter.setBrush(sky);
    painter.drawPath(lens);
    painter.setBrush(Skin::Blue);
    const QPainterPath hills =
        Lines({{{16, 45}, {27.8, 31.5}, {33.8, 38}, {37.3, 34.5}, {48, 46}, {48, 56}, {16, 56}, {16, 45}}});
    painter.drawPath(hills & lens);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(37.5, 29), 3, 3);
}

}  // namespace

void PaintGlyph(QPainter &painter, Glyph glyph, const QRectF &square, const QColor &colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / glyphGrid, square.height() / glyphGrid);
    painter.strokePath(StrokesOf(glyph), QPen(colour, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(FillOf(glyph), colour);
    painter.restore();
}

void PaintSign(QPainter &painter, Sign sign, const QRectF &square) {
    const bool isCritical = sign == Sign::Critical;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / glyphGrid, square.height() / glyphGrid);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isCritical ? Skin::Red : Skin::Blue);
    painter.drawEllipse(QPointF(12, 12), 11.5, 11.5);
    const QPainterPath strokes = isCritical ? Lines({{{12, 6}, {12, 13}}, {{12, 17.6}, {12, 17.8}}})
                                            : Lines({{{12, 11}, {12, 17.5}}, {{12, 6.6}, {12, 6.8}}});
    painter.strokePath(strokes, QPen(Qt::white, 2.8, Qt::SolidLine, Qt::RoundCap));
    painter.restore();
}

void PaintMark(QPainter &painter, const QRectF &square, const QColor &rim) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / markGrid, square.height() / markGrid);
    painter.setPen(rim.isValid() ? QPen(rim, 3) : QPen(Qt::NoPen));
    PaintBody(painter);
    painter.setPen(Qt::NoPen);
    PaintLens(painter);
    painter.restore();
}

QIcon ProgramIcon() {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        PaintMark(painter, QRectF(0, 0, side, side));
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace pixmora
