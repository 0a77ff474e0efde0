// A painted button with its three states.
#pragma once

#include <QPushButton>

#include "console/Glyphs.h"

namespace pixmora {

/// A button that draws itself: clicked by Space and Enter, and by the pointer when it is still inside at the release.
class PaintedButton : public QPushButton {
public:
    PaintedButton(const char *name, const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

/// Normal, under the pointer, pressed; besides a focus frame, and paler when it is disabled.
class SkinButton : public PaintedButton {
public:
    enum class Tone {
        Plain,
        Go,    ///< green
        Halt,  ///< red
        Lead,  ///< blue: what Enter does in a box
    };
    struct Face {
        QString Text;
        Glyph Picture = Glyph::None;
        Tone Colour = Tone::Plain;
    };

    SkinButton(const char *name, Face face);

    void SetFace(Face face);
    /// Paints a face in this button's present state.
    void PaintFace(QPainter &painter, const Face &face) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Face face_;
};

/// A button of the title area: a white glyph on the blue, framed under the pointer.
class TitleButton : public PaintedButton {
public:
    TitleButton(const char *name, Glyph glyph, const QString &purpose);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    Glyph glyph_;
};

/// Whether the key is either Enter.
bool IsEnter(const QKeyEvent &event);

}  // namespace pixmora
