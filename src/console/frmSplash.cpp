// The picture that shows while the program starts.
#include "console/frmSplash.h"

#include <QCloseEvent>
#include <QLinearGradient>
#include <QPainter>
#include <utility>

#include "console/Glyphs.h"
#include "console/Skin.h"
#include "console/SkinWindow.h"
#include "console/Texts.h"
#include "platform/loop/App.h"

namespace pixmora {

namespace {

constexpr int showMs = 2000;
constexpr int pictureWidth = 440;
constexpr int pictureHeight = 250;

void PaintSky(QPainter &painter) {
    QLinearGradient sky(0, 0, 0, pictureHeight);
    sky.setColorAt(0, QColor(28, 70, 144));
    sky.setColorAt(0.55, QColor(86, 150, 226));
    sky.setColorAt(0.8, QColor(255, 212, 138));
    painter.fillRect(0, 0, pictureWidth, pictureHeight, sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 248, 222));
    painter.drawEllipse(QPointF(348, 152), 22, 22);
}

void PaintHill(QPainter &painter, double level, double swing, const QColor &colour) {
    QPainterPath hill;
    hill.moveTo(0, pictureHeight);
    hill.lineTo(0, level);
    hill.cubicTo(pictureWidth * 0.25, level - swing, pictureWidth * 0.4, level + swing, pictureWidth * 0.6, level);
    hill.cubicTo(pictureWidth * 0.75, level - swing, pictureWidth * 0.9, level - swing / 2, pictureWidth,
                 level + swing / 3);
    hill.lineTo(pictureWidth, pictureHeight);
    hill.closeSubpath();
    painter.fillPath(hill, colour);
}

void PaintTitle(QPainter &painter) {
    const QString title = ToQt(App::Title);
    const qsizetype split = title.indexOf(QLatin1Char('!')) + 1;
    PaintMark(painter, QRectF(34, 30, 84, 84));
    painter.setPen(Qt::white);
    painter.setFont(Skin::PictureFont(40, true));
    painter.drawText(QPointF(136, 78), title.left(split));
    painter.setFont(Skin::PictureFont(16));
    painter.drawText(QPointF(139, 104), title.mid(split).trimmed());
}

}  // namespace

frmSplash::frmSplash(std::function<void()> onUnload)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), onUnload_(std::move(onUnload)) {
    setObjectName(QStringLiteral("frmSplash"));
    setAccessibleName(ToQt(App::Title));
    setFixedSize(pictureWidth, pictureHeight);
    tmrClose.SetInterval(showMs);
    tmrClose.OnTimer = [this] {
        Unload();
    };
}

void frmSplash::Show() {
    PlaceOver(*this, nullptr);
    show();
    tmrClose.SetEnabled(true);
}

void frmSplash::Unload() {
    tmrClose.SetEnabled(false);
    hide();
    if (const auto onUnload = std::exchange(onUnload_, nullptr)) onUnload();
}

void frmSplash::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintSky(painter);
    PaintHill(painter, 190, 26, QColor(64, 116, 178));
    PaintHill(painter, 214, -18, QColor(38, 84, 150));
    PaintHill(painter, 236, 12, QColor(20, 52, 108));
    PaintTitle(painter);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Skin::Frame, 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void frmSplash::mousePressEvent(QMouseEvent *) {
    RunEventHandler([this] { Unload(); });
}

void frmSplash::keyPressEvent(QKeyEvent *) {
    RunEventHandler([this] { Unload(); });
}

void frmSplash::closeEvent(QCloseEvent *event) {
    event->ignore();
    RunEventHandler([this] { Unload(); });
}

}  // namespace pixmora
