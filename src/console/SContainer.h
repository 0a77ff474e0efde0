// The captioned frame in which the controls of a dialog stand.
#pragma once

#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

class QMouseEvent;
class QPainter;

namespace pixmora {

/// A rounded field with its caption in a gap of the upper line. Controls are laid out in it as in any widget; its
/// margins keep them clear of the frame. Colours are the skin's; font, pointer and Enabled those of every widget.
class SContainer : public QWidget {
public:
    explicit SContainer(const QString &caption);

    const QString &Caption() const { return caption_; }
    void SetCaption(const QString &caption);

    // What every captioned frame has besides, although no dialog of ours asks for it.
    enum class Bevel { Flat, Raised, Sunken };
    Qt::Alignment Alignment = Qt::AlignLeft;  ///< of the caption on its line
    Bevel BevelStyle = Bevel::Flat;
    std::function<void(const QMouseEvent &)> OnCaptionMouse;  ///< pressed, moved, released; runs under the event guard
    /// The controls that stand directly in the frame.
    QList<QWidget *> ControlsContained() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void FitMargins();
    QRect CaptionRect() const;
    void PaintLines(QPainter &painter) const;

    QString caption_;
};

}  // namespace pixmora
