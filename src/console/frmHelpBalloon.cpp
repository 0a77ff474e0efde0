// The help balloon beside the pointer.
#include "console/frmHelpBalloon.h"

#include <QApplication>
#include <QCursor>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "console/Events.h"
#include "console/Glyphs.h"
#include "console/LinkLabel.h"
#include "console/Skin.h"
#include "console/SkinWindow.h"
#include "console/Texts.h"

namespace pixmora {

namespace {

constexpr int msPerCharacter = 60;
constexpr int pointerGap = 10;
constexpr int textWidth = 270;
constexpr QColor paper(255, 252, 232);
constexpr QColor edge(196, 170, 96);

class InformationView : public QWidget {
public:
    InformationView() {
        setObjectName(QStringLiteral("imgHelpBalloonInfo"));
        setFixedSize(20, 20);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        PaintSign(painter, Sign::Information, QRectF(rect()).adjusted(1, 1, -1, -1));
    }
};

class ExitImage : public QPushButton {
public:
    ExitImage() {
        setObjectName(QStringLiteral("imgHelpBallonExit"));
        setAccessibleName(QStringLiteral("Close"));
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setFixedSize(18, 18);
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Skin::Red);
            painter.drawRoundedRect(rect(), 3, 3);
        }
        PaintGlyph(painter, Glyph::Close, QRectF(rect()).adjusted(3, 3, -3, -3),
                   underMouse() ? Qt::white : Skin::SoftInk);
    }
};

QLabel *MakeLabel(const char *name, bool bold) {
    QLabel *label = Skin::Label({}, 12, Skin::Ink, bold);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    return label;
}

}  // namespace

int BalloonTime(const QString &text) {
    return static_cast<int>(text.size()) * msPerCharacter;
}

QPoint BalloonPlace(const QPoint &pointer, const QSize &balloon, const QRect &screen) {
    int x = pointer.x() + pointerGap;
    if (x + balloon.width() > screen.right() + 1) x = pointer.x() - pointerGap - balloon.width();
    const int lowest = std::max(screen.top(), screen.bottom() + 1 - balloon.height());
    return {std::max(x, screen.left()), std::clamp(pointer.y() + pointerGap, screen.top(), lowest)};
}

frmHelpBalloon::frmHelpBalloon(const std::function<void()> &openSupport)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint),
      lblHelpBalloonTitle(MakeLabel("lblHelpBalloonTitle", true)),
      lblHelpBalloonDesc(MakeLabel("lblHelpBalloonDesc", false)),
      lblOnlineSupport(new LinkLabel("lblOnlineSupport", QStringLiteral("Online Support"), {})) {
    setObjectName(QStringLiteral("frmHelpBalloon"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto *exit = new ExitImage;
    lblOnlineSupport->setFocusPolicy(Qt::NoFocus);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(10, 9, 10, 7);
    layout->setHorizontalSpacing(8);
    layout->setVerticalSpacing(5);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new InformationView, 0, 0);
    layout->addWidget(lblHelpBalloonTitle, 0, 1);
    layout->addWidget(exit, 0, 2, Qt::AlignTop);
    layout->addWidget(lblHelpBalloonDesc, 1, 1, 1, 2);
    layout->addWidget(lblOnlineSupport, 2, 1, 1, 2, Qt::AlignLeft);
    layout->setColumnStretch(1, 1);
    OnClick(exit, [this] { hide(); });
    OnClick(lblOnlineSupport, openSupport);
    tmrClose.OnTimer = [this] {
        hide();
    };
}

void frmHelpBalloon::Show(const std::string &title, const std::string &text, bool hasSupport) {
    hide();
    if (text.empty()) return;  // its time is over at once
    lblHelpBalloonTitle->setText(ToQt(title));
    lblHelpBalloonDesc->setText(MessageText(text));
    const int width = Skin::Scaled(textWidth);
    lblHelpBalloonDesc->setFixedSize(width, lblHelpBalloonDesc->heightForWidth(width));
    lblOnlineSupport->setVisible(hasSupport);
    setAccessibleName(lblHelpBalloonTitle->text());
    setAccessibleDescription(lblHelpBalloonDesc->text());
    adjustSize();
    const QPoint pointer = QCursor::pos();
    dialog_ = QApplication::activeModalWidget();
    if (!dialog_) dialog_ = QApplication::activeWindow();
    // Where windows aren't told their places on the screen, what lies within the dialog is surely on it.
    const bool isPlaceKnown = !dialog_ || !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    const QRect room = isPlaceKnown ? ScreenAt(pointer).geometry() : dialog_->geometry();
    move(BalloonPlace(pointer, size(), room));
    // A modal dialog blocks every window but those that belong to it, and some desktops place it only beside its owner.
    winId();
    if (dialog_) windowHandle()->setTransientParent(dialog_->windowHandle());
    show();
    qApp->installEventFilter(this);
    tmrClose.SetInterval(BalloonTime(ToQt(text)));
    tmrClose.SetEnabled(true);
}

bool frmHelpBalloon::eventFilter(QObject *watched, QEvent *event) {
    const auto *widget = qobject_cast<QWidget *>(watched);
    switch (event->type()) {
        case QEvent::KeyPress:
            hide();
            // Escape was meant for the balloon, not for the dialog below.
            return static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        case QEvent::Show:
            if (widget != nullptr && widget->isWindow() && widget->isModal()) hide();
            return false;
        case QEvent::Hide:
            if (widget != nullptr && widget == dialog_) hide();
            return false;
        default:
            return false;
    }
}

void frmHelpBalloon::hideEvent(QHideEvent *) {
    tmrClose.SetEnabled(false);
    qApp->removeEventFilter(this);
}

void frmHelpBalloon::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), paper);
    painter.setPen(QPen(edge, 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace pixmora
