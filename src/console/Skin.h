// The look that all windows of the program share: colours, fonts, surfaces.
#pragma once

#include <QColor>
#include <QFont>
#include <QPainterPath>

class QLabel;
class QPainter;
class QRectF;
class QWidget;

/// Every colour is the skin's own and none the desktop's, so that light and dark desktops show the same window.
namespace pixmora::Skin {

inline constexpr QColor Ink{31, 42, 58};
inline constexpr QColor SoftInk{86, 100, 122};
inline constexpr QColor Body{240, 244, 250};
inline constexpr QColor Card{255, 255, 255};
inline constexpr QColor Line{206, 214, 226};
inline constexpr QColor Frame{22, 50, 100};
inline constexpr QColor HeaderTop{58, 117, 206};
inline constexpr QColor HeaderBottom{28, 70, 144};
inline constexpr QColor HeaderInk{255, 255, 255};
inline constexpr QColor HeaderSoftInk{205, 222, 248};
inline constexpr QColor Amber{245, 158, 11};
inline constexpr QColor Blue{43, 108, 212};
inline constexpr QColor Green{46, 148, 85};
inline constexpr QColor Red{200, 60, 52};

/// How large the desktop wants its text, beside the nine points that the skin's lengths are made for.
double TextScale();
/// A length of the skin at the desktop's size of text. Lengths are in units that the desktop's scaling multiplies.
int Scaled(int length);
/// @param pixels height, before the desktop's size of text
QFont Font(int pixels, bool bold = false);
/// The same font whatever the desktop's size of text, for pictures.
QFont PictureFont(int pixels, bool bold = false);
/// Gives the widget the font, and lets FitFonts know of it.
void SetFont(QWidget &widget, int pixels, bool bold = false);
/// Brings all fonts that SetFont has given to the desktop's present size of text. Lengths follow with the FontChange
/// that each widget has of it.
void FitFonts();

/// A label of plain text.
QLabel *Label(const QString &text, int pixels, const QColor &colour, bool bold = false);

/// Body and border of a window.
void PaintWindow(QPainter &painter, const QRectF &window);
/// The blue band at a window's top with its amber edge.
void PaintHeader(QPainter &painter, const QRectF &header);
/// A white field with a fine border.
void PaintCard(QPainter &painter, const QRectF &card);
/// What shows where the keys go.
void PaintFocus(QPainter &painter, const QRectF &control, const QColor &colour);

}  // namespace pixmora::Skin
