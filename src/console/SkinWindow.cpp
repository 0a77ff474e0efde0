// A window without the desktop's frame, with a painted title area by which it is moved.
#include "console/SkinWindow.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "console/Glyphs.h"
#include "console/Skin.h"
#include "console/Texts.h"
#include "platform/loop/App.h"
#include "platform/loop/MessageLoop.h"

namespace pixmora {

namespace {

constexpr int mainTitleHeight = 66;
constexpr int boxTitleHeight = 34;
constexpr int boxTitleLeft = 35;
constexpr int boxTitlePixels = 12;

QPointF Scaled(const QPointF &place) {
    return place * Skin::TextScale();
}

QRectF Scaled(const QRectF &area) {
    return {Scaled(area.topLeft()), area.size() * Skin::TextScale()};
}

void DrawLine(QPainter &painter, const QPointF &baseline, const QString &text, const QFont &font,
              const QColor &colour) {
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(baseline, text);
}

}  // namespace

TitleArea::TitleArea(const QString &title, Size size, QWidget *parent) : QWidget(parent), title_(title), size_(size) {
    setObjectName(QStringLiteral("imgTitleArea"));
    auto *buttons = new QHBoxLayout(this);
    buttons->setSpacing(2);
    buttons->addStretch();
    Fit();
}

void TitleArea::Fit() {
    setFixedHeight(Skin::Scaled(size_ == Size::Main ? mainTitleHeight : boxTitleHeight));
    if (size_ == Size::Box) {
        setMinimumWidth(Skin::Scaled(boxTitleLeft + 12) +
                        QFontMetrics(Skin::Font(boxTitlePixels, true)).horizontalAdvance(title_));
    }
    layout()->setContentsMargins(0, 0, 8, size_ == Size::Main ? Skin::Scaled(28) : 3);
}

void TitleArea::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) Fit();
    QWidget::changeEvent(event);
}

void TitleArea::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    Skin::PaintHeader(painter, rect());
    if (size_ == Size::Main) {
        PaintMainTitle(painter);
    } else {
        PaintMark(painter, Scaled({9, 6, 19, 19}), Skin::HeaderInk);
        DrawLine(painter, Scaled({boxTitleLeft, 20}), title_, Skin::Font(boxTitlePixels, true), Skin::HeaderInk);
    }
}

void TitleArea::PaintMainTitle(QPainter &painter) const {
    const qsizetype split = title_.indexOf('!') + 1;
    PaintMark(painter, Scaled({14, 9, 45, 45}), Skin::HeaderInk);
    DrawLine(painter, Scaled({70, 33}), title_.left(split), Skin::Font(23, true), Skin::HeaderInk);
    DrawLine(painter, Scaled({71, 51}), title_.mid(split).trimmed(), Skin::Font(12), Skin::HeaderSoftInk);
}

void TitleArea::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) return;
    if (window()->windowHandle() != nullptr && window()->windowHandle()->startSystemMove()) return;
    isDragging_ = true;
    grip_ = event->globalPosition().toPoint() - window()->pos();
}

void TitleArea::mouseMoveEvent(QMouseEvent *event) {
    if (isDragging_) window()->move(event->globalPosition().toPoint() - grip_);
}

void TitleArea::mouseReleaseEvent(QMouseEvent *) {
    isDragging_ = false;
}

SkinWindow::SkinWindow(const char *name, const QString &title, TitleArea::Size size)
    : QDialog(nullptr, Qt::Window | Qt::FramelessWindowHint), title_(new TitleArea(title, size, this)) {
    setObjectName(QLatin1String(name));
    setWindowTitle(title);
    setAccessibleName(title);
    Skin::SetFont(*this, 12);
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, Skin::Ink);
    setPalette(colours);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(title_);
    contents_ = new QVBoxLayout;
    contents_->setContentsMargins(14, 12, 14, 14);
    contents_->setSpacing(10);
    layout->addLayout(contents_);
}

void SkinWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    Skin::PaintWindow(painter, rect());
}

void SkinWindow::closeEvent(QCloseEvent *event) {
    event->ignore();
    RunEventHandler([this] { CloseByOwner(); });
}

const QScreen &ScreenAt(const QPoint &place) {
    const QScreen *screen = QGuiApplication::screenAt(place);
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

void PlaceOver(QWidget &window, const QWidget *other) {
    window.adjustSize();
    const bool hasOther = other != nullptr && other->isVisible() && !other->isMinimized();
    const QRect room = (hasOther ? *other->screen() : ScreenAt(QCursor::pos())).availableGeometry();
    QRect place = window.rect();
    place.moveCenter(hasOther ? other->geometry().center() : room.center());
    place.moveLeft(std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - place.width())));
    place.moveTop(std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() + 1 - place.height())));
    window.move(place.topLeft());
    // Some desktops place a window themselves, and know by this which one it belongs to.
    window.winId();
    window.windowHandle()->setTransientParent(other != nullptr ? other->windowHandle() : nullptr);
}

}  // namespace pixmora
