// The captioned frame in which the controls of a dialog stand.
#include "console/SContainer.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include "console/Skin.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int captionInset = 12;
constexpr int captionSpace = 5;
constexpr double corner = 6;

}  // namespace

SContainer::SContainer(const QString &caption, QWidget *parent)
    : QWidget(parent), backColor_(Skin::Card), foreColor_(Skin::HeaderBottom) {
    setFont(Skin::Font(12));
    SetCaption(caption);
}

void SContainer::SetCaption(const QString &caption) {
    caption_ = caption;
    setAccessibleName(caption);
    const int top = caption.isEmpty() ? 10 : QFontMetrics(Skin::Font(12, true)).height() + 8;
    setContentsMargins(12, top, 12, 10);
    update();
}

void SContainer::SetAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

void SContainer::SetBevelStyle(Bevel bevel) {
    bevel_ = bevel;
    update();
}

void SContainer::SetBorderStyle(bool hasBorder) {
    hasBorder_ = hasBorder;
    update();
}

void SContainer::SetBackColor(const QColor &colour) {
    backColor_ = colour;
    update();
}

void SContainer::SetForeColor(const QColor &colour) {
    foreColor_ = colour;
    update();
}

void SContainer::SetDisabledBehaviour(DisabledLook look) {
    disabledLook_ = look;
    update();
}

QList<QWidget *> SContainer::ControlsContained() const {
    return findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

QRect SContainer::CaptionRect() const {
    if (caption_.isEmpty()) return {};
    const QFontMetrics metrics(Skin::Font(12, true));
    const int width = metrics.horizontalAdvance(caption_) + 2 * captionSpace;
    int left = captionInset;
    if ((alignment_ & Qt::AlignHCenter) != 0) left = (this->width() - width) / 2;
    if ((alignment_ & Qt::AlignRight) != 0) left = this->width() - width - captionInset;
    return {left, 0, width, metrics.height()};
}

void SContainer::PaintLines(QPainter &painter) const {
    const double top = caption_.isEmpty() ? 0.5 : CaptionRect().height() / 2.0 + 0.5;
    const QRectF frame = QRectF(rect()).adjusted(0.5, top, -1.5, -1.5);
    painter.setBrush(backColor_);
    painter.setPen(hasBorder_ ? QPen(Skin::Line, 1) : QPen(Qt::NoPen));
    painter.drawRoundedRect(frame, corner, corner);
    if (!hasBorder_ || bevel_ == Bevel::Flat) return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(bevel_ == Bevel::Raised ? Skin::Line.darker(120) : QColor(Qt::white), 1));
    painter.drawRoundedRect(frame.translated(1, 1), corner, corner);
}

void SContainer::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintLines(painter);
    if (caption_.isEmpty()) return;
    const QRectF caption = CaptionRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(backColor_);
    painter.drawRoundedRect(caption, 3, 3);
    const bool isGrey = !isEnabled() && disabledLook_ == DisabledLook::Grey;
    painter.setPen(isGrey ? QColor(150, 158, 170) : foreColor_);
    painter.setFont(Skin::Font(12, true));
    painter.drawText(caption, Qt::AlignCenter, caption_);
}

void SContainer::changeEvent(QEvent *event) {
    if (event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(event);
}

void SContainer::PassOn(const std::function<void(const QMouseEvent &)> &handler, const QMouseEvent &event) const {
    if (handler && CaptionRect().contains(event.position().toPoint())) RunEventHandler([&] { handler(event); });
}

void SContainer::mousePressEvent(QMouseEvent *event) {
    PassOn(OnCaptionMouseDown, *event);
}

void SContainer::mouseMoveEvent(QMouseEvent *event) {
    PassOn(OnCaptionMouseMove, *event);
}

void SContainer::mouseReleaseEvent(QMouseEvent *event) {
    PassOn(OnCaptionMouseUp, *event);
}

}  // namespace pixmora
