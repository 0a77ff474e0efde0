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

SContainer::SContainer(const QString &caption) {
    Skin::SetFont(*this, 12);
    SetCaption(caption);
}

void SContainer::SetCaption(const QString &caption) {
    caption_ = caption;
    setAccessibleName(caption);
    FitMargins();
    update();
}

void SContainer::FitMargins() {
    const int top = caption_.isEmpty() ? 10 : QFontMetrics(Skin::Font(12, true)).height() + 8;
    setContentsMargins(12, top, 12, 10);
}

void SContainer::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) FitMargins();
    QWidget::changeEvent(event);
}

QList<QWidget *> SContainer::ControlsContained() const {
    return findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

QRect SContainer::CaptionRect() const {
    if (caption_.isEmpty()) return {};
    const QFontMetrics metrics(Skin::Font(12, true));
    const int width = metrics.horizontalAdvance(caption_) + 2 * captionSpace;
    int left = captionInset;
    if ((Alignment & Qt::AlignHCenter) != 0) left = (this->width() - width) / 2;
    if ((Alignment & Qt::AlignRight) != 0) left = this->width() - width - captionInset;
    return {left, 0, width, metrics.height()};
}

void SContainer::PaintLines(QPainter &painter) const {
    const double top = caption_.isEmpty() ? 0.5 : CaptionRect().height() / 2.0 + 0.5;
    const QRectF frame = QRectF(rect()).adjusted(0.5, top, -1.5, -1.5);
    painter.setBrush(Skin::Card);
    painter.setPen(QPen(Skin::Line, 1));
    painter.drawRoundedRect(frame, corner, corner);
    if (BevelStyle == Bevel::Flat) return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(BevelStyle == Bevel::Raised ? Skin::Line.darker(120) : QColor(Qt::white), 1));
    painter.drawRoundedRect(frame.translated(1, 1), corner, corner);
}

void SContainer::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintLines(painter);
    if (caption_.isEmpty()) return;
    const QRectF caption = CaptionRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Skin::Card);
    painter.drawRoundedRect(caption, 3, 3);
    painter.setPen(isEnabled() ? Skin::HeaderBottom : QColor(150, 158, 170));
    painter.setFont(Skin::Font(12, true));
    painter.drawText(caption, Qt::AlignCenter, caption_);
}

bool SContainer::event(QEvent *event) {
    const bool isOfMouse = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove ||
                           event->type() == QEvent::MouseButtonRelease;
    if (!isOfMouse || !OnCaptionMouse) return QWidget::event(event);
    const auto &mouse = static_cast<const QMouseEvent &>(*event);
    if (CaptionRect().contains(mouse.position().toPoint())) RunEventHandler([&] { OnCaptionMouse(mouse); });
    return true;
}

}  // namespace pixmora
