// A painted button with its three states.
#pragma once

#include <QPushButton>

#include "console/Glyphs.h"

namespace pixmora {

/// Normal, under the pointer, pressed; besides a focus frame, and paler when it is disabled. Space and Enter click it,
/// and so does the pointer when it is still inside at the release.
class SkinButton : public QPushButton {
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

    SkinButton(const char *name, Face face, QWidget *parent = nullptr);

    void SetFace(Face face);
    const Face &CurrentFace() const { return face_; }
    /// Paints a face in this button's present state.
    void PaintFace(QPainter &painter, const Face &face) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Face face_;
};

/// A button of the title area: a white glyph on the blue, framed under the pointer.
class TitleButton : public QPushButton {
public:
    TitleButton(const char *name, Glyph glyph, const QString &purpose, QWidget *parent = nullptr);
    QSize sizeHint() const override { return {28, 24}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Glyph glyph_;
};

/// Whether the key clicks a button that has the focus, besides Space: either Enter.
bool IsEnter(const QKeyEvent &event);

}  // namespace pixmora
