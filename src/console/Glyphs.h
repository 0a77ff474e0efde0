// The small drawings on buttons, in menus and in boxes, and the program's mark.
#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>

class QPainter;

namespace pixmora {

enum class Glyph {
    None,
    Start,
    Stop,
    Setup,
    Statistics,
    About,
    Exit,
    Window,
    Minimise,
    Menu,
    Close,
    Browser,
    Copy,
    Mail,
    Talk,
    Add,
    Edit,
    Folder,
    People,
};

/// Strokes and fills of one colour, as large as the square.
void PaintGlyph(QPainter &painter, Glyph glyph, const QRectF &square, const QColor &colour);

/// The sign beside a message: an "i" on blue, or a "!" on red.
enum class Sign { Information, Critical };
void PaintSign(QPainter &painter, Sign sign, const QRectF &square);

/// The program's mark, a camera with a landscape in its lens. @param rim around it, where it stands on its own blue
void PaintMark(QPainter &painter, const QRectF &square, const QColor &rim = {});

/// The mark at all the sizes that desktops ask for.
QIcon ProgramIcon();

}  // namespace pixmora
