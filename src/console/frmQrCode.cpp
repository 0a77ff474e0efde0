// The QR code's window.
#include "console/frmQrCode.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "console/Events.h"
#include "console/SkinButton.h"
#include "console/Texts.h"
#include "platform/loop/App.h"
#include "platform/pictures/QrCode.h"

namespace pixmora {

namespace {

constexpr int longestSide = 280;  // pixels, about: modules are whole ones

/// Black on white whatever the desktop's colours, as cameras want it.
QPixmap PictureOf(const QrCode &code, qreal scale) {
    const int modules = code.Size + 2 * QrMargin;
    const int module = std::max(static_cast<int>(longestSide * scale) / modules, 1);
    QPixmap picture(modules * module, modules * module);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int y = 0; y < code.Size; ++y) {
        for (int x = 0; x < code.Size; ++x) {
            if (code.IsDark(x, y))
                painter.fillRect((x + QrMargin) * module, (y + QrMargin) * module, module, module, Qt::black);
        }
    }
    painter.end();
    picture.setDevicePixelRatio(scale);
    return picture;
}

}  // namespace

frmQrCode::frmQrCode(const std::string &address) : SkinWindow("frmQrCode", ToQt(App::Title), TitleArea::Size::Box) {
    setWindowModality(Qt::ApplicationModal);
    auto *code = new QLabel;
    code->setObjectName(QStringLiteral("imgQrCode"));
    code->setAccessibleName(QStringLiteral("QR code of ") + ToQt(address));
    code->setPixmap(PictureOf(MakeQrCode(address), devicePixelRatioF()));
    code->setAlignment(Qt::AlignCenter);
    auto *text = new QLabel(ToQt(address));
    text->setObjectName(QStringLiteral("lblQrAddress"));
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *close = new SkinButton("cmdClose", {QStringLiteral("Close"), Glyph::None, SkinButton::Tone::Lead});
    OnClick(close, [this] { CloseByOwner(); });
    Contents()->addWidget(code);
    Contents()->addWidget(text);
    Contents()->addSpacing(4);
    Contents()->addWidget(close, 0, Qt::AlignCenter);
    close->setFocus();
}

void frmQrCode::Run(const QWidget *over) {
    PlaceOver(*this, over);
    exec();
}

}  // namespace pixmora
