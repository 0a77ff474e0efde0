// The captioned frame in which the controls of a dialog stand.
#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

class QMouseEvent;

namespace pixmora {

/// A rounded field with its caption in a gap of the upper line. Controls are laid out in it as in any widget; its
/// margins keep them clear of the frame. Font, pointer and Enabled are those that every widget has.
class SContainer : public QWidget {
public:
    enum class Bevel { Flat, Raised, Sunken };
    enum class DisabledLook { Grey, Unchanged };  ///< of the caption

    explicit SContainer(const QString &caption, QWidget *parent = nullptr);

    const QString &Caption() const { return caption_; }
    void SetCaption(const QString &caption);
    /// Where the caption stands on the line: left, middle or right.
    void SetAlignment(Qt::Alignment alignment);
    void SetBevelStyle(Bevel bevel);
    void SetBorderStyle(bool hasBorder);
    void SetBackColor(const QColor &colour);
    void SetForeColor(const QColor &colour);
    void SetDisabledBehaviour(DisabledLook look);

    /// The controls that stand directly in the frame.
    QList<QWidget *> ControlsContained() const;

    // Of the pointer on the caption; run under the event guard.
    std::function<void(const QMouseEvent &)> OnCaptionMouseDown;
    std::function<void(const QMouseEvent &)> OnCaptionMouseMove;
    std::function<void(const QMouseEvent &)> OnCaptionMouseUp;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRect CaptionRect() const;
    void PassOn(const std::function<void(const QMouseEvent &)> &handler, const QMouseEvent &event) const;
    void PaintLines(class QPainter &painter) const;

    QString caption_;
    Qt::Alignment alignment_ = Qt::AlignLeft;
    Bevel bevel_ = Bevel::Flat;
    DisabledLook disabledLook_ = DisabledLook::Grey;
    bool hasBorder_ = true;
    QColor backColor_;
    QColor foreColor_;
};

}  // namespace pixmora
